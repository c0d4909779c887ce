#include "tests/views/MainView.h"

namespace zm::test {

using MainTouch = MainView;

namespace {

constexpr int NO_ITEM = 0;

} // namespace

TEST_F(MainTouch, ClicksAreLoggedWithPageControlAndState) {
    unit.click(WND_DISC_LOADING, 77, 4);
    EXPECT_EQ(unit.log("[DiscView::OnClick]--nWndId=1,nCtrlId=77,nBtState=4").size(), 1u);
}

TEST_F(MainTouch, PagesOutsideTheRangeAreIgnored) {
    for (const int page : {-1, 0, 2, 28, 100}) {
        unit.click(page, ITEM_HOME, 1);
    }
    EXPECT_THAT(applications(), IsEmpty());
    EXPECT_EQ(beeps(), 0);
}

TEST_F(MainTouch, PagesHandleReleasesOnly) {
    for (const int page :
         {WND_DISC_LOADING, WND_PARKING, WND_DISC_ERROR, WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        for (const int state : {0, 2, 3, 4}) {
            unit.click(page, ITEM_HOME, state);
        }
        EXPECT_THAT(applications(), IsEmpty()) << page;
        unit.click(page, ITEM_HOME, 1);
        EXPECT_THAT(applications(), ElementsAre("zmhome null")) << page;
        EXPECT_EQ(beeps(), 1) << page;
        unit.clearRequests();
    }
}

TEST_F(MainTouch, ListClicksRestartTheWayBack) {
    play(PLAY_TYPE_MUSIC);
    openList();
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        unit.advance(7s);
        unit.click(page, 6003); // beeps only
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST) << page;
    }
    unit.advance(8s);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainTouch, PlayPageButtonsSendTheirCommands) {
    struct Case {
        int control;
        std::string command; ///< empty: none
    };
    play(PLAY_TYPE_MUSIC);
    for (const auto& [control, command] :
         {Case{6503, SetShuffleMode(0)}, Case{6504, SetRepeatMode(0)}, Case{6521, PreviousClip()},
          Case{6522, PlayPause()}, Case{6523, PlayPause()}, Case{6524, NextClip()}, Case{2069, ""}}) {
        SCOPED_TRACE(control);
        unit.clearCommands();
        unit.clearRequests();
        unit.click(WND_AUDIO_PLAY, control);
        EXPECT_EQ(unit.commands(),
                  !command.empty() ? std::vector<std::string>{command} : std::vector<std::string>{});
        EXPECT_EQ(beeps(), 1);
        EXPECT_THAT(applications(), IsEmpty());
    }
}

TEST_F(MainTouch, PlayPageButtonsAskForApplications) {
    play(PLAY_TYPE_MUSIC);
    unit.click(WND_AUDIO_PLAY, ITEM_HOME);
    unit.click(WND_AUDIO_PLAY, ITEM_EQUALISER);
    EXPECT_THAT(applications(), ElementsAre("zmhome null", "zmeq null"));
    EXPECT_EQ(beeps(), 2);
}

TEST_F(MainTouch, ListButtonReturnsToTheListAndStartsTheWayBack) {
    play(PLAY_TYPE_MUSIC);
    unit.click(WND_AUDIO_PLAY, ITEM_TO_LIST);
    unit.advance(LIST_WAIT);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_EQ(beeps(), 1);
    unit.advance(8s);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainTouch, EachHeldReportOfAFastButtonSendsOneCommandAndItsReleaseNone) {
    play(PLAY_TYPE_MUSIC);
    struct Case {
        int control;
        std::string command;
    };
    for (const auto& [control, command] : {Case{6524, FastForward()}, Case{6521, FastBackward()}}) {
        SCOPED_TRACE(control);
        unit.clearCommands();
        unit.click(WND_AUDIO_PLAY, control, 0);
        unit.click(WND_AUDIO_PLAY, control, 4);
        unit.click(WND_AUDIO_PLAY, control, 4);
        unit.click(WND_AUDIO_PLAY, control, 1);
        EXPECT_THAT(unit.commands(), ElementsAre(command, command));
    }
}

TEST_F(MainTouch, FastButtonsClickOnlyAfterAPress) {
    play(PLAY_TYPE_MUSIC);
    unit.click(WND_AUDIO_PLAY, 6524, 0);
    unit.click(WND_AUDIO_PLAY, 6524, 1);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
    unit.click(WND_AUDIO_PLAY, 6524, 1); // without a press in between
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
    unit.click(WND_AUDIO_PLAY, 6524, 0);
    unit.click(WND_AUDIO_PLAY, 6524, 1);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip(), NextClip()));
}

