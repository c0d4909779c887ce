#include "tests/framework/TestApplication.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cwchar>
#include <fstream>
#include <future>
#include <sstream>
#include <thread>
#include <unistd.h>

using namespace zm::test;
using testing::ElementsAre;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds TwoSeconds(2000);

} // namespace

TEST(Start, FailsWithinTwoSecondsWithoutAHeadUnit) {
    const RuntimeFolder folder;
    Oro::ZMCAR::ViewUI view;
    const auto start = Clock::now();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(view.Init("/none/", "zmdisc", "MAIN.zmrc_device", "1-7-zelmar-disc", "/none/", 800, 480));
    EXPECT_LT(Clock::now() - start, TwoSeconds);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("no head unit"));
}

TEST(Start, FailsWithinTwoSecondsWhenTheHeadUnitDoesNotAnswer) {
    FakeHeadUnit headUnit(json::object(), Welcome::Silent);
    TestApplication app(headUnit);
    const auto start = Clock::now();
    EXPECT_FALSE(app.initialise());
    EXPECT_LT(Clock::now() - start, TwoSeconds);
}

TEST(Start, FailsWhenTheHeadUnitTalksNonsense) {
    FakeHeadUnit headUnit(json::object(), Welcome::Nonsense);
    TestApplication app(headUnit);
    EXPECT_FALSE(app.initialise());
}

TEST(Start, FaultyResourceFailsAndNamesFileAndLine) {
    FakeHeadUnit headUnit;
    TestApplication app(headUnit);
    const std::string file = headUnit.folder() + "/MAIN.zmrc_device";
    std::stringstream content;
    content << std::ifstream(file).rdbuf();
    std::string text = content.str();
    const std::string good = "[300, 100, 100, 100]";
    const size_t at = text.find(good);
    ASSERT_NE(at, std::string::npos);
    const auto line = 1 + std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(at), '\n');
    std::ofstream(file) << text.replace(at, good.size(), "7");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(app.initialise());
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("MAIN.zmrc_device:" + std::to_string(line)));
}

TEST(Start, CanBeTriedAgainAfterAFailure) {
    FakeHeadUnit headUnit;
    TestApplication app(headUnit);
    std::ofstream(headUnit.folder() + "/MAIN.zmrc_device") << "{";
    ASSERT_FALSE(app.initialise());
    writeResources(headUnit.folder());
    app.start();
}

TEST(Start, DeviceMessagesFromBeforeComeFirst) {
    FakeHeadUnit headUnit({{"manualClock", true}, {"devices", {{"2", 0}, {"7", 200}}}, {"told", {2}}});
    TestApplication app(headUnit);
    ASSERT_TRUE(app.initialise());
    ASSERT_TRUE(app.controller.StartMonitor(1));
    ASSERT_TRUE(app.controller.StartMonitor(2));
    ASSERT_TRUE(app.main.StartEventLoop());
    headUnit.settle();
    EXPECT_EQ(app.events.take().at(0), "apps 3 4 2 0");
}

TEST_F(FrameworkTest, TellsTheHeadUnitWhoItIs) {
    run();
    const json hello = headUnit.shell("hello").at(0);
    EXPECT_EQ(hello["name"], "zmdisc");
    EXPECT_EQ(hello["group"], "1-7-zelmar-disc");
    EXPECT_EQ(hello["pid"], getpid());
    EXPECT_EQ(headUnit.shell("view").at(0)["name"], "Disc_osd");
    EXPECT_EQ(headUnit.shell("view").at(0)["order"], 3);
    EXPECT_EQ(headUnit.shell("running").size(), 1u);
    EXPECT_EQ(app.main.GetWinGroupName(), "1-7-zelmar-disc");
}

