#include "tests/support/Harness.h"

#include "services/bench/unit/PpsText.h"
#include "services/ctl/AnswerData.h"
#include "tests/support/Application.h"
#include "tests/support/Commands.h"
#include "tests/support/StateStore.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/UnitServer.h"

#include "BuildPaths.h"
#include "base/Paths.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>

#include <algorithm>
#include <stdexcept>

namespace zm::test {

namespace {

constexpr const char* Control = "zelmar/disc/control";

// The application keeps its catalogue open to the end of its process, which here is that of many applications.
void allowManyDescriptors() {
    rlimit limit{};
    constexpr rlim_t Enough = 8192;
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < Enough) {
        limit.rlim_cur = std::min(limit.rlim_max, Enough);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

// The application reads its surroundings from the environment and ends by SIGTERM to its own process: both
// are settled before any thread exists.
void prepareProcess(const std::string& folder, const UnitOptions& options) {
    const std::string catalogue = options.catalogue.empty() ? folder + "/none.sqlite" : options.catalogue;
    const std::string resources = options.resources.empty() ? ZM_SHARE_DIR "/rccs/" : options.resources;
    allowManyDescriptors();
    setenv("ZM_CATALOGUE", catalogue.c_str(), 1);
    setenv("ZM_RCC_PATH", resources.c_str(), 1);
    setenv("ZM_SCREEN", options.screen.text().c_str(), 1);
    setenv("ZM_FONT_PATH", ZM_SHARE_DIR "/fonts/", 1);
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
}

bench::unit::HeadUnitOptions unitOptions(const std::string& folder, ScreenSize screen) {
    bench::unit::HeadUnitOptions options;
    options.screen = screen;
    options.runtimeDir = folder;
    options.shareDir = ZM_SHARE_DIR;
    options.catalogue = catalogueFile(folder);
    options.discService = false;
    options.launcher = bench::unit::LauncherMode::Passive;
    options.clock = bench::unit::ClockMode::Manual;
    return options;
}

// Without a unit a test has nothing to wait for.
void begun(const std::string& failure) {
    if (!failure.empty()) {
        throw std::runtime_error("no head unit: " + failure);
    }
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const auto& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::vector<std::string> numbers(std::initializer_list<int> values) {
    std::vector<std::string> result;
    for (int value : values) {
        result.push_back(std::to_string(value));
    }
    return result;
}

std::vector<std::string> command(std::vector<std::string> words, std::initializer_list<int> values) {
    const auto more = numbers(values);
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

} // namespace

struct Unit::Impl {
    explicit Impl(const UnitOptions& options) : server(unitOptions(folder.path(), options.screen)) {
        prepareProcess(folder.path(), options);
    }

    RuntimeFolder folder;
    UnitServer server;
    std::unique_ptr<Application> application;
    size_t seenCommands = 0;
};

Unit::Unit(UnitOptions options) : m_impl(std::make_unique<Impl>(options)) {
    begun(m_impl->server.start());
    resetStateStore();
    for (const auto& [object, line] : options.published) {
        must({"pps", "put", object, line});
    }
    m_impl->application = std::make_unique<Application>();
    const bool started =
        m_impl->application->start({.song = options.song, .firstResume = options.firstResume});
    begun(started ? "" : "the application does not start");
    begun(m_impl->server.waitReady() ? "" : "the application has not been resumed");
    settle();
}

Unit::~Unit() {
    m_impl->application.reset();
}

Unit::Answer Unit::run(const std::vector<std::string>& words) const {
    const auto answer = m_impl->server.run(words);
    return {answer.exit, answer.out, answer.err};
}

std::string Unit::must(const std::vector<std::string>& words) const {
    const auto answer = run(words);
    EXPECT_EQ(answer.exit, 0) << joined(words) << ": " << answer.err;
    return answer.out;
}

void Unit::act(const std::vector<std::string>& words) {
    SCOPED_TRACE(joined(words));
    must(words);
    settle();
}

void Unit::pps(const std::string& object, const std::vector<std::string>& changes) {
    std::vector<std::string> words{"pps", "put", object};
    words.insert(words.end(), changes.begin(), changes.end());
    act(words);
}

void Unit::app(const std::string& status) {
    act({"app", status});
}

void Unit::appData(const std::string& text) {
    act({"appdata", text});
}

void Unit::device(int id, int value) {
    act(command({"device"}, {id, value}));
}

void Unit::deviceSilently(int id, int value) {
    act(command({"device", "--silent"}, {id, value}));
}

void Unit::deviceFails(int id) {
    act({"device", "--silent", std::to_string(id), "fail"});
}

void Unit::time(const std::string& text, int format) {
    act({"time", text, std::to_string(format)});
}

void Unit::language(const std::string& code) {
    act({"language", code});
}

void Unit::key(int code) {
    act(command({"key"}, {code}));
}

void Unit::touch(int x, int y, std::chrono::milliseconds hold) {
    auto words = command({"touch"}, {x, y});
    words.insert(words.end(), {"--hold", std::to_string(hold.count())});
    act(words);
}

void Unit::drag(int x1, int y1, int x2, int y2) {
    act(command({"drag"}, {x1, y1, x2, y2}));
}

void Unit::touchItem(const View& view, int window, int item, std::chrono::milliseconds hold) {
    const Rect rect = view.item(window, item).rect;
    touch(rect.x + rect.w / 2, rect.y + rect.h / 2, hold);
}

void Unit::click(int window, int control) {
    click(window, control, 0);
    click(window, control, 1);
}

void Unit::click(int window, int control, int state) {
    act(command({"click", "main"}, {window, control, state}));
}

void Unit::clickOsd(int window, int control) {
    clickOsd(window, control, 0);
    clickOsd(window, control, 1);
}

void Unit::clickOsd(int window, int control, int state) {
    act(command({"click", "osd"}, {window, control, state}));
}

void Unit::advance(std::chrono::milliseconds time) {
    act({"clock", "advance", std::to_string(time.count())});
}

void Unit::holdCatalogue(int rows) {
    act({"catalogue", "hold", std::to_string(rows)});
}

void Unit::releaseCatalogue() {
    act({"catalogue", "release"});
}

void Unit::settle() {
    must({"settle"});
    const auto drawn = run({"drawn"});
    EXPECT_EQ(drawn.exit, 0) << "the picture is not what the pages say: " << drawn.err;
}

Json Unit::video() {
    return Json::parse(must({"screen"})).value("video", Json::object());
}

Image Unit::picture() const {
    return m_impl->server.picture();
}

std::vector<std::string> Unit::commands() const {
    std::vector<std::string> result;
    const auto written = published(Control);
    for (size_t i = m_impl->seenCommands; i < written.size(); ++i) {
        std::string value;
        if (bench::unit::ppsValue(written[i], "zmcmd", value)) {
            const Json json = Json::parse(value);
            result.push_back(commandName(json.at("cmd"), json.at("param1"), json.at("param2")));
        }
    }
    return result;
}

void Unit::clearCommands() {
    m_impl->seenCommands = published(Control).size();
}

std::vector<std::string> Unit::published(const std::string& object) const {
    return m_impl->server.published(object);
}

std::string Unit::attribute(const std::string& object, const std::string& name) {
    std::string value;
    for (const auto& line : ctl::outputLines(must({"pps", "get", object}))) {
        bench::unit::ppsValue(line, name, value);
    }
    return value;
}

std::vector<std::string> Unit::requests() {
    return ctl::outputLines(must({"requests"}));
}

void Unit::clearRequests() {
    must({"requests", "--clear"});
}

std::vector<std::string> Unit::log() const {
    return ctl::outputLines(must({"log"}));
}

std::vector<std::string> Unit::log(const std::string& text) const {
    std::vector<std::string> result;
    for (auto& line : log()) {
        if (line.find(text) != std::string::npos) {
            result.push_back(std::move(line));
        }
    }
    return result;
}

std::vector<int> Unit::viewMessages() const {
    return m_impl->application->viewMessages();
}

void Unit::onViewThread(std::function<void()> task) {
    m_impl->application->onViewThread(std::move(task));
    settle();
}

DiscView& Unit::view() {
    return m_impl->application->view();
}

DiscOsdView& Unit::osdView() {
    return m_impl->application->osd();
}

DiscViewController& Unit::controller() {
    return m_impl->application->controller();
}

bool Unit::endApplication() {
    return m_impl->application->end();
}

const std::string& Unit::runtimeDir() const {
    return m_impl->folder.path();
}

} // namespace zm::test
