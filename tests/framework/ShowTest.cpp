#include "tests/framework/TestApplication.h"

#include "screen/screen.h"

#include <gmock/gmock.h>

#include <cerrno>

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int Position[] = {0, 0};
constexpr int Size[] = {800, 480};

} // namespace

TEST_F(FrameworkTest, ShowWndRunsOnShowInsideTheCallOnTheEventThread) {
    run();
    app.main.onHandler = [this](const std::string& line) {
        if (line == "key 20") {
            EXPECT_TRUE(app.main.ShowWnd(6, true, 5));
            app.events.add("returned");
        }
    };
    headUnit.askData({{"t", "key"}, {"code", 20}});
    EXPECT_THAT(app.events.take(), ElementsAre("key 20", "show 6 1 5", "returned"));
}

TEST_F(FrameworkTest, ShowWndRunsOnShowInsideTheCallBeforeTheLoopRuns) {
    ASSERT_TRUE(app.initialise());
    EXPECT_TRUE(app.main.ShowWnd(6, true, 0));
    EXPECT_THAT(app.events.take(), ElementsAre("show 6 1 0"));
    ASSERT_TRUE(app.main.StartEventLoop());
    EXPECT_TRUE(headUnit.waitForShell("running"));
    EXPECT_TRUE(headUnit.waitForScreen("commit"));
}

TEST_F(FrameworkTest, ShowWndFromAnotherThreadIsPosted) {
    run();
    EXPECT_TRUE(app.main.ShowWnd(6, true, 0));
    headUnit.settle();
    EXPECT_THAT(app.events.take(), ElementsAre("show 6 1 0"));
    EXPECT_FALSE(app.events.threads().contains(std::this_thread::get_id()));
}

TEST_F(FrameworkTest, ShowWndOfAnUnknownPageDoesNothing) {
    EXPECT_FALSE(app.main.ShowWnd(1, true, 0));
    run();
    EXPECT_FALSE(app.main.ShowWnd(99, true, 0));
    headUnit.settle();
    EXPECT_THAT(app.events.take(), IsEmpty());
}

TEST_F(FrameworkTest, WindowManagerIsThereFromInitOn) {
    EXPECT_EQ(app.main.GetUIWndMgrWrapper(), nullptr);
    ASSERT_TRUE(app.initialise());
    EXPECT_NE(app.main.GetUIWndMgrWrapper(), nullptr);
}

TEST_F(FrameworkTest, ScreenTellsThePagesOfBothViews) {
    run();
    app.osd.ShowWnd(1, true, 0);
    app.osd.ShowWnd(20, true, 0);
    const json all = headUnit.askData({{"t", "screen"}});
    EXPECT_EQ(all["main"]["window"], 1);
    EXPECT_EQ(all["main"]["shown"], json::array({1}));
    EXPECT_EQ(all["main"]["visible"], true);
    EXPECT_EQ(all["main"]["windows"]["1"]["items"]["10"]["text"], "Disc");
    EXPECT_TRUE(all["main"]["windows"].contains("6"));
    EXPECT_EQ(all["osd"]["window"], 20);
    EXPECT_EQ(all["osd"]["shown"], json::array({1, 20}));
    EXPECT_EQ(all["osd"]["visible"], false);
    const json part = headUnit.askData({{"t", "screen"}, {"view", "osd"}, {"window", 20}});
    EXPECT_FALSE(part.contains("main"));
    EXPECT_EQ(part["osd"]["windows"].size(), 1u);
    EXPECT_TRUE(part["osd"]["windows"].contains("20"));
}

TEST_F(FrameworkTest, WhatTheOverlayCoversIsNotSeen) {
    run();
    const auto texts = [this] {
        std::vector<std::string> found;
        const json seen = headUnit.askData({{"t", "seen"}});
        for (const json& entry : seen["seen"]) {
            if (const std::string text = entry["text"]; !text.empty()) {
                found.push_back(entry["view"].get<std::string>() + " " + text);
            }
        }
        return found;
    };
    app.main.ShowWnd(6, true, 0);
    app.osd.ShowWnd(20, true, 0);
    headUnit.settle();
    EXPECT_THAT(texts(), ElementsAre("main go", "main beside")) << "the overlay is hidden";
    app.main.onHandler = [this](const std::string&) { app.main.SetVisible("Disc_osd", true); };
    headUnit.askData({{"t", "key"}, {"code", 20}});
    EXPECT_THAT(texts(), ElementsAre("main go")) << "the other lies under the pad";
}

TEST_F(FrameworkTest, NoPageIsShownAtFirst) {
    ASSERT_TRUE(app.initialise());
    ASSERT_TRUE(app.main.StartEventLoop());
    const json main = headUnit.askData({{"t", "screen"}, {"view", "main"}})["main"];
    EXPECT_EQ(main["window"], 0);
    EXPECT_EQ(main["shown"], json::array());
}