TEST_F(FrameworkTest, MakesAWindowForEachView) {
    run();
    const auto windows = headUnit.screen("window");
    ASSERT_EQ(windows.size(), 2u);
    EXPECT_EQ(windows[0]["name"], "zmdisc");
    EXPECT_EQ(windows[0]["order"], 1);
    EXPECT_EQ(windows[0]["visible"], true);
    EXPECT_EQ(windows[1]["name"], "Disc_osd");
    EXPECT_EQ(windows[1]["order"], 3);
    EXPECT_EQ(windows[1]["visible"], false);
}

TEST_F(FrameworkTest, RunningIsToldOnlyOnceStartUpHasShownAPage) {
    ASSERT_TRUE(app.initialise());
    ASSERT_TRUE(app.join());
    ASSERT_TRUE(app.main.StartEventLoop());
    headUnit.settle();
    EXPECT_TRUE(headUnit.shell("running").empty());
    app.main.ShowWnd(1, true, 0);
    EXPECT_TRUE(headUnit.waitForShell("running"));
}

TEST_F(FrameworkTest, TheSecondEventLoopIsRefused) {
    run();
    EXPECT_FALSE(app.main.StartEventLoop());
    EXPECT_FALSE(app.osd.StartEventLoop());
}

TEST_F(FrameworkTest, JoiningNeedsAnInitialisedViewAndAFreeName) {
    ASSERT_TRUE(app.initialise());
    EXPECT_FALSE(app.main.JoinView(&app.osd, "Disc_osd", 3));
    EXPECT_FALSE(app.main.JoinView(nullptr, "Disc_osd", 3));
    ASSERT_TRUE(app.join());
    EXPECT_FALSE(app.main.JoinView(&app.osd, "Disc_osd", 3));
    EXPECT_EQ(app.main.GetViewUI("Disc_osd"), &app.osd);
    EXPECT_EQ(app.main.GetViewUI("zmdisc"), nullptr);
    EXPECT_EQ(app.main.GetViewUI("other"), nullptr);
}

TEST_F(FrameworkTest, JoiningFailsWithoutTheCompositor) {
    ASSERT_TRUE(app.initialise());
    headUnit.hangUpScreen();
    EXPECT_FALSE(app.join());
    EXPECT_EQ(app.main.GetViewUI("Disc_osd"), nullptr);
}

TEST_F(FrameworkTest, AnOverlayNeedsAMainView) {
    EXPECT_FALSE(app.osd.Init("Disc_osd", headUnit.folder() + "/OSD.zmrc_device", fontFolder(), 800, 480));
}

TEST_F(FrameworkTest, JoinedViewIsReportedAsPostedFirstOfAll) {
    ASSERT_TRUE(app.initialise());
    ASSERT_TRUE(app.join());
    app.main.SendViewMessage({{1000, 0, 0, 0}});
    EXPECT_TRUE(app.events.lines().empty());
    ASSERT_TRUE(app.main.StartEventLoop());
    headUnit.settle();
    EXPECT_THAT(app.events.lines(), ElementsAre("child Disc_osd", "message 1000 0", "osd message 1000 0"));
}

TEST_F(FrameworkTest, WideFormattingConvertsUtf8) {
    ASSERT_TRUE(app.initialise());
    wchar_t text[16];
    ASSERT_EQ(swprintf(text, 16, L"%s", "\xE5\x85\x89\xE7\x9B\x98"), 2);
    EXPECT_STREQ(text, L"\x5149\x76D8");
}

TEST_F(FrameworkTest, SignalEndsTheWait) {
    ASSERT_TRUE(app.main.MaskSignals());
    run();
    raise(SIGTERM);
    EXPECT_TRUE(app.main.WaitforSignals());
    // The signal was taken: lifting the mask does not end the process.
    sigset_t all;
    sigemptyset(&all);
    sigaddset(&all, SIGTERM);
    EXPECT_EQ(pthread_sigmask(SIG_UNBLOCK, &all, nullptr), 0);
}

TEST_F(FrameworkTest, TheHeadUnitGoingAwayEndsTheWait) {
    run();
    headUnit.hangUp();
    EXPECT_TRUE(app.main.WaitforSignals());
}

