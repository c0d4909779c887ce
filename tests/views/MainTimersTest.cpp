#include "parts/DiscTimers.h"
#include "tests/views/FolderView.h"

namespace zm::test {

using MainTimers = MainView;

TEST_F(MainTimers, DeviceThatNeverReportsCountsAsNoDisc) {
    unit.advance(14999ms);
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
    unit.advance(1ms);
    EXPECT_EQ(state(), VIEW_STATE_NO_DISC);
    EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).textId, 34);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).icon(), 133);
    EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, ITEM_BUSY).visible);
    EXPECT_EQ(unit.log("**************[DiscView::SetWaitDeviceStateTimer]*******************").size(), 1u);
    EXPECT_EQ(unit.log("[DiscView::OnTimer] ENUM_TIMER_WAIT_DEVICESTATE").size(), 1u);
    unit.clearRequests();
    unit.advance(2999ms);
    EXPECT_THAT(unit.requests(), IsEmpty());
    unit.advance(1ms);
    EXPECT_THAT(unit.requests(), ElementsAre(R"({"op":"QueryCloseApp","app":"zmdisc","data":"null"})"));
}

TEST_F(MainTimers, NoDiscClosesTheApplicationThreeSecondsLater) {
    unit.disc.presence(0);
    ASSERT_EQ(state(), VIEW_STATE_NO_DISC);
    unit.clearRequests();
    unit.advance(2999ms);
    EXPECT_THAT(unit.requests(), IsEmpty());
    unit.advance(1ms);
    EXPECT_THAT(unit.requests(), ElementsAre(R"({"op":"QueryCloseApp","app":"zmdisc","data":"null"})"));
    unit.advance(10s);
    EXPECT_EQ(unit.requests().size(), 1u) << "the timer ends itself";
}

TEST_F(MainTimers, FirstDeviceReportEndsTheWaitForIt) {
    unit.disc.presence(1);
    unit.advance(20s);
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
    EXPECT_THAT(unit.log("ENUM_TIMER_WAIT_DEVICESTATE"), IsEmpty());
}

TEST_F(MainTimers, LoadingForFortySecondsEndsOnTheErrorPage) {
    unit.disc.presence(1);
    unit.clearCommands();
    unit.advance(39999ms);
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
    unit.advance(1ms);
    EXPECT_EQ(state(), VIEW_STATE_DISC_ERROR);
    EXPECT_EQ(unit.main.window(), WND_DISC_ERROR);
    EXPECT_EQ(unit.log("[DiscView::OnTimer] ENUM_TIMER_LOADING").size(), 1u);
    unit.advance(2999ms);
    EXPECT_THAT(unit.commands(), IsEmpty());
    unit.advance(1ms);
    EXPECT_THAT(unit.commands(), ElementsAre(Eject()));
}

TEST_F(MainTimers, LoadingTimerMeansNothingOnceSomethingPlays) {
    play(PLAY_TYPE_MUSIC);
    expire(ENUM_TIMER_LOADING);
    EXPECT_EQ(state(), VIEW_STATE_AUDIO_PLAY);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainTimers, NoDiscTimerActsByState) {
    for (const int state : EVERY_STATE) {
        SCOPED_TRACE(state);
        reach(state);
        expire(ENUM_TIMER_NO_DISC);
        const bool closes = state == VIEW_STATE_NO_DISC;
        const bool ejects = state == VIEW_STATE_DISC_ERROR || state == VIEW_STATE_REGION_ERROR;
        EXPECT_EQ(unit.requests().size(), closes ? 1u : 0u);
        EXPECT_EQ(unit.commands(), ejects ? std::vector<std::string>{Eject()} : std::vector<std::string>{});
    }
}

TEST_F(MainTimers, IdsOutsideTheTableAreIgnored) {
    const auto lines = unit.log().size();
    for (const int id : {-1, 0, 1, 10, 99}) {
        expire(id);
    }
    EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
    EXPECT_EQ(unit.log().size(), lines);
}

TEST_F(MainTimers, MusicAndTrackListsGoBackToThePlayPageAfterEightSeconds) {
    struct Case {
        int type;
        int page;
    };
    for (const auto& [type, page] :
         {Case{PLAY_TYPE_MUSIC, WND_MEDIA_LIST}, Case{PLAY_TYPE_CD, WND_CD_LIST}}) {
        SCOPED_TRACE(type);
        play(type);
        openList();
        ASSERT_EQ(unit.main.window(), page);
        unit.advance(7949ms);
        EXPECT_EQ(unit.main.window(), page);
        unit.advance(1ms);
        EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
        EXPECT_EQ(state(), VIEW_STATE_AUDIO_PLAY);
    }
    EXPECT_FALSE(unit.log("[OnGotoAudioPlayPage]--------------").empty());
}

TEST_F(MainTimers, PlayPageTimerKeepsFiringOverAListOfAnotherType) {
    unit.disc.videoMode(VIDEO_MODE_ON);
    unit.disc.insert(PLAY_TYPE_MUSIC, MIXED_MUSIC | MIXED_VIDEO);
    openList();
    unit.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO); // restarts the timer
    unit.advance(23s);                          // two expiries without effect
    ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    unit.advance(999ms);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    unit.advance(1ms);
    EXPECT_EQ(unit.main.window(), WND_VIDEO) << "the third expiry, 24 s after the start";
}

