#include "tests/views/main_view.h"

namespace zm::test {

using MainLauncher = MainView;

namespace {

constexpr auto LONG_AGO = 5s; // more than the interval in which a second pause does not count

}

TEST_F(MainLauncher, EachStatusIsLogged) {
    struct Case {
        const char* status;
        const char* name;
        int number;
    };
    for (const auto& [status, name, number] :
         {Case{"resume", "RESUME", 0}, Case{"pause", "PAUSE", 1}, Case{"showonly", "SHOWONLY", 2},
          Case{"hideonly", "HIDEONLY", 3}}) {
        SCOPED_TRACE(status);
        const std::string param = "[OnAppsMessage] APPSMSG_APPSTATUS Param1=" + std::to_string(number);
        const std::string banner = std::string("[OnAppsMessage] =====================APPS_STATUS_") + name +
                                   "========================";
        const auto params = unit.log(param).size();
        const auto banners = unit.log(banner).size();
        unit.app(status);
        EXPECT_EQ(unit.log(param).size(), params + 1);
        EXPECT_EQ(unit.log(banner).size(), banners + 1);
    }
}

TEST_F(MainLauncher, OnlyMessagesOfTheRightClassAreHandled) {
    play(PLAY_TYPE_MUSIC);
    for (const int kind : {0, 1, 2, 4}) {
        appsMessage(kind, 0, 1);
    }
    EXPECT_FALSE(inside.paused());
    appsMessage(3, 0, 1);
    EXPECT_TRUE(inside.paused());
}

TEST_F(MainLauncher, UnknownSubCodesAndStatusesAreIgnored) {
    play(PLAY_TYPE_MUSIC);
    for (const int status : {-1, 5, 99}) {
        appsMessage(3, 0, status);
    }
    for (const int subCode : {-1, 5, 99}) {
        appsMessage(3, subCode, 1);
    }
    EXPECT_FALSE(inside.paused());
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainLauncher, ApplicationDataReachesTheVoiceHandler) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=\"song 5\"");
    EXPECT_EQ(unit.log("[OnAppsMessage] APPSMSG_APPDATA").size(), 1u);
    EXPECT_THAT(unit.commands(), ElementsAre("182,5,1"));
}

TEST_F(MainLauncher, EmptyApplicationDataIsDropped) {
    appsMessage(3, 1, 999); // no text stands under that index
    EXPECT_EQ(unit.log("[OnAppsMessage] APPSMSG_APPDATA").size(), 1u);
    EXPECT_THAT(unit.log("[OnAppsMessage]--APPSMSG_APPDATA--input:"), IsEmpty());
}

TEST_F(MainLauncher, PauseStopsPlayingOverlayAndCapture) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    ASSERT_TRUE(inside.overlayShown());
    inside.ageLastPause(LONG_AGO);
    unit.app("pause");
    EXPECT_TRUE(inside.paused());
    EXPECT_EQ(inside.statusBeforePause(), DISC_STATE_PLAYING);
    EXPECT_THAT(unit.commands(), ElementsAre("5,0,0"));
    EXPECT_EQ(captures().back(), "off");
    EXPECT_FALSE(inside.overlayShown());
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_EQ(unit.log("************* itv=").size(), 1u);
    EXPECT_EQ(unit.log("[OnAppsMessage] -------------------- pause() -------------").size(), 1u);
}

TEST_F(MainLauncher, ShowOnlyPausesToo) {
    play(PLAY_TYPE_MUSIC);
    inside.ageLastPause(LONG_AGO);
    unit.app("showonly");
    EXPECT_TRUE(inside.paused());
    EXPECT_THAT(unit.commands(), ElementsAre("5,0,0"));
    EXPECT_THAT(captures(), ElementsAre("off"));
}

TEST_F(MainLauncher, SecondPauseInARowDoesNothing) {
    play(PLAY_TYPE_MUSIC);
    unit.app("pause");
    unit.app("pause");
    unit.app("showonly");
    EXPECT_THAT(unit.commands(), ElementsAre("5,0,0"));
}

TEST_F(MainLauncher, PauseWhileLoadingIsOnlyRemembered) {
    unit.disc.presence(1);
    unit.clearCommands();
    unit.app("pause");
    EXPECT_TRUE(inside.paused());
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(captures(), IsEmpty());
    EXPECT_THAT(unit.log("itv="), IsEmpty());
}

