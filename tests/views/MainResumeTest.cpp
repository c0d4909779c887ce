#include "tests/views/MainView.h"

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
        passTimeOfDay(LONG_AGO);
        unit.app("pause");
        unit.disc.state(now);
        unit.clearCommands();
        const auto lines = unit.log("[OnAppsMessage] -------------------- Play() -------------").size();
        unit.app("resume");
        EXPECT_EQ(unit.commands(),
                  toggles ? std::vector<std::string>{PlayPause()} : std::vector<std::string>{});
        EXPECT_EQ(unit.log("[OnAppsMessage] -------------------- Play() -------------").size(),
                  lines + toggles);
        unit.clearCommands();
        unit.app("resume");
        EXPECT_THAT(unit.commands(), IsEmpty()) << "no longer paused";
    }
}

TEST_F(MainResume, ResumeOfDiscVideoStartsCaptureAndShowsTheVideo) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD}) {
        SCOPED_TRACE(type);
        play(type);
        expectCaptureAfterAPause();
        EXPECT_TRUE(videoShown());
    }
}

TEST_F(MainResume, ResumeWhileDrivingShowsTheParkingPage) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_PHOTO}) {
        SCOPED_TRACE(type);
        play(type);
        unit.app("pause");
        unit.device(DEV_STATUS_PARKING, 0);
        unit.onViewThread([&] { unit.view().ShowWnd(WND_VIDEO, true, 0); });
        unit.app("resume");
        EXPECT_EQ(unit.main.window(), WND_PARKING);
        EXPECT_FALSE(videoShown());
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
        reach(state);
        unit.disc.mediaType(type); // the next item of the disc, reported while that page is shown
        expectCaptureAfterAPause();
    }
}

TEST_F(MainResume, ResumeOverTheVideoHidesTheOverlay) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_PHOTO}) {
        play(type);
        unit.click(WND_VIDEO, 1);
        ASSERT_TRUE(unit.osd.visible());
        unit.app("resume");
        EXPECT_FALSE(unit.osd.visible()) << type;
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
        play(type);
        unit.app("pause");
        const auto begin = unit.log().size();
        unit.app("resume");
        EXPECT_THAT(logged(begin, {capture, page}),
                    captureFirst ? ElementsAre(capture, page) : ElementsAre(page, capture));
    }
}

TEST_F(MainResume, ResumeOfDiscVideoOutsideItsPageStartsNoCapture) {
    reach(VIEW_STATE_PHOTO_PLAY);
    unit.disc.mediaType(PLAY_TYPE_DVD);
    const auto before = captures();
    unit.app("resume");
    EXPECT_EQ(captures(), before);
}

TEST_F(MainResume, ResumeOfAudioAndOfListsClosesTheSourcePopup) {
    for (const int type : {PLAY_TYPE_CD, PLAY_TYPE_MUSIC, PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO}) {
        SCOPED_TRACE(type);
        reach(VIEW_STATE_MUSIC_LIST);
        unit.disc.mediaType(type);
        const auto before = captures();
        unit.click(WND_MEDIA_LIST, OSD_CTRL_SRC_OPEN);
        ASSERT_TRUE(unit.main.item(WND_MEDIA_LIST, OSD_ITEM_SRC_GROUP).visible);
        unit.app("resume");
        EXPECT_FALSE(unit.main.item(WND_MEDIA_LIST, OSD_ITEM_SRC_GROUP).visible);
        EXPECT_EQ(captures(), before);
    }
}

TEST_F(MainResume, ResumeOfAnUnknownTypeLeavesThePopup) {
    unit.click(WND_DISC_LOADING, OSD_CTRL_SRC_OPEN);
    unit.app("resume");
    EXPECT_TRUE(unit.main.item(WND_DISC_LOADING, OSD_ITEM_SRC_GROUP).visible);
}

TEST_F(MainResume, ResumeRedrawsTheOverlay) {
    play(PLAY_TYPE_DVD);
    unit.clickOsd(1, OSD_CTRL_SRC_OPEN);
    ASSERT_TRUE(unit.osd.item(1, OSD_ITEM_SRC_GROUP).visible);
    unit.app("resume");
    EXPECT_FALSE(unit.osd.item(1, OSD_ITEM_SRC_GROUP).visible);
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
    EXPECT_THAT(unit.commands(), ElementsAre(RequestSource(1, 0)));
    EXPECT_EQ(unit.log("************* RequestSource on *************").size(), 1u);
    unit.disc.presence(1);
    unit.app("resume");
    EXPECT_THAT(unit.commands(), ElementsAre(RequestSource(1, 0)));
}

