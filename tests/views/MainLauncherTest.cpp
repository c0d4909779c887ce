#include "tests/views/MainView.h"

namespace zm::test {

using MainLauncher = MainView;

namespace {

constexpr char OVERLAY_GOES[] = "[DiscView::SetVisibleOsd] ===============m_bVideoOsd=0===========";

} // namespace

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
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.log("APPS_STATUS_PAUSE"), IsEmpty());
    appsMessage(3, 0, 1);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
    EXPECT_EQ(unit.log("APPS_STATUS_PAUSE").size(), 1u);
}

TEST_F(MainLauncher, UnknownSubCodesAndStatusesAreIgnored) {
    play(PLAY_TYPE_MUSIC);
    const auto banners = unit.log("APPS_STATUS_").size();
    for (const int status : {-1, 5, 99}) {
        appsMessage(3, 0, status);
    }
    for (const int subCode : {-1, 5, 99}) {
        appsMessage(3, subCode, 1);
    }
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.log("APPS_STATUS_").size(), banners);
    unit.app("pause"); // the first
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
}

TEST_F(MainLauncher, ApplicationDataReachesTheVoiceHandler) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=\"song 5\"");
    EXPECT_EQ(unit.log("[OnAppsMessage] APPSMSG_APPDATA").size(), 1u);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(5, 1)));
}

TEST_F(MainLauncher, EmptyApplicationDataIsDropped) {
    appsMessage(3, 1, 999); // no text stands under that index
    EXPECT_EQ(unit.log("[OnAppsMessage] APPSMSG_APPDATA").size(), 1u);
    EXPECT_THAT(unit.log("[OnAppsMessage]--APPSMSG_APPDATA--input:"), IsEmpty());
}

TEST_F(MainLauncher, PauseStopsPlayingOverlayAndCapture) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    ASSERT_TRUE(unit.osd.visible());
    passTimeOfDay(LONG_AGO);
    unit.app("pause");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
    EXPECT_EQ(captures().back(), "off");
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_EQ(unit.log("************* itv=").size(), 1u);
    EXPECT_EQ(unit.log("[OnAppsMessage] -------------------- pause() -------------").size(), 1u);
}

TEST_F(MainLauncher, ShowOnlyPausesToo) {
    play(PLAY_TYPE_MUSIC);
    passTimeOfDay(LONG_AGO);
    unit.app("showonly");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
    EXPECT_THAT(captures(), ElementsAre("off"));
    unit.disc.state(DISC_STATE_PAUSED);
    unit.clearCommands();
    unit.app("resume");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
}

TEST_F(MainLauncher, SecondPauseInARowDoesNothing) {
    play(PLAY_TYPE_MUSIC);
    unit.app("pause");
    unit.app("pause");
    unit.app("showonly");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
}

TEST_F(MainLauncher, PauseWhileLoadingIsOnlyRemembered) {
    unit.disc.presence(1);
    unit.clearCommands();
    unit.app("pause");
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(captures(), IsEmpty());
    EXPECT_THAT(unit.log("itv="), IsEmpty());
    play(PLAY_TYPE_DVD);
    EXPECT_THAT(captures(), IsEmpty()) << "nothing is shown while the application is paused";
    unit.app("pause");
    EXPECT_THAT(unit.log("itv="), IsEmpty()) << "it was paused already";
}

TEST_F(MainLauncher, PauseOfADiscThatDoesNotPlaySendsNoToggle) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.state(DISC_STATE_PAUSED);
    passTimeOfDay(LONG_AGO);
    unit.app("pause");
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(captures(), ElementsAre("off"));
    unit.app("resume");
    EXPECT_THAT(unit.commands(), IsEmpty()) << "it did not play before";
}

TEST_F(MainLauncher, QuickSecondPauseKeepsThePlayingStatusOfTheFirst) {
    play(PLAY_TYPE_MUSIC);
    passTimeOfDay(LONG_AGO);
    unit.app("pause");
    unit.disc.state(DISC_STATE_PAUSED);
    unit.app("hideonly"); // ends the pause, so that a second one counts
    unit.app("pause");
    unit.clearCommands();
    unit.app("resume");
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
}

TEST_F(MainLauncher, LaterSecondPauseRecordsThePausedStatus) {
    play(PLAY_TYPE_MUSIC);
    passTimeOfDay(LONG_AGO);
    unit.app("pause");
    unit.disc.state(DISC_STATE_PAUSED);
    unit.app("hideonly");
    passTimeOfDay(LONG_AGO);
    unit.app("pause");
    unit.clearCommands();
    unit.app("resume");
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainLauncher, OnlyPausesMoreThanTwelveHundredMillisecondsApartRecordTheStatus) {
    play(PLAY_TYPE_MUSIC);
    // Real time goes on until the pause, so the interval is taken from its line; the last is a clock set
    // back.
    for (const auto age : {0ms, 1000ms, 1150ms, 1190ms, 1199ms, 1201ms, 1300ms, 5000ms, -10000ms}) {
        unit.disc.state(DISC_STATE_PAUSED);
        passTimeOfDay(LONG_AGO);
        unit.app("pause"); // records that it is paused
        unit.app("resume");
        unit.disc.state(DISC_STATE_PLAYING);
        passTimeOfDay(age);
        unit.app("pause"); // records that it plays, or does not
        const std::string line = unit.log("************* itv=").back();
        const long interval = std::stol(line.substr(line.find("itv=") + 4));
        EXPECT_GE(interval, age.count());
        unit.disc.state(DISC_STATE_PAUSED);
        unit.clearCommands();
        unit.app("resume");
        EXPECT_EQ(unit.commands(),
                  interval > 1200 ? std::vector<std::string>{PlayPause()} : std::vector<std::string>{})
            << line;
    }
}

