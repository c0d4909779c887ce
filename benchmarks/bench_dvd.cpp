// How soon a DVD shows something: from its start, after a jump to a chapter and to its menu; and what a hundred jumps leave
// behind. The disc is that of the tests with the menu and one colour a chapter.
#include "base/EventLoop.h"
#include "base/Mailbox.h"
#include "benchmarks/Figure.h"
#include "services/disc/dvd/Engine.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <thread>
#include <unistd.h>

using namespace zm;
using zm::benchmark::median;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Jumps = 100;
constexpr auto Patience = std::chrono::seconds(20);

/** A point of the screen and what is to be seen there: blue, green, red. */
struct Sight {
    int x = 400;
    int y = 240;
    std::array<int, 3> colour{};
};
constexpr Sight chapters[] = {{400, 240, {0, 0, 255}}, {400, 240, {0, 255, 0}}, {400, 240, {255, 0, 0}}};
constexpr Sight chosenButton{177, 133, {0, 255, 255}};

class Screen : public disc::engine::FrameSink {
public:
    void show(const disc::engine::DrawPicture& draw) override {
        std::lock_guard lock(m_mutex);
        const int Stride = disc::engine::PictureWidth * 4;
        m_pixels.resize(static_cast<size_t>(Stride) * disc::engine::PictureHeight);
        draw(m_pixels.data(), Stride);
        const uint8_t* pixel = m_pixels.data() + m_wanted.y * Stride + m_wanted.x * 4;
        bool seen = true;
        for (size_t i = 0; i < 3; ++i) {
            seen = seen && std::abs(pixel[i] - m_wanted.colour[i]) < 60;
        }
        if (seen && !m_seen) {
            m_seen = Clock::now();
            m_changed.notify_all();
        }
    }
    void clear() override {}
    void want(const Sight& sight) {
        std::lock_guard lock(m_mutex);
        m_wanted = sight;
        m_seen.reset();
    }
    /** Milliseconds from `begin` until it was seen. */
    double wait(Clock::time_point begin) {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, Patience, [this] { return m_seen.has_value(); })) {
            std::fprintf(stderr, "the picture did not come\n");
            std::exit(1);
        }
        return std::chrono::duration<double, std::milli>(*m_seen - begin).count();
    }

private:
    std::vector<uint8_t> m_pixels;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    Sight m_wanted = chosenButton;
    std::optional<Clock::time_point> m_seen;
};

class Silent : public disc::dvd::Listener {
    void dvdOpened(const disc::dvd::Titles&) override {}
    void dvdArrived() override {}
    void dvdShows(const disc::dvd::Scene&) override {}
    void dvdRefused() override {}
    void dvdPressed() override {}
    void dvdScanned(disc::engine::ScanEdge) override {}
    void dvdGaveUpChapter() override {}
    void dvdEnded() override {}
    void dvdFailed(const std::string& reason) override {
        std::fprintf(stderr, "%s\n", reason.c_str());
        std::exit(1);
    }
};

double megabytes() {
    std::ifstream statm("/proc/self/statm");
    long all = 0;
    long resident = 0;
    statm >> all >> resident;
    return double(resident) * double(::sysconf(_SC_PAGESIZE)) / 1e6;
}

GstElement* quietSound() {
    GstElement* sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "sync", TRUE, nullptr);
    return sink;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_dvd IMAGE\n");
        return 2;
    }
    EventLoop loop;
    std::thread home([&] { loop.run(); });
    const auto screen = std::make_shared<Screen>();
    Silent listener;
    auto played = std::make_unique<disc::dvd::Engine>(loop, screen, quietSound);
    const auto begin = Clock::now();
    played->start(argv[1], listener, disc::engine::StartMode::Playing, std::nullopt);
    const double first = screen->wait(begin);

    const auto jump = [&](const Sight& sight, dvd::Operation operation, int number, int second) {
        screen->want(sight);
        const auto asked = Clock::now();
        played->post([=](disc::dvd::Session& session) { session.jump(operation, number, second); });
        return screen->wait(asked);
    };
    std::vector<double> toChapter;
    std::vector<double> toMenu;
    const auto round = [&](int jumps) {
        for (int i = 0; i < jumps; ++i) {
            toChapter.push_back(jump(chapters[i % 3], dvd::Operation::Chapter, 1, i % 3 + 1));
        }
    };
    round(20);
    const double before = megabytes();
    round(Jumps);
    const double after = megabytes();
    for (int i = 0; i < 20; ++i) {
        toMenu.push_back(jump(chosenButton, dvd::Operation::RootMenu, 0, 0));
        toChapter.push_back(jump(chapters[i % 3], dvd::Operation::Chapter, 1, i % 3 + 1));
    }
    loop.post([&] {
        played.reset();
        loop.quit();
    });
    home.join();
    benchmark::print({"DVD: start to first menu with its button", "ms", first, 1500});
    benchmark::print({"DVD: jump to a chapter to its picture", "ms", median(toChapter), 50});
    benchmark::print({"DVD: menu key to the chosen button", "ms", median(toMenu), 50});
    benchmark::print({"DVD: memory after 100 jumps", "MB more", after - before, 10});
    return 0;
}
