#include "tests/anomaly/FaultyUnit.h"

#include "BuildPaths.h"
#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "base/Paths.h"
#include "services/ctl/AnswerData.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <stdlib.h>

#include <algorithm>
#include <sstream>
#include <thread>

namespace zm::test {

using namespace std::chrono_literals;
namespace {

constexpr const char* Control = "zelmar/disc/control";
constexpr int Files = 12;
constexpr int ListItem = 2000;
constexpr int RowsInView = 5;
constexpr auto StartLimit = 6s;
constexpr auto EndLimit = 5s;

void setSurroundings(const std::string& catalogue) {
    setenv("ZM_CATALOGUE", catalogue.c_str(), 1);
    setenv("ZM_RCC_PATH", ZM_BINARY_DIR "/share/rccs/", 1);
    setenv("ZM_FONT_PATH", ZM_BINARY_DIR "/share/fonts/", 1);
}

bench::unit::HeadUnitOptions headUnit(const std::string& folder) {
    bench::unit::HeadUnitOptions options;
    options.runtimeDir = folder;
    options.shareDir = ZM_BINARY_DIR "/share";
    options.catalogue = catalogueFile(folder);
    options.discService = false;
    options.launcher = bench::unit::LauncherMode::Passive;
    options.clock = bench::unit::ClockMode::Manual;
    return options;
}

std::string number(int value) {
    return std::to_string(value);
}

} // namespace

bool Outcome::logged(const std::string& text) const {
    return std::any_of(log.begin(), log.end(),
                       [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

std::string Outcome::text() const {
    std::ostringstream text;
    text << "status " << status << ", calls " << remains.calls << ", descriptors " << remains.descriptors
         << ", threads " << remains.threads << "\nseen:";
    for (const auto& step : seen) {
        text << ' ' << step;
    }
    text << "\nstandard error:\n" << errors << "log:\n";
    for (const auto& line : log) {
        text << line << '\n';
    }
    return text.str();
}

FaultyUnit::FaultyUnit() {
    setSurroundings(m_catalogue.path());
    m_catalogue.files(Files, Catalogue::Music, "song");
    m_catalogue.folder(1, 0, Catalogue::Music, "root", 0, Files);
    m_server = std::make_unique<UnitServer>(headUnit(m_folder.path()));
    EXPECT_EQ(m_server->start(), "");
}

Outcome FaultyUnit::run(FaultKind kind, int number) {
    Outcome outcome;
    const size_t logBegin = logLines().size();
    m_commands = m_server->published(Control).size();
    m_settles = true;
    ApplicationRun application(m_folder.path(), kind, number);
    if (waitForPage(application)) {
        note(outcome, "started", true);
        story(application, outcome);
    }
    if (!application.waitForEnd(m_settles ? EndLimit : 1s)) {
        application.terminate();
    }
    outcome.endedInTime = application.waitForEnd(EndLimit);
    outcome.status = application.status();
    outcome.remains = application.remains();
    outcome.errors = application.errors();
    const auto log = logLines();
    outcome.log.assign(log.begin() + static_cast<std::ptrdiff_t>(std::min(logBegin, log.size())), log.end());
    outcome.broken = brokenLines();
    return outcome;
}

void FaultyUnit::story(ApplicationRun& application, Outcome& outcome) {
    auto put = [&](const std::string& object, const std::string& line) {
        act(application, {"pps", "put", "zelmar/disc/" + object, line});
    };
    auto click = [&](int page, int control) {
        act(application, {"click", "main", number(page), number(control), number(BT_STATE_PRESSED)});
        act(application, {"click", "main", number(page), number(control), number(BT_STATE_RELEASED)});
    };
    auto wait = [&] { act(application, {"clock", "advance", "50"}); };
    auto chosen = [&] {
        const auto published = m_server->published(Control);
        return std::any_of(published.begin() + static_cast<std::ptrdiff_t>(m_commands), published.end(),
                           [](const std::string& line) {
                               return line.find("\"cmd\":182,\"param1\":65538,\"param2\":1") != line.npos;
                           });
    };

    put("device", "disc::1");
    put("status", "discstate::1");
    put("device", "mixedtype::2");
    put("device", "mediatype::2");
    put("status", "discstate::2");
    put("playing", R"(trackinfo:json:{"curmediaid":1,"curmediaids":12,"mediaid":1,"mediaids":12,"chapter":0,)"
                   R"("chapters":0,"title":0,"titles":0,"parentFolder":1})");
    note(outcome, "play-page", window() == WND_AUDIO_PLAY);
    click(WND_AUDIO_PLAY, ITEM_TO_LIST);
    wait();
    note(outcome, "list", window() == WND_MEDIA_LIST && firstRow(WND_MEDIA_LIST, Files) == "1  song 1");
    click(WND_MEDIA_LIST, ITEM_FOLDER_MENU);
    wait();
    note(outcome, "folders", window() == WND_MEDIA_LIST && firstRow(WND_MEDIA_LIST, 1) == "1  root");
    touchRow(application, WND_MEDIA_LIST, 0);
    wait();
    note(outcome, "folder", window() == WND_FOLDER_LIST && firstRow(WND_FOLDER_LIST, Files) == "1  song 1");
    touchRow(application, WND_FOLDER_LIST, 1);
    note(outcome, "chosen", chosen());
    put("status", "discstate::20");
    put("device", "disc::0");
    put("status", "discstate::0");
    note(outcome, "ejected", window() != WND_AUDIO_PLAY && window() != WND_MEDIA_LIST);
    m_server->run({"app", "quit"});
}

void FaultyUnit::note(Outcome& outcome, const std::string& step, bool seen) {
    if (seen) {
        outcome.seen.push_back(step);
    }
}

/** False if the application cannot be asked, or is no longer there. */
bool FaultyUnit::act(ApplicationRun& application, const std::vector<std::string>& words) {
    if (application.ended() || m_server->run(words).exit != 0) {
        return false;
    }
    // An application that lost a part of itself may never settle; that is waited for once.
    m_settles = m_settles && m_server->run({"settle", "-t", "2"}).exit == 0;
    return true;
}

/** Until the first page is shown and the application was resumed; false if that never comes. */
bool FaultyUnit::waitForPage(ApplicationRun& application) {
    const auto deadline = std::chrono::steady_clock::now() + StartLimit;
    while (!application.ended() && std::chrono::steady_clock::now() < deadline) {
        if (window() > 0) {
            return act(application, {"requests"});
        }
        std::this_thread::sleep_for(5ms);
    }
    return false;
}

int FaultyUnit::window() {
    const auto answer = m_server->run({"screen", "main", "1"});
    return answer.exit == 0 ? Json::parse(answer.out)["main"].value("window", 0) : 0;
}

Json FaultyUnit::list(int page) {
    const auto answer = m_server->run({"screen", "main", number(page)});
    return answer.exit == 0
               ? Json::parse(answer.out)["main"]["windows"][number(page)]["items"][number(ListItem)]
               : Json::object();
}

/** The text of the first row if the list has that many. */
std::string FaultyUnit::firstRow(int page, size_t rows) {
    const Json shown = list(page).value("rows", Json::array());
    return shown.size() == rows ? shown[0].value("text", "") : "";
}

void FaultyUnit::touchRow(ApplicationRun& application, int page, int row) {
    const Json rect = list(page).value("rect", Json::array({0, 0, 0, 0}));
    const int height = rect[3].get<int>() / RowsInView;
    act(application, {"touch", number(rect[0].get<int>() + rect[2].get<int>() / 2),
                      number(rect[1].get<int>() + height * row + height / 2)});
}

std::vector<std::string> FaultyUnit::logLines() {
    return ctl::outputLines(m_server->run({"log"}).out);
}

/** Of the objects' present text: JSON values that are cut. */
std::vector<std::string> FaultyUnit::brokenLines() {
    std::vector<std::string> broken;
    for (const auto& object : ctl::outputLines(m_server->run({"pps", "ls"}).out)) {
        for (const auto& line : ctl::outputLines(m_server->run({"pps", "get", object}).out)) {
            constexpr std::string_view Mark = ":json:";
            const size_t at = line.find(Mark);
            if (at != std::string::npos && !Json::accept(line.substr(at + Mark.size()))) {
                broken.push_back(object + ": " + line);
            }
        }
    }
    return broken;
}

} // namespace zm::test