TEST_F(MainLauncher, TheTimeBetweenTwoPausesIsTakenToTheMillisecond) {
    struct {
        std::chrono::microseconds first;
        std::chrono::microseconds second;
        long interval;
    } const pauses[] = {
        {1000s, 1001s + 201ms, 1201},
        {1000s + 999ms, 1002s, 1001},
        {1000s + 201ms, 1002s + 999ms, 2798},
        {1000s + 999'999us, 1002s, 1001}, // each is cut to milliseconds
    };
    play(PLAY_TYPE_MUSIC);
    for (const auto& pause : pauses) {
        holdTimeOfDay(pause.first);
        unit.app("pause");
        unit.app("resume");
        holdTimeOfDay(pause.second);
        unit.app("pause");
        unit.app("resume");
        EXPECT_THAT(unit.log("************* itv=").back(),
                    HasSubstr("itv=" + std::to_string(pause.interval)));
    }
    holdTimeOfDay(0us);
}

/** The time of day stands from before the start on. */
struct TimeStands {
    TimeStands() { holdTimeOfDay(1000s); }
    ~TimeStands() { holdTimeOfDay(0us); }
};
class LauncherFromTheStart : TimeStands, public MainView {};

TEST_F(LauncherFromTheStart, TheFirstPauseIsMeasuredFromThere) {
    play(PLAY_TYPE_MUSIC);
    holdTimeOfDay(1000s + 700ms);
    unit.app("pause");
    EXPECT_THAT(unit.log("************* itv=").back(), HasSubstr("itv=700"));
    unit.disc.state(DISC_STATE_PAUSED);
    unit.clearCommands();
    unit.app("resume");
    EXPECT_THAT(unit.commands(), IsEmpty()) << "too early for what played to be remembered";
}

TEST_F(MainLauncher, PauseIsCarriedOutInItsOrder) {
    const std::vector<std::string> lines = {
        "************* itv=",
        "[OnAppsMessage] -------------------- pause() -------------",
        "[DiscView::SetVisibleOsd] ===============m_bVideoOsd=0",
        "[OperateVideoCapture]: bStart=0,",
    };
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    expectLines(lines, [&] { unit.app("pause"); });
}

TEST_F(MainLauncher, HideOnlyAfterAPauseSendsPlayAndNoToggle) {
    play(PLAY_TYPE_MUSIC);
    passTimeOfDay(LONG_AGO);
    unit.app("pause");
    unit.disc.state(DISC_STATE_PAUSED);
    unit.clearCommands();
    unit.app("hideonly");
    EXPECT_THAT(unit.commands(), ElementsAre(Play()));
    unit.clearCommands();
    const auto begin = unit.log().size();
    unit.app("hideonly");
    EXPECT_THAT(unit.commands(), IsEmpty()) << "no longer paused";
    EXPECT_THAT(logged(begin, {OVERLAY_GOES}), IsEmpty()) << "hidden already";
}

TEST_F(MainLauncher, HideOnlyAfterAPauseOfADiscThatPlaysAgainSendsNothing) {
    play(PLAY_TYPE_MUSIC);
    passTimeOfDay(LONG_AGO);
    unit.app("pause");
    unit.clearCommands(); // the disc still plays
    unit.app("hideonly");
    EXPECT_THAT(unit.commands(), IsEmpty());
    unit.app("pause"); // a new one, as the first is over
    EXPECT_THAT(unit.commands(), ElementsAre(PlayPause()));
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
    EXPECT_TRUE(unit.osd.visible());
}

TEST_F(MainLauncher, ResumeAndPauseEndHiding) {
    play(PLAY_TYPE_MUSIC);
    unit.app("hideonly");
    for (const char* status : {"resume", "pause"}) {
        unit.app(status);
        const auto begin = unit.log().size();
        unit.app("hideonly");
        EXPECT_THAT(logged(begin, {OVERLAY_GOES}), ElementsAre(OVERLAY_GOES))
            << "hidden anew after " << status;
    }
}

TEST_F(MainLauncher, LinesOfAStatusNameItsHandler) {
    play(PLAY_TYPE_MUSIC);
    passTimeOfDay(LONG_AGO);
    const std::string function = "_PLATEN_[OnAppsMsgAppStatus]-";
    const std::vector<std::string> lines = {
        function + "[OnAppsMessage] =====================APPS_STATUS_PAUSE========================",
        function + "************* itv=",
        function + "[OnAppsMessage] -------------------- pause() -------------",
        function + "[OnAppsMessage] =====================APPS_STATUS_RESUME========================",
        function + "[OnAppsMessage] -------------------- Play() -------------",
    };
    expectLines(lines, [&] {
        unit.app("pause");
        unit.disc.state(DISC_STATE_PAUSED);
        unit.app("resume");
    });
}

TEST_F(MainLauncher, QuitReleasesTheSourceStopsCaptureAndEndsTheProcess) {
    play(PLAY_TYPE_DVD);
    unit.clearCommands();
    unit.app("quit");
    EXPECT_THAT(unit.commands(), ElementsAre(RequestSource(0, 0)));
    EXPECT_EQ(captures().back(), "off");
    EXPECT_EQ(
        unit.log("[OnAppsMessage] =====================APPS_STATUS_QUIT========================").size(), 1u);
    EXPECT_TRUE(unit.endApplication());
}

} // namespace zm::test