TEST_F(FrameworkTest, OverlayVisibilityTakesEffectAtTheFlush) {
    run();
    app.main.onHandler = [this](const std::string& line) {
        if (line == "key 20") {
            EXPECT_TRUE(app.main.SetVisible("Disc_osd", true));
            EXPECT_TRUE(app.main.SetZOrder("Disc_osd", 7));
        } else if (line == "key 21") {
            EXPECT_TRUE(app.main.FlushContext());
        }
    };
    headUnit.askData({{"t", "key"}, {"code", 20}});
    headUnit.settle();
    EXPECT_THAT(headUnit.screen("props"), IsEmpty());
    EXPECT_EQ(headUnit.askData({{"t", "screen"}})["osd"]["visible"], true);
    headUnit.askData({{"t", "key"}, {"code", 21}});
    headUnit.settle();
    EXPECT_THAT(headUnit.screen("props"),
                ElementsAre(json{{"t", "props"}, {"window", 2}, {"visible", true}, {"order", 7}}));
}

TEST_F(FrameworkTest, AlphaBlendingIsSetAtOnce) {
    run();
    EXPECT_TRUE(app.osd.EnableAlphaBlending(true));
    headUnit.settle();
    EXPECT_THAT(headUnit.screen("props"), ElementsAre(json{{"t", "props"}, {"window", 2}, {"alpha", true}}));
}

TEST_F(FrameworkTest, APostedChildIsReportedAndPlaced) {
    run();
    screen_window_t window = nullptr;
    app.main.onHandler = [&](const std::string& line) {
        if (line == "child zmdisc_video_win") {
            EXPECT_TRUE(app.main.SetZOrder("zmdisc_video_win", 2));
            EXPECT_TRUE(app.main.GetPostScreenWin("zmdisc_video_win", window));
            EXPECT_EQ(screen_set_window_property_iv(window, SCREEN_PROPERTY_POSITION, Position), 0);
            EXPECT_EQ(screen_set_window_property_iv(window, SCREEN_PROPERTY_SIZE, Size), 0);
            EXPECT_TRUE(app.main.SetVisible("zmdisc_video_win", true));
            EXPECT_TRUE(headUnit.screen("props").empty());
            EXPECT_TRUE(app.main.FlushContext());
        }
    };
    EXPECT_FALSE(app.main.GetPostScreenWin("zmdisc_video_win", window));
    EXPECT_FALSE(app.main.SetVisible("zmdisc_video_win", true));
    headUnit.askData({{"t", "childpost"}, {"name", "zmdisc_video_win"}, {"window", 9}});
    headUnit.settle();
    EXPECT_THAT(app.events.take(), ElementsAre("child zmdisc_video_win"));
    EXPECT_THAT(headUnit.screen("props"), ElementsAre(json{{"t", "props"},
                                                           {"name", "zmdisc_video_win"},
                                                           {"visible", true},
                                                           {"order", 2},
                                                           {"x", 0},
                                                           {"y", 0},
                                                           {"width", 800},
                                                           {"height", 480}}));
    headUnit.askData({{"t", "childgone"}, {"name", "zmdisc_video_win"}});
    headUnit.settle();
    app.main.onHandler = [&](const std::string&) {
        screen_window_t other = nullptr;
        EXPECT_FALSE(app.main.GetPostScreenWin("zmdisc_video_win", other));
        EXPECT_FALSE(app.main.SetZOrder("zmdisc_video_win", 2));
        // The handle that was given out earlier is still one, without effect.
        EXPECT_EQ(screen_set_window_property_iv(window, SCREEN_PROPERTY_SIZE, Size), 0);
        EXPECT_TRUE(app.main.FlushContext());
    };
    headUnit.askData({{"t", "key"}, {"code", 20}});
    headUnit.settle();
    EXPECT_EQ(headUnit.screen("props").size(), 1u);
}

TEST_F(FrameworkTest, AWithdrawnChildMayBePostedAgain) {
    run();
    const json post = {{"t", "childpost"}, {"name", "w"}, {"window", 9}};
    headUnit.askData(post);
    headUnit.askData({{"t", "childgone"}, {"name", "w"}});
    headUnit.askData(post);
    headUnit.settle();
    EXPECT_THAT(app.events.take(), ElementsAre("child w", "child w"));
}

TEST_F(FrameworkTest, DamageIsCommittedOncePerEvent) {
    run();
    const size_t before = headUnit.screen("commit").size();
    app.main.onHandler = [this](const std::string& line) {
        if (line == "key 20") {
            app.main.ShowWnd(6, true, 0);
            app.main.ShowWnd(1, true, 0);
            app.main.ShowWnd(6, true, 0);
        }
    };
    headUnit.askData({{"t", "key"}, {"code", 20}});
    headUnit.settle();
    EXPECT_EQ(headUnit.screen("commit").size(), before + 1);
}

TEST_F(FrameworkTest, WithoutAFreeBufferDamageWaitsForOne) {
    run();
    headUnit.keepFrames(true);
    for (int i = 0; i < 6; ++i) {
        app.main.ShowWnd(i % 2 ? 1 : 6, true, 0);
        headUnit.settle();
    }
    const size_t before = headUnit.screen("commit").size();
    headUnit.keepFrames(false);
    EXPECT_TRUE(headUnit.waitForScreen("commit", before + 1));
}