TEST_F(MainTouch, FastButtonsWorkThroughRealTouches) {
    play(PLAY_TYPE_MUSIC);
    unit.touchItem(unit.main, WND_AUDIO_PLAY, ITEM_NEXT);
    unit.touchItem(unit.main, WND_AUDIO_PLAY, ITEM_NEXT);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip(), NextClip()));
    unit.clearCommands();
    unit.touchItem(unit.main, WND_AUDIO_PLAY, ITEM_NEXT, 900ms);
    EXPECT_THAT(unit.commands(), ElementsAre(FastForward()));
}

TEST_F(MainTouch, OtherControlsIgnoreBeingHeld) {
    play(PLAY_TYPE_MUSIC);
    for (const int control : {6503, 6504, 6522, 3, 6525}) {
        unit.click(WND_AUDIO_PLAY, control, 4);
    }
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.requests(), IsEmpty());
}

TEST_F(MainTouch, SwipesOfMoreThanAHundredPixelsChangeTheItem) {
    struct Case {
        int from, to;
        std::string command;
    };
    play(PLAY_TYPE_MUSIC);
    for (const auto& [from, to, command] :
         {Case{300, 400, ""}, Case{300, 401, PreviousClip()}, Case{400, 300, ""}, Case{400, 299, NextClip()},
          Case{300, 300, ""}}) {
        SCOPED_TRACE(to - from);
        unit.clearCommands();
        unit.clearRequests();
        swipe(WND_AUDIO_PLAY, NO_ITEM, from, to, 200);
        EXPECT_EQ(unit.commands(),
                  !command.empty() ? std::vector<std::string>{command} : std::vector<std::string>{});
        EXPECT_EQ(beeps(), command.empty() ? 0 : 1);
    }
}

TEST_F(MainTouch, SwipesThatEndInTheRowOfButtonsDoNothing) {
    play(PLAY_TYPE_MUSIC);
    swipe(WND_AUDIO_PLAY, NO_ITEM, 100, 500, 380);
    swipe(WND_AUDIO_PLAY, NO_ITEM, 100, 500, 479);
    EXPECT_THAT(unit.commands(), IsEmpty());
    swipe(WND_AUDIO_PLAY, NO_ITEM, 100, 500, 379);
    EXPECT_THAT(unit.commands(), ElementsAre(PreviousClip()));
}

TEST_F(MainTouch, SwipeComesOnTopOfTheClickUnderTheFinger) {
    play(PLAY_TYPE_MUSIC);
    swipe(WND_AUDIO_PLAY, ITEM_SHUFFLE, 100, 500, 200);
    EXPECT_THAT(unit.commands(), ElementsAre(SetShuffleMode(0), PreviousClip()));
    EXPECT_EQ(beeps(), 2);
}

TEST_F(MainTouch, ProgressBarAndFastButtonsAreNotSwiped) {
    play(PLAY_TYPE_MUSIC);
    swipe(WND_AUDIO_PLAY, ITEM_PROGRESS, 100, 500, 200);
    EXPECT_THAT(unit.commands(), IsEmpty());
    swipe(WND_AUDIO_PLAY, ITEM_NEXT, 100, 500, 200);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
}

TEST_F(MainTouch, SwipeAcrossTheRealPage) {
    play(PLAY_TYPE_MUSIC);
    unit.drag(500, 200, 200, 210);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
    unit.clearCommands();
    unit.drag(200, 200, 500, 210);
    EXPECT_THAT(unit.commands(), ElementsAre(PreviousClip()));
}

TEST_F(MainTouch, SourceGroupAsksForTheOtherApplications) {
    struct Case {
        int control;
        const char* request;
    };
    for (const int page : {WND_DISC_LOADING, WND_AUDIO_PLAY, WND_PARKING, WND_GOTO, WND_DISC_ERROR,
                           WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        for (const auto& [control, request] :
             {Case{103, "zmradio null"}, Case{105, "zmusb null"}, Case{106, "zmbttel null"},
              Case{107, "zmnavi null"}, Case{111, "zmasr --type=ui"}, Case{118, "zmaux1 null"},
              Case{119, "zmaircond null"}}) {
            SCOPED_TRACE(std::to_string(control) + " on " + std::to_string(page));
            unit.clearRequests();
            unit.click(page, control);
            EXPECT_THAT(applications(), ElementsAre(request));
            EXPECT_EQ(beeps(), 1);
        }
    }
}

TEST_F(MainTouch, SourceGroupOpensAndCloses) {
    unit.click(WND_DISC_LOADING, 5);
    EXPECT_TRUE(unit.main.item(WND_DISC_LOADING, OSD_ITEM_SRC_GROUP).visible);
    unit.click(WND_DISC_LOADING, 99);
    EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, OSD_ITEM_SRC_GROUP).visible);
    EXPECT_EQ(beeps(), 2);
}

