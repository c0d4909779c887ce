#include "tests/views/main_view.h"

namespace zm::test {

class MainResume : public MainView {
protected:
    void expectCaptureAfterAPause() {
        unit.app("pause");
        const auto sent = captures().size();
        unit.app("resume");
        EXPECT_EQ(captures().size(), sent + 1);
        EXPECT_EQ(captures().back(), "on");
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
    }
};

TEST_F(MainResume, ResumeTogglesPlayWhenThePauseFoundItRunning) {
    struct Case {
        int before;
        int now;
        bool toggles;
    };
    play(PLAY_TYPE_MUSIC);
    for (const auto& [before, now, toggles] : {Case{DISC_STATE_PLAYING, DISC_STATE_PAUSED, true},
                                               Case{DISC_STATE_FAST_FORWARD, DISC_STATE_PAUSED, true},
                                               Case{DISC_STATE_FAST_BACKWARD, DISC_STATE_STOPPED, true},
                                               Case{DISC_STATE_PAUSED, DISC_STATE_PAUSED, false},
                                               Case{DISC_STATE_STOPPED, DISC_STATE_STOPPED, false},
                                               Case{DISC_STATE_PLAYING, DISC_STATE_PLAYING, false}}) {
        SCOPED_TRACE(std::to_string(before) + " then " + std::to_string(now));
        unit.disc.state(before);
        inside.ageLastPause(LONG_AGO);
        unit.app("pause");
        unit.disc.state(now);
        unit.clearCommands();
        const auto lines = unit.log("[OnAppsMessage] -------------------- Play() -------------").size();
        unit.app("resume");
        EXPECT_FALSE(inside.paused());
        EXPECT_EQ(unit.commands(), toggles ? std::vector<std::string>{"5,0,0"} : std::vector<std::string>{});
        EXPECT_EQ(unit.log("[OnAppsMessage] -------------------- Play() -------------").size(),
                  lines + toggles);
    }
}

TEST_F(MainResume, ResumeOfDiscVideoStartsCaptureAndShowsTheVideo) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD}) {
        SCOPED_TRACE(type);
        unit.disc.mediaType(type);
        inside.gotoVideoPage(type);
        expectCaptureAfterAPause();
        EXPECT_TRUE(inside.videoIsVisible());
    }
}

TEST_F(MainResume, ResumeWhileDrivingShowsTheParkingPage) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_PHOTO}) {
        SCOPED_TRACE(type);
        play(type);
        inside.gotoVideoPage(type);
        unit.app("pause");
        unit.device(DEV_STATUS_PARKING, 0);
        unit.onViewThread([&] { unit.view().ShowWnd(WND_VIDEO, true, 0); });
        unit.app("resume");
        EXPECT_EQ(unit.main.window(), WND_PARKING);
        EXPECT_FALSE(inside.videoIsVisible());
        EXPECT_EQ(captures().back(), "on");
        unit.device(DEV_STATUS_PARKING, 1);
    }
}

TEST_F(MainResume, ResumeOfVideoFilesAndPhotosStartsCapture) {
    struct Case {
        int type;
        int state;
    };
    for (const auto& [type, state] :
         {Case{PLAY_TYPE_VIDEO, VIEW_STATE_VIDEO_PLAY}, Case{PLAY_TYPE_VIDEO, VIEW_STATE_PHOTO_PLAY},
          Case{PLAY_TYPE_PHOTO, VIEW_STATE_VIDEO_PLAY}, Case{PLAY_TYPE_PHOTO, VIEW_STATE_PHOTO_PLAY}}) {
        SCOPED_TRACE(std::to_string(type) + " in " + std::to_string(state));
        unit.disc.mediaType(type);
        inside.setState(state);
        expectCaptureAfterAPause();
    }
}

TEST_F(MainResume, ResumeOverTheVideoHidesTheOverlay) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_PHOTO}) {
        play(type);
        unit.click(WND_VIDEO, 1);
        ASSERT_TRUE(inside.overlayShown());
        unit.app("resume");
        EXPECT_FALSE(inside.overlayShown()) << type;
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
    }
}

TEST_F(MainResume, ResumeOfADiscStartsCaptureBeforeThePageAndOfFilesAfterIt) {
    const std::string capture = "[OperateVideoCapture]: bStart=1,";
    const std::string page = "[OnHideParkingView]";
    struct Case {
        int type;
        bool captureFirst;
    };
    for (const auto& [type, captureFirst] : {Case{PLAY_TYPE_DVD, true}, Case{PLAY_TYPE_VCD, true},
                                             Case{PLAY_TYPE_VIDEO, false}, Case{PLAY_TYPE_PHOTO, false}}) {
        SCOPED_TRACE(type);
        unit.disc.mediaType(type);
        inside.gotoVideoPage(type);
        unit.app("pause");
        const auto begin = unit.log().size();
        unit.app("resume");
        EXPECT_THAT(logged(begin, {capture, page}),
                    captureFirst ? ElementsAre(capture, page) : ElementsAre(page, capture));
    }
}

