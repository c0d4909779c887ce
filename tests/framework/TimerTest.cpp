#include "tests/framework/TestApplication.h"

#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

#include <gmock/gmock.h>

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;
using Clock = std::chrono::steady_clock;

namespace {

std::string expiry(int id) {
    return "apps 3 2 " + std::to_string(id) + " 0";
}

} // namespace

TEST_F(FrameworkTest, TimersArePeriodicUntilKilled) {
    run();
    EXPECT_TRUE(app.controller.SetTimer(5, 8000));
    headUnit.advance(7999);
    EXPECT_THAT(app.events.take(), IsEmpty());
    headUnit.advance(1);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(5)));
    headUnit.advance(24000);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(5), expiry(5), expiry(5)));
    EXPECT_TRUE(app.controller.KillTimer(5));
    EXPECT_FALSE(app.controller.KillTimer(5));
    headUnit.advance(80000);
    EXPECT_THAT(app.events.take(), IsEmpty());
}

TEST_F(FrameworkTest, SettingARunningTimerStartsItAnew) {
    run();
    app.controller.SetTimer(4, 10000);
    headUnit.advance(9000);
    app.controller.SetTimer(4, 10000);
    headUnit.advance(9999);
    EXPECT_THAT(app.events.take(), IsEmpty());
    headUnit.advance(1);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(4)));
}

TEST_F(FrameworkTest, ATimerWithoutAPeriodIsRefused) {
    EXPECT_FALSE(app.controller.SetTimer(1, 0));
    EXPECT_FALSE(app.controller.KillTimer(1));
}

TEST_F(FrameworkTest, TimersFireInOrderOfTimeAndOfSetting) {
    run();
    app.controller.SetTimer(1, 300);
    app.controller.SetTimer(2, 200);
    app.controller.SetTimer(3, 200);
    headUnit.advance(400);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(2), expiry(3), expiry(1), expiry(2), expiry(3)));
}

TEST_F(FrameworkTest, WhatRunsOnIsSetAnewWhenItFires) {
    run();
    app.controller.SetTimer(1, 200);
    app.controller.SetTimer(2, 300);
    headUnit.advance(500);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(1), expiry(2), expiry(1)));
    headUnit.advance(100); // both: timer 2 has been set for it at 300, timer 1 at 400
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(2), expiry(1)));
}

TEST_F(FrameworkTest, NowInsideAHandlerIsTheDueTime) {
    run();
    app.main.onHandler = [this](const std::string& line) {
        if (line == expiry(1)) {
            app.controller.KillTimer(1);
            app.controller.SetTimer(2, 100);
        }
    };
    app.controller.SetTimer(1, 500);
    headUnit.advance(599);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(1)));
    headUnit.advance(1);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(2)));
}

TEST_F(FrameworkTest, AKilledTimersExpiryIsDroppedEvenWhenItIsDue) {
    run();
    app.main.onHandler = [this](const std::string& line) {
        if (line == expiry(1)) {
            app.controller.KillTimer(2);
        }
    };
    app.controller.SetTimer(1, 100);
    app.controller.SetTimer(2, 100);
    headUnit.advance(100);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(1)));
}

TEST_F(FrameworkTest, ControllersHaveTheirOwnTimers) {
    run();
    {
        RecordingController other(&app.main, app.changes);
        other.SetTimer(1, 100);
        app.controller.SetTimer(1, 150);
        EXPECT_TRUE(other.KillTimer(1));
        other.SetTimer(2, 100);
    }
    headUnit.advance(200);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(1)));
}

TEST_F(FrameworkTest, WhatATimerSetsOffComesToRestBeforeTheNextOne) {
    run();
    app.main.onHandler = [this](const std::string& line) {
        if (line == expiry(1)) {
            app.main.SendViewMessage({{1000, 0, 0, 0}});
        }
    };
    app.controller.SetTimer(1, 100);
    app.controller.SetTimer(2, 101);
    headUnit.advance(101);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(1), "message 1000 0", "osd message 1000 0", expiry(2)));
}

TEST_F(FrameworkTest, TimersOfBeforeTheLoopRun) {
    ASSERT_TRUE(app.initialise());
    app.controller.SetTimer(7, 15000);
    ASSERT_TRUE(app.main.StartEventLoop());
    headUnit.advance(15000);
    EXPECT_THAT(app.events.take(), ElementsAre(expiry(7)));
}

TEST(RealClock, FiresPeriodicallyWithoutADrift) {
    FakeHeadUnit headUnit;
    TestApplication app(headUnit);
    app.start();
    headUnit.settle();
    app.events.take();
    const auto start = Clock::now();
    app.controller.SetTimer(2, 50);
    ASSERT_TRUE(app.events.waitFor(4));
    const auto took = Clock::now() - start;
    EXPECT_TRUE(app.controller.KillTimer(2));
    EXPECT_GE(took, std::chrono::milliseconds(199));
    EXPECT_EQ(app.events.lines().front(), expiry(2));
    headUnit.settle();
    const size_t count = app.events.lines().size();
    app.controller.SetTimer(3, 60);
    ASSERT_TRUE(app.events.waitFor(count + 1));
    EXPECT_EQ(app.events.lines().back(), expiry(3));
}

TEST(RealClock, AnExpiryThatWasLateDoesNotMakeTheNextOneLate) {
    using std::chrono::milliseconds;
    constexpr milliseconds Period(300);
    FakeHeadUnit headUnit;
    TestApplication app(headUnit);
    app.start();
    headUnit.settle();
    Clock::time_point start;
    app.main.onHandler = [&start, Period](const std::string& line) {
        if (line == "key 20") {
            std::this_thread::sleep_until(start + Period * 5 / 3); // the first expiry has to wait
        }
    };
    // A machine with too much to do may be late by itself, but not each time.
    bool inTime = false;
    for (int attempt = 0; attempt < 5 && !inTime; ++attempt) {
        app.events.take();
        start = Clock::now();
        app.controller.SetTimer(2, static_cast<unsigned int>(Period.count()));
        headUnit.askData({{"t", "key"}, {"code", 20}});
        ASSERT_TRUE(app.events.waitFor(3)); // the key, and two expiries
        const auto took = Clock::now() - start;
        EXPECT_TRUE(app.controller.KillTimer(2));
        headUnit.settle();
        EXPECT_GE(took, 2 * Period - milliseconds(1));
        inTime = took < Period * 5 / 2;
    }
    EXPECT_TRUE(inTime);
}

TEST(RealClock, CannotBeAdvanced) {
    FakeHeadUnit headUnit;
    TestApplication app(headUnit);
    app.start();
    EXPECT_EQ(headUnit.ask({{"t", "advance"}, {"ms", 100}})["ok"], false);
}

TEST_F(FrameworkTest, AnimationsGoOnWithTheManualClockOnly) {
    run();
    app.main.onHandler = [this](const std::string& line) {
        if (line == "key 20") {
            app.main.ShowWnd(6, true, 0);
            app.main.GetUIWndMgrWrapper()->GetUIAnalysisObj()->ShowItem(6, 11, true);
            app.main.GetUIWndMgrWrapper()->drawAllItem();
        }
    };
    headUnit.askData({{"t", "key"}, {"code", 20}});
    headUnit.settle();
    const size_t before = headUnit.screen("commit").size();
    headUnit.settle();
    EXPECT_EQ(headUnit.screen("commit").size(), before);
    headUnit.advance(200);
    EXPECT_GT(headUnit.screen("commit").size(), before);
}