TEST_F(MainTouch, SourceGroupIgnoresUnknownControls) {
    for (const int control : {0, 1, 6, 100, 101, 102, 104, 108, 110, 112, 117, 120, 9999}) {
        unit.click(WND_DISC_LOADING, control);
    }
    EXPECT_THAT(unit.requests(), IsEmpty());
}

TEST_F(MainTouch, VideoPageTogglesTheOverlay) {
    play(PLAY_TYPE_VIDEO);
    unit.click(WND_VIDEO, 1);
    EXPECT_TRUE(unit.osd.visible());
    unit.click(WND_VIDEO, 2);
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_EQ(beeps(), 2);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainTouch, TouchThatHidesTheOverlayClosesItsNumberPad) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    unit.clickOsd(1, 6505);
    ASSERT_EQ(unit.osd.window(), 20);
    unit.click(WND_VIDEO, 1);
    EXPECT_NE(unit.osd.window(), 20);
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(MainTouch, TouchHidesTheBarBeforeThePadAndTheTimerThePadBeforeTheBar) {
    const std::string bar = "[DiscOsdView::OnShow] dwWndId=1,bShow=0";
    const std::string pad = "[DiscOsdView::OnShow] dwWndId=20,bShow=0";
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    unit.clickOsd(1, 6505);
    const auto touched = unit.log().size();
    unit.click(WND_VIDEO, 1);
    EXPECT_THAT(logged(touched, {bar, pad}), ElementsAre(bar, pad));
    unit.click(WND_VIDEO, 1);
    unit.clickOsd(1, 6505);
    const auto timed = unit.log().size();
    unit.advance(10s);
    EXPECT_THAT(logged(timed, {bar, pad}), ElementsAre(pad, bar));
}

TEST_F(MainTouch, DiscMenuGetsTheTouchWithItsWidthScaled) {
    struct Case {
        int x, y;
        std::string command;
    };
    play(PLAY_TYPE_DVD);
    unit.disc.rootMenu(true);
    for (const auto& [x, y, command] :
         {Case{400, 300, SendTsPos(360, 300)}, Case{799, 479, SendTsPos(719, 479)},
          Case{200, 0, SendTsPos(180, 0)}, Case{0, 80, SendTsPos(0, 80)}}) {
        SCOPED_TRACE(command);
        unit.clearCommands();
        swipe(WND_VIDEO, 1, x, x, y);
        EXPECT_THAT(unit.commands(), ElementsAre(command));
        EXPECT_FALSE(unit.osd.visible());
        EXPECT_EQ(
            unit.log("[DiscView::OnLButtonUp]--X=" + std::to_string(x) + ",Y=" + std::to_string(y)).size(),
            1u);
    }
    EXPECT_EQ(beeps(), 4);
}

TEST_F(MainTouch, CornerOfADiscMenuTogglesTheOverlay) {
    play(PLAY_TYPE_DVD);
    unit.disc.rootMenu(true);
    swipe(WND_VIDEO, 1, 199, 199, 79);
    EXPECT_TRUE(unit.osd.visible());
    swipe(WND_VIDEO, 1, 0, 0, 0);
    EXPECT_FALSE(unit.osd.visible());
    swipe(WND_VIDEO, 1, 10, 10, 10);
    EXPECT_TRUE(unit.osd.visible());
    swipe(WND_VIDEO, 1, 400, 400, 300);
    EXPECT_FALSE(unit.osd.visible()) << "outside the corner it only hides";
    EXPECT_THAT(unit.commands(),
                ElementsAre(SendTsPos(179, 79), SendTsPos(0, 0), SendTsPos(9, 10), SendTsPos(360, 300)));
}

TEST_F(MainTouch, TouchOnADiscMenuClosesTheOverlaysNumberPad) {
    play(PLAY_TYPE_DVD);
    for (const auto& [x, y] : {std::pair{400, 300}, {10, 10}}) {
        unit.disc.rootMenu(false);
        unit.click(WND_VIDEO, 1);
        unit.clickOsd(1, 6505);
        ASSERT_EQ(unit.osd.window(), 20);
        // The menu comes up under the overlay, which the message would hide.
        unit.onViewThread([] { CDiscData::GetInstance()->SetDVDRootMenuFlag(1); });
        swipe(WND_VIDEO, 1, x, x, y);
        EXPECT_NE(unit.osd.window(), 20) << x;
        EXPECT_FALSE(unit.osd.visible()) << x;
    }
}

TEST_F(MainTouch, MenuFlagOfAnotherDiscMeansNothing) {
    play(PLAY_TYPE_VCD);
    unit.disc.rootMenu(true);
    swipe(WND_VIDEO, 1, 400, 400, 300);
    EXPECT_TRUE(unit.osd.visible());
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainTouch, TouchOfTheVideoItselfReachesItsPage) {
    play(PLAY_TYPE_VIDEO);
    unit.touch(400, 240);
    EXPECT_TRUE(unit.osd.visible());
}

} // namespace zm::test