TEST_F(MainResume, ResumeOfDiscVideoOutsideItsPageStartsNoCapture) {
    unit.disc.mediaType(PLAY_TYPE_DVD);
    inside.setState(VIEW_STATE_PHOTO_PLAY);
    unit.app("resume");
    EXPECT_THAT(captures(), IsEmpty());
}

TEST_F(MainResume, ResumeOfAudioAndOfListsClosesTheSourcePopup) {
    for (const int type : {PLAY_TYPE_CD, PLAY_TYPE_MUSIC, PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO}) {
        SCOPED_TRACE(type);
        unit.disc.mediaType(type);
        inside.setState(VIEW_STATE_MUSIC_LIST);
        unit.click(WND_DISC_LOADING, SRC_CTRL_OPEN);
        ASSERT_TRUE(unit.main.item(WND_DISC_LOADING, ITEM_SRC_GROUP).visible);
        unit.app("resume");
        EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, ITEM_SRC_GROUP).visible);
        EXPECT_THAT(captures(), IsEmpty());
    }
}

TEST_F(MainResume, ResumeOfAnUnknownTypeLeavesThePopup) {
    unit.click(WND_DISC_LOADING, SRC_CTRL_OPEN);
    unit.app("resume");
    EXPECT_TRUE(unit.main.item(WND_DISC_LOADING, ITEM_SRC_GROUP).visible);
}

TEST_F(MainResume, ResumeRedrawsTheOverlay) {
    play(PLAY_TYPE_DVD);
    unit.clickOsd(1, SRC_CTRL_OPEN);
    ASSERT_TRUE(unit.osd.item(1, ITEM_SRC_GROUP).visible);
    unit.app("resume");
    EXPECT_FALSE(unit.osd.item(1, ITEM_SRC_GROUP).visible);
}

TEST_F(MainResume, ResumePublishesWhatPlaysMediaInfoFirst) {
    play(PLAY_TYPE_MUSIC);
    const auto before = unit.published(NOW_PLAYING).size();
    unit.app("resume");
    const std::vector<std::string> lines = unit.published(NOW_PLAYING);
    ASSERT_EQ(lines.size(), before + 2);
    EXPECT_THAT(lines[before], testing::StartsWith("zmdisc_mediainfo:json:"));
    EXPECT_THAT(lines[before + 1], testing::StartsWith("zmdisc:json:"));
}

TEST_F(MainResume, SourceIsRequestedOnceByTheFirstReportOfADisc) {
    unit.clearCommands();
    unit.disc.presence(1);
    EXPECT_THAT(unit.commands(), ElementsAre("187,1,0"));
    EXPECT_EQ(unit.log("************* RequestSource on *************").size(), 1u);
    EXPECT_TRUE(inside.sourceRequested());
    unit.disc.presence(1);
    unit.app("resume");
    EXPECT_THAT(unit.commands(), ElementsAre("187,1,0"));
}

TEST_F(MainResume, ResumeRequestsTheSourceOfADiscThatIsThere) {
    unit.disc.presence(1);
    inside.setSourceRequested(false);
    unit.clearCommands();
    unit.app("resume");
    EXPECT_THAT(unit.commands(), ElementsAre("187,1,0"));
    EXPECT_EQ(unit.log("************* RequestSource on *************").size(), 2u);
    unit.disc.presence(0);
    inside.setSourceRequested(false);
    unit.clearCommands();
    unit.app("resume");
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainResume, FirstResumeCatchesUpWithADiscThatPlays) {
    struct Case {
        int status;
        bool catchesUp;
    };
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    for (const auto& [status, catchesUp] :
         {Case{DISC_STATE_STOPPED, false}, Case{DISC_STATE_LOADING, false}, Case{DISC_STATE_PLAYING, true}}) {
        SCOPED_TRACE(status);
        unit.disc.state(status);
        inside.setState(VIEW_STATE_LOADING);
        inside.forgetShown();
        const auto handled = unit.log("[OnUserMsgDiscState]").size();
        unit.app("resume");
        EXPECT_EQ(unit.log("[OnUserMsgDiscState]").size(), handled + catchesUp);
        unit.app("resume"); // no longer the first
        EXPECT_EQ(unit.log("[OnUserMsgDiscState]").size(), handled + catchesUp);
    }
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainResume, FirstResumeLeavesPopupsAlone) {
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    inside.forgetShown();
    unit.click(WND_DISC_LOADING, SRC_CTRL_OPEN);
    unit.app("resume");
    EXPECT_TRUE(unit.main.item(WND_DISC_LOADING, ITEM_SRC_GROUP).visible);
}

TEST_F(MainResume, FirstResumeLeavesTheOverlayAlone) {
    play(PLAY_TYPE_DVD);
    inside.forgetShown();
    unit.clickOsd(1, SRC_CTRL_OPEN);
    unit.app("resume");
    EXPECT_TRUE(unit.osd.item(1, ITEM_SRC_GROUP).visible);
}

} // namespace zm::test