/** What the disc service has published before the application starts. */
class MainFirstResume : public testing::Test {
protected:
    static std::pair<std::string, std::string> device(const std::string& line) {
        return {"zelmar/disc/device", line};
    }
    static std::pair<std::string, std::string> discState(int value) {
        return {"zelmar/disc/status", "discstate::" + std::to_string(value)};
    }
    /** Lines that the view logged before and after the launcher's first resume. */
    struct Handled {
        size_t before = 0;
        size_t after = 0;
    };
    static Handled handled(const Unit& unit, const std::string& text) {
        Handled count;
        bool resumed = false;
        for (const std::string& line : unit.log()) {
            resumed = resumed || line.find("APPS_STATUS_RESUME") != std::string::npos;
            (resumed ? count.after : count.before) += line.find(text) != std::string::npos;
        }
        return count;
    }
};

TEST_F(MainFirstResume, CatchesUpWithADiscThatPlays) {
    struct Case {
        int status;
        bool catchesUp;
    };
    for (const auto& [status, catchesUp] :
         {Case{DISC_STATE_STOPPED, false}, Case{DISC_STATE_LOADING, false}, Case{DISC_STATE_PLAYING, true}}) {
        SCOPED_TRACE(status);
        Unit unit({.published = {device("disc::1"), device("mediatype::2"), discState(status)}});
        EXPECT_EQ(handled(unit, "[OnUserMsgDiscState]").after, catchesUp ? 1u : 0u);
        unit.app("resume"); // no longer the first
        EXPECT_EQ(handled(unit, "[OnUserMsgDiscState]").after, catchesUp ? 1u : 0u);
        EXPECT_EQ(unit.main.window(), catchesUp ? WND_AUDIO_PLAY : WND_DISC_LOADING);
    }
}

TEST_F(MainFirstResume, RequestsTheSourceOfADiscOnce) {
    Unit unit({.published = {device("disc::1"), device("mediatype::2"), discState(DISC_STATE_PLAYING)}});
    EXPECT_THAT(unit.commands(), ElementsAre(RequestSource(1, 0)));
    EXPECT_EQ(handled(unit, "************* RequestSource on *************").before, 1u);
    unit.app("resume");
    EXPECT_THAT(unit.commands(), ElementsAre(RequestSource(1, 0)));
}

/** An application that the launcher has not resumed yet. */
class MainNeverShown : public MainView {
protected:
    MainNeverShown() : MainView({.firstResume = false}) {}
};

TEST_F(MainNeverShown, ItsFirstResumeLeavesPopupsAlone) {
    play(PLAY_TYPE_MUSIC);
    for (const bool shown : {true, false}) { // the second resume closes it
        unit.click(WND_AUDIO_PLAY, OSD_CTRL_SRC_OPEN);
        unit.app("resume");
        EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, OSD_ITEM_SRC_GROUP).visible, shown);
    }
}

TEST_F(MainNeverShown, ItsFirstResumeLeavesTheOverlayAlone) {
    play(PLAY_TYPE_DVD);
    for (const bool shown : {true, false}) {
        unit.clickOsd(OSD_WND_DVD, OSD_CTRL_SRC_OPEN);
        unit.app("resume");
        EXPECT_EQ(unit.osd.item(OSD_WND_DVD, OSD_ITEM_SRC_GROUP).visible, shown);
    }
}

TEST_F(MainNeverShown, ItsFirstResumeBringsThePageOfADiscThatPlays) {
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    unit.disc.state(DISC_STATE_PLAYING);
    const auto handled = unit.log("[OnUserMsgDiscState]").size();
    unit.app("resume");
    EXPECT_EQ(unit.log("[OnUserMsgDiscState]").size(), handled + 1);
    unit.app("resume");
    EXPECT_EQ(unit.log("[OnUserMsgDiscState]").size(), handled + 1);
}

} // namespace zm::test