TEST_F(MainLauncher, PauseOfADiscThatDoesNotPlaySendsNoToggle) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.state(DISC_STATE_PAUSED);
    inside.ageLastPause(LONG_AGO);
    unit.app("pause");
    EXPECT_EQ(inside.statusBeforePause(), DISC_STATE_PAUSED);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(captures(), ElementsAre("off"));
}

TEST_F(MainLauncher, ResumeTogglesPlayWhenThePauseFoundItRunning) {
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

TEST_F(MainLauncher, QuickSecondPauseKeepsThePlayingStatusOfTheFirst) {
    play(PLAY_TYPE_MUSIC);
    inside.ageLastPause(LONG_AGO);
    unit.app("pause");
    unit.disc.state(DISC_STATE_PAUSED);
    unit.app("hideonly"); // ends the pause, so that a second one counts
    unit.app("pause");
    EXPECT_EQ(inside.statusBeforePause(), DISC_STATE_PLAYING);
    unit.clearCommands();
    unit.app("resume");
    EXPECT_THAT(unit.commands(), ElementsAre("5,0,0"));
}

TEST_F(MainLauncher, LaterSecondPauseRecordsThePausedStatus) {
    play(PLAY_TYPE_MUSIC);
    inside.ageLastPause(LONG_AGO);
    unit.app("pause");
    unit.disc.state(DISC_STATE_PAUSED);
    unit.app("hideonly");
    inside.ageLastPause(LONG_AGO);
    unit.app("pause");
    EXPECT_EQ(inside.statusBeforePause(), DISC_STATE_PAUSED);
    unit.clearCommands();
    unit.app("resume");
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainLauncher, HideOnlyAfterAPauseSendsPlayAndNoToggle) {
    play(PLAY_TYPE_MUSIC);
    inside.ageLastPause(LONG_AGO);
    unit.app("pause");
    unit.disc.state(DISC_STATE_PAUSED);
    unit.clearCommands();
    unit.app("hideonly");
    EXPECT_THAT(unit.commands(), ElementsAre("131,0,0"));
    EXPECT_FALSE(inside.paused());
    EXPECT_TRUE(inside.hidden());
}

TEST_F(MainLauncher, HideOnlyLetsPlaybackGoOnAndHidesTheOverlay) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    unit.clearCommands();
    unit.app("hideonly");
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_THAT(captures(), ElementsAre("on"));
    unit.click(WND_VIDEO, 1);
    unit.app("hideonly"); // hidden already
    EXPECT_TRUE(inside.overlayShown());
}

TEST_F(MainLauncher, ResumeAndPauseEndHiding) {
    play(PLAY_TYPE_MUSIC);
    unit.app("hideonly");
    unit.app("resume");
    EXPECT_FALSE(inside.hidden());
    unit.app("hideonly");
    unit.app("pause");
    EXPECT_FALSE(inside.hidden());
}

TEST_F(MainLauncher, ResumeOfDiscVideoStartsCaptureAndShowsTheVideo) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD}) {
        SCOPED_TRACE(type);
        unit.disc.mediaType(type);
        inside.gotoVideoPage(type);
        unit.app("pause");
        const auto sent = captures().size();
        unit.app("resume");
        EXPECT_EQ(captures().size(), sent + 1);
        EXPECT_EQ(captures().back(), "on");
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
        EXPECT_TRUE(inside.videoIsVisible());
    }
}

TEST_F(MainLauncher, ResumeWhileDrivingShowsTheParkingPage) {
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

TEST_F(MainLauncher, ResumeOfVideoFilesAndPhotosStartsCapture) {
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
        unit.app("pause");
        const auto sent = captures().size();
        unit.app("resume");
        EXPECT_EQ(captures().size(), sent + 1);
        EXPECT_EQ(captures().back(), "on");
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
    }
}

