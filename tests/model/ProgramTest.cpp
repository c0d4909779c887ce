#include "tests/framework/FakeHeadUnit.h"
#include "tests/model/Arguments.h"
#include "tests/model/PpsCalls.h"

#include "BuildPaths.h"
#include "Platen.h"
#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"
#include "tests/support/Eventually.h"
#include "tests/support/FailingThreads.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <set>

namespace zm::test {

using testing::ElementsAre;
using testing::ElementsAreArray;

namespace fs = std::filesystem;

static void useResources() {
    setenv("ZM_RCC_PATH", ZM_BINARY_DIR "/share/rccs/", 1);
    setenv("ZM_FONT_PATH", ZM_BINARY_DIR "/share/fonts/", 1);
}

static int run(const std::vector<const char*>& words) {
    Arguments arguments(words);
    return PlatenMain(arguments.count(), arguments.values());
}

/** The log lines of the program's own steps: severity, blank, text. */
static std::vector<std::string> steps(const FakeHeadUnit& headUnit) {
    const std::string tag = "_PLATEN_[main]-";
    std::vector<std::string> steps;
    for (const auto& entry : LogReader(logFile(headUnit.folder())).last(100'000)) {
        if (entry.text.starts_with(tag)) {
            steps.push_back(std::to_string(entry.severity) + " " + entry.text.substr(tag.size()));
        }
    }
    return steps;
}

/** The whole program in this process, between the sockets of a head unit. */
class ProgramTest : public testing::Test {
protected:
    ProgramTest() { useResources(); }

    /** The program's steps behind the start of the main view. */
    std::vector<std::string> laterSteps() const {
        auto all = steps(m_headUnit);
        const auto start = std::ranges::find(all, "6 theApp.ViewInit");
        return {start, all.end()};
    }
    /** Whether what lies under the overlay's window shows through. */
    bool overlayBlends() {
        for (const json& window : m_headUnit.screen("window")) {
            if (window["name"] == "Disc_osd") {
                bool blends = window["alpha"];
                for (const json& change : m_headUnit.screen("props")) {
                    if (change.value("window", json()) == window["window"]) {
                        blends = change.value("alpha", blends);
                    }
                }
                return blends;
            }
        }
        return false;
    }
    /** The resources once more, but the overlay's can be read only once a test has written them. */
    std::string holdOverlayResource() {
        const fs::path given = ZM_BINARY_DIR "/share/rccs";
        const fs::path copy = m_headUnit.folder() + "/rccs";
        fs::create_directory(copy);
        for (const auto& entry : fs::directory_iterator(given)) {
            fs::create_symlink(entry.path(), copy / entry.path().filename());
        }
        const fs::path overlay = copy / "OVERLAY.zmrc_device";
        fs::remove(overlay);
        EXPECT_EQ(mkfifo(overlay.c_str(), 0600), 0);
        setenv("ZM_RCC_PATH", (copy.string() + "/").c_str(), 1);
        return overlay;
    }

    FakeHeadUnit m_headUnit;
};

const std::vector<std::string> STEPS_TO_THE_LOOP{
    "6 theApp.ViewInit", "6 theOsd.Init",         "6 theOsd.ViewInit",
    "6 theApp.JoinView", "6 viewController.Init", "6 ---------StartEventLoop-----------"};

TEST_F(ProgramTest, ItMonitorsJoinsAndBlendsAndEndsWithZeroWhenTheHeadUnitGoes) {
    auto result = std::async(std::launch::async, [] { return run({"Platen", "disc"}); });
    EXPECT_TRUE(m_headUnit.waitForShell("running"));
    std::vector<int> monitors;
    for (const json& message : m_headUnit.shell("monitor")) {
        monitors.push_back(message["number"]);
    }
    EXPECT_THAT(monitors, ElementsAre(1, 4, 2));
    const json view = m_headUnit.shell("view").at(0);
    EXPECT_EQ(view["name"], "Disc_osd");
    EXPECT_EQ(view["order"], 3);
    EXPECT_TRUE(eventually([this] { return overlayBlends(); }));
    m_headUnit.hangUp();
    EXPECT_EQ(result.get(), 0);
    auto steps = STEPS_TO_THE_LOOP;
    steps.push_back("5 main end");
    EXPECT_THAT(laterSteps(), ElementsAreArray(steps));
}

TEST_F(ProgramTest, AnObjectThatCannotBeClosedEndsItWithOne) {
    auto result = std::async(std::launch::async, [] { return run({"Platen", "disc"}); });
    EXPECT_TRUE(m_headUnit.waitForShell("running"));
    failPpsClosing("/pps/zelmar/disc/status");
    m_headUnit.hangUp();
    EXPECT_EQ(result.get(), 1);
    EXPECT_THAT(laterSteps(), ElementsAreArray(STEPS_TO_THE_LOOP));
}

TEST_F(ProgramTest, AnOverlayThatCannotBeJoinedEndsWithOne) {
    const std::string overlay = holdOverlayResource();
    auto result = std::async(std::launch::async, [] { return run({"Platen", "disc"}); });
    EXPECT_TRUE(m_headUnit.waitForScreen("window"));
    m_headUnit.hangUpScreen();
    std::ofstream(overlay) << std::ifstream(ZM_BINARY_DIR "/share/rccs/OVERLAY.zmrc_device").rdbuf();
    EXPECT_EQ(result.get(), 1);
    EXPECT_THAT(laterSteps(), ElementsAre("6 theApp.ViewInit", "6 theOsd.Init", "6 theOsd.ViewInit",
                                          "6 theApp.JoinView", "2 ==========osd joinview error=========="));
}

TEST_F(ProgramTest, AnOverlayWithoutItsResourceEndsWithOne) {
    fs::remove(holdOverlayResource());
    EXPECT_EQ(run({"Platen", "disc"}), 1);
    EXPECT_THAT(laterSteps(), ElementsAre("6 theApp.ViewInit", "6 theOsd.Init",
                                          "2 ==========osdview init error=========="));
}

static std::set<std::string> threads() {
    std::set<std::string> found;
    for (const auto& thread : fs::directory_iterator("/proc/self/task")) {
        found.insert(thread.path().filename());
    }
    return found;
}

/** The threads of this process that take signals to end. */
static std::set<std::string> threadsThatTakeSignals() {
    const uint64_t ends = 1u << (SIGTERM - 1) | 1u << (SIGINT - 1);
    std::set<std::string> found;
    for (const auto& thread : fs::directory_iterator("/proc/self/task")) {
        std::ifstream status(thread.path() / "status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("SigBlk:") && (std::stoull(line.substr(7), nullptr, 16) & ends) != ends) {
                found.insert(thread.path().filename());
            }
        }
    }
    return found;
}

TEST_F(ProgramTest, NoThreadOfItIsTornAwayByASignal) {
    const auto before = threads();
    auto result = std::async(std::launch::async, [] { return run({"Platen", "disc"}); });
    EXPECT_TRUE(m_headUnit.waitForShell("running"));
    // A worker blocks them itself, first of all, once it runs.
    EXPECT_TRUE(eventually([&before] { return std::ranges::includes(before, threadsThatTakeSignals()); }));
    m_headUnit.hangUp();
    EXPECT_EQ(result.get(), 0);
}

/** Runs the program with the start of one thread failing, and ends it if it comes up all the same; its
 * status. */
static int runWithoutThread(FakeHeadUnit& headUnit, int thread) {
    auto result = std::async(std::launch::async, [thread] {
        threadsLeft = thread;
        return run({"Platen", "disc"});
    });
    while (result.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready) {
        if (!headUnit.shell("running").empty()) {
            headUnit.hangUp();
            break;
        }
    }
    return result.get();
}

TEST(ProgramThreadsTest, AThreadThatCannotBeStartedEndsItInOrder) {
    std::set<std::string> ends;
    for (int thread = 0;; ++thread) {
        FakeHeadUnit headUnit;
        useResources();
        const int status = runWithoutThread(headUnit, thread);
        const std::string last = steps(headUnit).back();
        EXPECT_EQ(status, last == "5 main end" ? 0 : 1) << last;
        if (threadsLeft.exchange(-1) >= 0) {
            EXPECT_EQ(last, "5 main end") << "no thread was missing";
            break;
        }
        ends.insert(last);
    }
    EXPECT_THAT(ends, ElementsAre("2 ==========StartEventLoop error==========",
                                  "2 ==========view init error==========", "5 main end"));
}

} // namespace zm::test
