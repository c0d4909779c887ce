#include "tests/disc/DiscUnit.h"

#include "base/Paths.h"
#include "services/disc/PpsInbox.h"
#include "services/disc/engine/DecoderEngine.h"
#include "tests/disc/ClockEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>

namespace zm::test {

void Recorder::add(const std::string& object, const std::string& text) {
    std::lock_guard lock(m_mutex);
    for (auto& line : disc::attributesOf(text)) {
        const auto slash = object.rfind('/');
        m_records.push_back(
            {object.substr(slash + 1), line.name, line.value, std::chrono::steady_clock::now()});
    }
    m_changed.notify_all();
}

std::optional<Published> Recorder::wait(size_t& from, const Condition& condition,
                                        std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    std::unique_lock lock(m_mutex);
    for (size_t at = from;; ++at) {
        if (!m_changed.wait_until(lock, deadline, [&] { return at < m_records.size(); })) {
            return std::nullopt;
        }
        if (condition(m_records[at])) {
            from = at + 1;
            return m_records[at];
        }
    }
}

void Recorder::clear() {
    std::lock_guard lock(m_mutex);
    m_records = {};
}

std::vector<Published> Recorder::all() const {
    std::lock_guard lock(m_mutex);
    return m_records;
}

std::string Recorder::text() const {
    std::string result;
    for (const auto& record : all()) {
        result += record.object + " " + record.name + "=" + record.value + "\n";
    }
    return result;
}

namespace {

constexpr int PatchRadius = 10;
constexpr int BytesPerPixel = 4;
// Colours have half the resolution of a film, so that the edge of a round thing is soft.
constexpr int PixelTolerance = 8;
constexpr int ColourTolerance = 40;

bool alike(Colour a, Colour b) {
    const auto near = [](int one, int other) { return std::abs(one - other) <= ColourTolerance; };
    return near(a.red, b.red) && near(a.green, b.green) && near(a.blue, b.blue);
}

} // namespace

bool isNear(const PixelBox& a, const PixelBox& b) {
    const auto near = [](int one, int other) { return std::abs(one - other) <= PixelTolerance; };
    return near(a.x, b.x) && near(a.y, b.y) && near(a.width, b.width) && near(a.height, b.height);
}

std::ostream& operator<<(std::ostream& out, const PixelBox& box) {
    return out << box.width << " x " << box.height << " at " << box.x << ", " << box.y;
}

void PictureRecorder::show(const disc::engine::DrawPicture& draw) {
    std::lock_guard lock(m_mutex);
    const int Stride = disc::engine::PictureWidth * BytesPerPixel;
    // What is not drawn shows.
    m_pixels.assign(static_cast<size_t>(Stride) * disc::engine::PictureHeight, 0x80);
    draw(m_pixels.data(), Stride);
    ++m_frames;
    m_times.push_back(std::chrono::steady_clock::now());
    const Colour middle = mean(disc::engine::PictureWidth / 2, disc::engine::PictureHeight / 2);
    if (!std::exchange(m_bright, middle.green > 128) && m_bright) {
        m_flashes.push_back(m_times.back());
    }
    m_cleared = false;
    m_changed.notify_all();
}

void PictureRecorder::clear() {
    std::lock_guard lock(m_mutex);
    m_cleared = true;
    m_changed.notify_all();
}

int PictureRecorder::frames() const {
    std::lock_guard lock(m_mutex);
    return m_frames;
}

std::vector<std::chrono::steady_clock::time_point> PictureRecorder::times() const {
    std::lock_guard lock(m_mutex);
    return m_times;
}

std::vector<std::chrono::steady_clock::time_point> PictureRecorder::flashes() const {
    std::lock_guard lock(m_mutex);
    return m_flashes;
}

void PictureRecorder::forgetTimes() {
    std::lock_guard lock(m_mutex);
    m_times.clear();
    m_flashes.clear();
}

bool PictureRecorder::waitCleared(std::chrono::milliseconds timeout) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return m_cleared; });
}