TEST_F(MainTimers, PlayPageTimerLeavesAListOfNothing) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO);
    unit.disc.mediaType(PLAY_TYPE_MUSIC); // browses the playing type again
    unit.advance(16s);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(MainTimers, PlayPageTimerNeedsARunningOrPausedVideo) {
    struct Case {
        int status;
        bool returns;
    };
    play(PLAY_TYPE_VIDEO);
    for (const auto& [status, returns] :
         {Case{DISC_STATE_STOPPED, false}, Case{DISC_STATE_FAST_FORWARD, false},
          Case{DISC_STATE_PAUSED, true}, Case{DISC_STATE_PLAYING, true}}) {
        SCOPED_TRACE(status);
        unit.controller().OnMessageOSDReturn();
        unit.advance(50ms);
        ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
        unit.disc.state(status);
        unit.advance(8s);
        EXPECT_EQ(unit.main.window(), returns ? WND_VIDEO : WND_MEDIA_LIST);
    }
}

TEST_F(MainTimers, PlayPageTimerShowsNoVideoWhileDriving) {
    play(PLAY_TYPE_VIDEO);
    unit.controller().OnMessageOSDReturn();
    unit.advance(50ms);
    unit.device(DEV_STATUS_PARKING, 0);
    unit.advance(16s);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(MainTimers, PlayPageTimerRemembersTheTopOfTheFileList) {
    play(PLAY_TYPE_MUSIC);
    openList();
    for (int i = 0; i < 7; ++i) {
        unit.key(K_Down);
    }
    const int top = unit.main.item(WND_MEDIA_LIST, ITEM_LIST).top;
    ASSERT_EQ(top, 3);
    unit.advance(8s);
    unit.disc.track({.curMediaId = 4, .curMediaIds = 12, .parentFolder = 1}); // of the rows from there on
    openList();
    EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_LIST).top, top);
}

/** Lists that are left for the play page by the timer, and shown again. */
class MainTimersOfLists : public FolderView {
protected:
    void scroll(int top, int page = WND_MEDIA_LIST) {
        onList(page, [&](CUI_BtList& control) { control.SetTopIndex(top, 1, 0, 0, 0); });
    }
    void waitForPlayPage() {
        unit.key(K_NEXT); // starts the eight seconds
        unit.advance(8s);
    }
};

TEST_F(MainTimersOfLists, TheTopOfTheFoldersIsRememberedApart) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        for (const int top : {4, 3}) {
            listFolders(kind, 6);
            scroll(top);
            waitForPlayPage();
            EXPECT_NE(unit.main.window(), WND_MEDIA_LIST);
            listFolders(kind, 6);
            EXPECT_EQ(list().top, top);
        }
    }
}

TEST_F(MainTimersOfLists, TheTopInsideAFolderIsRemembered) {
    openFolder(FOLDER_KINDS[0], 5);
    clickRow(0, WND_FOLDER_LIST); // to return there
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    tick();
    ASSERT_EQ(unit.main.window(), WND_FOLDER_LIST);
    for (const int top : {2, 1}) {
        scroll(top, WND_FOLDER_LIST);
        waitForPlayPage();
        ASSERT_EQ(unit.main.window(), WND_AUDIO_PLAY);
        press(ITEM_TO_LIST, WND_AUDIO_PLAY);
        tick();
        EXPECT_EQ(contents().top, top);
    }
}

TEST_F(MainTimersOfLists, TheTopOfTheTracksIsRemembered) {
    play(PLAY_TYPE_CD);
    unit.disc.track({.curMediaId = 6, .curMediaIds = 8, .mediaId = 6, .mediaIds = 8, .parentFolder = 5});
    openList();
    for (const int top : {3, 2}) {
        scroll(top, WND_CD_LIST);
        waitForPlayPage();
        ASSERT_EQ(unit.main.window(), WND_AUDIO_PLAY);
        openList();
        EXPECT_EQ(list(WND_CD_LIST).top, top);
    }
}

TEST_F(MainTimers, SourcePopupClosesAfterFiveSeconds) {
    unit.click(WND_DISC_LOADING, OSD_CTRL_SRC_OPEN);
    unit.advance(4999ms);
    EXPECT_TRUE(unit.main.item(WND_DISC_LOADING, OSD_ITEM_SRC_GROUP).visible);
    unit.advance(1ms);
    EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, OSD_ITEM_SRC_GROUP).visible);
}

TEST_F(MainTimers, SourceTimerClosesTheOverlaysPopupToo) {
    play(PLAY_TYPE_DVD);
    unit.clickOsd(1, OSD_CTRL_SRC_OPEN);
    ASSERT_TRUE(unit.osd.item(1, OSD_ITEM_SRC_GROUP).visible);
    unit.advance(5s);
    EXPECT_FALSE(unit.osd.item(1, OSD_ITEM_SRC_GROUP).visible);
}

TEST_F(MainTimers, OverlayGoesTenSecondsAfterATouch) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    ASSERT_TRUE(unit.osd.visible());
    unit.advance(9999ms);
    EXPECT_TRUE(unit.osd.visible());
    unit.advance(1ms);
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(MainTimers, OverlaysNumberPadGoesWithTheOverlay) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    unit.clickOsd(1, 6505);
    ASSERT_EQ(unit.osd.window(), 20);
    unit.advance(10s);
    EXPECT_NE(unit.osd.window(), 20);
}

TEST_F(MainTimers, StatePictureGoesThreeSecondsLater) {
    play(PLAY_TYPE_DVD);
    unit.disc.tip(2);
    ASSERT_TRUE(unit.osd.item(1, 2078).visible);
    unit.advance(2999ms);
    EXPECT_TRUE(unit.osd.item(1, 2078).visible);
    unit.advance(1ms);
    EXPECT_FALSE(unit.osd.item(1, 2078).visible);
}

} // namespace zm::test