TEST_F(FrameworkTest, AMessageThatIsNoneCountsAsGoingAway) {
    run();
    headUnit.tell(json::array({1}));
    EXPECT_TRUE(app.main.WaitforSignals());
}

TEST_F(FrameworkTest, CloseSaysGoodByeAndRunsNoHandlerAfterwards) {
    run();
    ASSERT_TRUE(app.main.Close());
    EXPECT_TRUE(headUnit.waitForShell("bye"));
    EXPECT_THAT(app.events.take(), ElementsAre("close", "osd close"));
    EXPECT_FALSE(app.main.SendViewMessage({{1000, 0, 0, 0}}));
    EXPECT_FALSE(app.main.ShowWnd(6, true, 0));
    app.controller.SetTimer(2, 1);
    EXPECT_TRUE(app.events.lines().empty());
    EXPECT_FALSE(app.controller.QueryLauncher("zmhome", "null"));
}

TEST_F(FrameworkTest, CloseWithMessagesInTheQueueDropsThem) {
    run();
    app.main.onHandler = [this](const std::string& line) {
        if (line == "message 1 0") {
            for (int i = 0; i < 1000; ++i) {
                app.main.SendViewMessage({{2, i, 0, 0}});
            }
        }
    };
    app.main.SendViewMessage({{1, 0, 0, 0}});
    ASSERT_TRUE(app.events.waitFor(1));
    EXPECT_TRUE(app.main.Close());
    EXPECT_EQ(app.events.lines().back(), "osd close");
}

TEST_F(FrameworkTest, AnotherApplicationCanStartInTheSameProcess) {
    {
        TestApplication first(headUnit);
        first.start();
        first.main.Close();
    }
    run();
    EXPECT_EQ(headUnit.shell("hello").size(), 2u);
}

TEST_F(FrameworkTest, ViewsMayGoAwayWhileTheLoopRuns) {
    auto second = std::make_unique<RecordingView<Oro::ZMCAR::ViewOsd>>(app.events, "second ");
    ASSERT_TRUE(app.initialise());
    ASSERT_TRUE(app.join());
    ASSERT_TRUE(second->Init("second", headUnit.folder() + "/OSD.zmrc_device", fontFolder(), 800, 480));
    ASSERT_TRUE(app.main.JoinView(second.get(), "second", 5));
    ASSERT_TRUE(app.main.StartEventLoop());
    second->ShowWnd(1, true, 0);
    second.reset();
    app.main.SendViewMessage({{1000, 0, 0, 0}});
    headUnit.settle();
    EXPECT_EQ(app.main.GetViewUI("second"), nullptr);
    EXPECT_TRUE(headUnit.waitForScreen("close"));
    EXPECT_EQ(app.events.lines().back(), "osd message 1000 0");
}

TEST_F(FrameworkTest, AViewGoesAwayNoSoonerThanItsHandlerReturns) {
    auto second = std::make_unique<RecordingView<Oro::ZMCAR::ViewOsd>>(app.events, "second ");
    run();
    ASSERT_TRUE(second->Init("second", headUnit.folder() + "/OSD.zmrc_device", fontFolder(), 800, 480));
    ASSERT_TRUE(app.main.JoinView(second.get(), "second", 5));
    std::promise<void> begun;
    std::atomic<bool> returned = false;
    second->onHandler = [&](const std::string& line) {
        if (line == "message 1000 0") {
            begun.set_value();
            std::this_thread::sleep_for(
                std::chrono::seconds(3)); // longer than anybody would wait for a thread that is well
            returned = true;
        }
    };
    app.main.SendViewMessage({{1000, 0, 0, 0}});
    begun.get_future().wait();
    second.reset();
    EXPECT_TRUE(returned);
    headUnit.settle();
    EXPECT_TRUE(headUnit.waitForScreen("close"));
}