Colour PictureRecorder::mean(int x, int y) const {
    if (m_pixels.empty()) {
        return {};
    }
    int sums[3] = {};
    int count = 0;
    for (int row = y - PatchRadius; row < y + PatchRadius; ++row) {
        for (int column = x - PatchRadius; column < x + PatchRadius; ++column, ++count) {
            const auto* pixel =
                &m_pixels[static_cast<size_t>(row * disc::engine::PictureWidth + column) * BytesPerPixel];
            for (int i = 0; i < 3; ++i) {
                sums[i] += pixel[i];
            }
        }
    }
    return {sums[2] / count, sums[1] / count, sums[0] / count};
}

Colour PictureRecorder::at(int x, int y) const {
    std::lock_guard lock(m_mutex);
    return mean(x, y);
}

bool PictureRecorder::waitFor(int x, int y, Colour wanted, std::chrono::milliseconds timeout) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return !m_pixels.empty() && alike(mean(x, y), wanted); });
}

PixelBox PictureRecorder::box(Colour colour) const {
    int left = disc::engine::PictureWidth;
    int top = disc::engine::PictureHeight;
    int right = -1;
    int bottom = -1;
    for (int y = 0; y < disc::engine::PictureHeight && !m_pixels.empty(); ++y) {
        for (int x = 0; x < disc::engine::PictureWidth; ++x) {
            const auto* pixel =
                &m_pixels[static_cast<size_t>(y * disc::engine::PictureWidth + x) * BytesPerPixel];
            if (alike({pixel[2], pixel[1], pixel[0]}, colour)) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    return right < 0 ? PixelBox{} : PixelBox{left, top, right - left + 1, bottom - top + 1};
}

PixelBox PictureRecorder::boxOf(Colour colour) const {
    std::lock_guard lock(m_mutex);
    return box(colour);
}

bool PictureRecorder::waitForBox(Colour colour, const PixelBox& wanted, std::chrono::milliseconds timeout) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return isNear(box(colour), wanted); });
}

bool PictureRecorder::waitFrames(int before, int count, std::chrono::milliseconds timeout) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return m_frames >= before + count; });
}

void LoopThread::end() {
    if (m_thread.joinable()) {
        m_loop.quit();
        m_thread.join();
    }
}

void LoopThread::call(const std::function<void()>& task) {
    std::promise<void> done;
    m_loop.post([&] {
        task();
        done.set_value();
    });
    done.get_future().wait();
}

disc::EngineMaker engineMaker(std::shared_ptr<disc::engine::FrameSink> frames) {
#ifdef __SANITIZE_THREAD__
    return [](EventLoop& loop) { return std::make_unique<ClockEngine>(loop); };
#else
    return [frames](EventLoop& loop) { return std::make_unique<disc::engine::DecoderEngine>(loop, frames); };
#endif
}

disc::dvd::EngineMaker dvdEngineMaker(std::shared_ptr<disc::engine::FrameSink> frames,
                                      std::shared_ptr<SoundRecorder> sound) {
    return [=](EventLoop& loop) {
        return std::make_unique<disc::dvd::Engine>(loop, frames, [sound] { return sound->makeSink(); });
    };
}

DiscUnit::DiscUnit() {
    ::setenv("ZM_RUNTIME", runtime().c_str(), 1);
    startObjects();
}

DiscUnit::~DiscUnit() {
    if (::testing::Test::HasFailure()) {
        std::fputs(m_recorder.text().c_str(), stderr);
    }
    stopService();
    stopObjects();
}

void DiscUnit::startObjects() {
    m_objectsThread = std::make_unique<LoopThread>();
    m_objectsThread->call([&] {
        m_objects = std::make_unique<PpsService>(m_objectsThread->loop(), ppsSocket(runtime()));
        m_objects->onChange = [this](const std::string& object, const std::string& text) {
            m_recorder.add(object, text);
        };
        const auto status = m_objects->start();
        ASSERT_TRUE(status) << status.error();
    });
}

void DiscUnit::stopObjects() {
    if (m_objectsThread) {
        m_objectsThread->call([&] { m_objects.reset(); });
        m_objectsThread.reset();
    }
}