TEST_F(MainLauncher, ResumeOfADiscStartsCaptureBeforeThePageAndOfFilesAfterIt) {
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

TEST_F(MainLauncher, LinesOfAStatusNameItsHandler) {
    play(PLAY_TYPE_MUSIC);
    inside.ageLastPause(LONG_AGO);
    const std::string function = "_PLATEN_[OnAppsMsgAppStatus]-";
    const std::vector<std::string> lines = {
        function + "[OnAppsMessage] =====================APPS_STATUS_PAUSE========================",
        function + "************* itv=",
        function + "[OnAppsMessage] -------------------- pause() -------------",
        function + "[OnAppsMessage] =====================APPS_STATUS_RESUME========================",
        function + "[OnAppsMessage] -------------------- Play() -------------",
    };
    const auto begin = unit.log().size();
    unit.app("pause");
    unit.disc.state(DISC_STATE_PAUSED);
    unit.app("resume");
    EXPECT_EQ(logged(begin, lines), lines);
}

TEST_F(MainLauncher, ResumeOfDiscVideoOutsideItsPageStartsNoCapture) {
    unit.disc.mediaType(PLAY_TYPE_DVD);
    inside.setState(VIEW_STATE_PHOTO_PLAY);
    unit.app("resume");
    EXPECT_THAT(captures(), IsEmpty());
}

TEST_F(MainLauncher, ResumeOfAudioAndOfListsClosesTheSourcePopup) {
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

TEST_F(MainLauncher, ResumeOfAnUnknownTypeLeavesThePopup) {
    unit.click(WND_DISC_LOADING, SRC_CTRL_OPEN);
    unit.app("resume");
    EXPECT_TRUE(unit.main.item(WND_DISC_LOADING, ITEM_SRC_GROUP).visible);
}

TEST_F(MainLauncher, ResumeRedrawsTheOverlay) {
    play(PLAY_TYPE_DVD);
    unit.clickOsd(1, SRC_CTRL_OPEN);
    ASSERT_TRUE(unit.osd.item(1, ITEM_SRC_GROUP).visible);
    unit.app("resume");
    EXPECT_FALSE(unit.osd.item(1, ITEM_SRC_GROUP).visible);
}

TEST_F(MainLauncher, ResumePublishesWhatPlaysMediaInfoFirst) {
    play(PLAY_TYPE_MUSIC);
    const auto before = unit.published(NOW_PLAYING).size();
    unit.app("resume");
    const std::vector<std::string> lines = unit.published(NOW_PLAYING);
    ASSERT_EQ(lines.size(), before + 2);
    EXPECT_THAT(lines[before], testing::StartsWith("zmdisc_mediainfo:json:"));
    EXPECT_THAT(lines[before + 1], testing::StartsWith("zmdisc:json:"));
}

TEST_F(MainLauncher, SourceIsRequestedOnceByTheFirstReportOfADisc) {
    unit.clearCommands();
    unit.disc.presence(1);
    EXPECT_THAT(unit.commands(), ElementsAre("187,1,0"));
    EXPECT_EQ(unit.log("************* RequestSource on *************").size(), 1u);
    EXPECT_TRUE(inside.sourceRequested());
    unit.disc.presence(1);
    unit.app("resume");
    EXPECT_THAT(unit.commands(), ElementsAre("187,1,0"));
}

TEST_F(MainLauncher, ResumeRequestsTheSourceOfADiscThatIsThere) {
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

TEST_F(MainLauncher, FirstResumeCatchesUpWithADiscThatPlays) {
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

TEST_F(MainLauncher, FirstResumeLeavesPopupsAlone) {
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    inside.forgetShown();
    unit.click(WND_DISC_LOADING, SRC_CTRL_OPEN);
    unit.app("resume");
    EXPECT_TRUE(unit.main.item(WND_DISC_LOADING, ITEM_SRC_GROUP).visible);
}

TEST_F(MainLauncher, FirstResumeLeavesTheOverlayAlone) {
    play(PLAY_TYPE_DVD);
    inside.forgetShown();
    unit.clickOsd(1, SRC_CTRL_OPEN);
    unit.app("resume");
    EXPECT_TRUE(unit.osd.item(1, ITEM_SRC_GROUP).visible);
}

TEST_F(MainLauncher, QuitReleasesTheSourceStopsCaptureAndEndsTheProcess) {
    play(PLAY_TYPE_DVD);
    unit.clearCommands();
    unit.app("quit");
    EXPECT_THAT(unit.commands(), ElementsAre("187,0,0"));
    EXPECT_EQ(captures().back(), "off");
    EXPECT_EQ(
        unit.log("[OnAppsMessage] =====================APPS_STATUS_QUIT========================").size(), 1u);
    EXPECT_TRUE(unit.endApplication());
}

} // namespace zm::test