void DiscUnit::startService(const std::string& disc) {
    ASSERT_EQ(tryService(disc, [] {}), "");
}

std::string DiscUnit::tryService(const std::string& disc, const std::function<void()>& before) {
    std::string failure;
    m_serviceThread = std::make_unique<LoopThread>();
    m_serviceThread->call([&] {
        before();
        auto service = disc::Service::start(m_serviceThread->loop(), runtime(), catalogue(), resume(), disc,
                                            engineMaker(m_pictures), dvdEngineMaker(m_pictures, m_sound));
        if (service) {
            m_service = std::move(*service);
        } else {
            failure = service.error();
        }
    });
    const auto open = [&](const char* path) {
        auto file = PpsFile::open(ppsSocket(runtime()), path, 257, 0666);
        EXPECT_TRUE(file) << file.error();
        return std::move(*file);
    };
    m_control = open("/pps/zelmar/disc/control?delta");
    m_drive = open("/pps/zelmar/disc/drive?delta");
    return failure;
}

void DiscUnit::stopService() {
    if (m_serviceThread) {
        m_serviceThread->call([&] { m_service.reset(); });
        m_serviceThread.reset();
    }
}

void DiscUnit::command(int number, int first, int second) {
    const nlohmann::ordered_json json{{"cmd", number}, {"param1", first}, {"param2", second}};
    const auto status = m_control->write("@control\nzmcmd:json:" + json.dump() + "\n");
    ASSERT_TRUE(status) << status.error();
}

void DiscUnit::request(const nlohmann::json& json) {
    const auto status = m_drive->write("drive:json:" + json.dump() + "\n");
    ASSERT_TRUE(status) << status.error();
}

void DiscUnit::voice(const nlohmann::json& json) {
    const auto status = m_control->write("zmasr:json:" + json.dump() + "\n");
    ASSERT_TRUE(status) << status.error();
}

void DiscUnit::play(const std::string& disc) {
    startService(disc);
    command(187, 1, 0);
    nextState(disc::model::PlayState::Playing);
    mark();
}

Published DiscUnit::next(const std::string& name, const Recorder::Condition& condition,
                         std::chrono::milliseconds timeout) {
    const auto found = m_recorder.wait(
        m_from, [&](const Published& each) { return each.name == name && condition(each); }, timeout);
    EXPECT_TRUE(found) << "\"" << name << "\" as expected did not come";
    return found.value_or(Published{});
}

Published DiscUnit::next(const std::string& name, const std::string& value,
                         std::chrono::milliseconds timeout) {
    SCOPED_TRACE(name + " = " + value);
    return next(
        name, [&](const Published& each) { return each.value == value; }, timeout);
}

Published DiscUnit::nextState(disc::model::PlayState state, std::chrono::milliseconds timeout) {
    return next("discstate", std::to_string(static_cast<int>(state)), timeout);
}

bool DiscUnit::follows(const std::string& name, const std::string& value, std::chrono::milliseconds time) {
    size_t from = m_from;
    return m_recorder
        .wait(
            from, [&](const Published& each) { return each.name == name && each.value == value; }, time)
        .has_value();
}

void DiscUnit::mark() {
    m_from = m_recorder.all().size();
}

void DiscUnit::forget() {
    m_recorder.clear();
    m_from = 0;
}

std::vector<std::string> DiscUnit::since(const std::string& name) const {
    const auto records = m_recorder.all();
    std::vector<std::string> values;
    for (size_t i = m_from; i < records.size(); ++i) {
        if (records[i].name == name) {
            values.push_back(records[i].value);
        }
    }
    return values;
}

std::vector<std::string> DiscUnit::sequence(const std::vector<std::string>& names) const {
    const auto records = m_recorder.all();
    std::vector<std::string> values;
    for (size_t i = m_from; i < records.size(); ++i) {
        if (std::find(names.begin(), names.end(), records[i].name) != names.end()) {
            values.push_back(records[i].name + "=" + records[i].value);
        }
    }
    return values;
}

} // namespace zm::test
