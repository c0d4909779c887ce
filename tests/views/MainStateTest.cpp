#include "ZMModel/ViewMessages.h"
#include "parts/DiscTimers.h"
#include "tests/views/MainView.h"

namespace zm::test {

using MainState = MainView;

TEST_F(MainState, MessagesOutsideTheTableAreIgnored) {
    const auto lines = unit.log("[DiscView::").size();
    for (const int code :
         {-1, 0, 999, 1001, 1002, 1003, 1005, 1007, 1008, 1009, 1010, 1018, 1026, 1027, 1028, 2000}) {
        viewMessage(code);
    }
    unit.onViewThread([&] { EXPECT_EQ(unit.view().DiscView::OnUserMessage(nullptr), 0); });
    EXPECT_EQ(unit.log("[DiscView::").size(), lines);
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
}

TEST_F(MainState, ConnectedAndMixedSwitchingAreOnlyLogged) {
    viewMessage(DISC_VMSG_CONNECTED);
    unit.disc.mixedSwitching(1);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------DISC_VMSG_CONNECTED").size(), 1u);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------DISC_VMSG_MIXEDSWITCHING").size(), 1u);
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
}

TEST_F(MainState, LinesOfTheDispatcherNameIt) {
    const std::string function = "_PLATEN_[OnUserMessage]-";
    const std::vector<std::string> lines = {
        function + "[DiscView::OnUserMessage]-------DISC_VMSG_MIXEDTYPE",
        function + "[DiscView::OnUserMessage]------m_nMixedType=0x2",
        function + "[DiscView::OnUserMessage]-------DISC_VMSG_CLIPSTYPE",
        function + "[DiscView::OnUserMessage]------set m_nCurPlayType=3",
        function + "[DiscView::OnUserMessage]-------SURFACE_ERROR",
        function + "DISC_VMSG_OSDRETURN m_nCurPlayType=3",
    };
    expectLines(lines, [&] {
        unit.disc.mixedType(MIXED_MUSIC);
        unit.disc.mediaType(PLAY_TYPE_VIDEO);
        unit.disc.error(ERROR_STATUS_SURFACE);
        viewMessage(DISC_VMSG_OSDRETURN);
    });
}

TEST_F(MainState, DatabaseUpdateIsLoggedAndHandled) {
    unit.disc.updateDb(0);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------DISC_VMSG_UPDATEDB").size(), 1u);
    EXPECT_EQ(unit.log("[DiscView::OnUserMsgUpdateDb] m_nClickFolderId=1").size(), 1u);
}

TEST_F(MainState, NoDiscIsShownWhileLoadingOnly) {
    unit.disc.presence(0);
    EXPECT_EQ(state(), VIEW_STATE_NO_DISC);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).textId, 34);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).icon(), 133);
    EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, ITEM_BUSY).visible);
    EXPECT_EQ(unit.log("[DiscView::OnUserMsgDeviceState]-------bDiscExisting=0------").size(), 1u);
}

TEST_F(MainState, FirstReportOfADiscIsLoggedBeforeTheSourceIsRequested) {
    const std::vector<std::string> lines = {
        "[DiscView::OnUserMessage]-------DISC_VMSG_DEVICE",
        "[DiscView::OnUserMsgDeviceState]-------bDiscExisting=1------",
        "************* RequestSource on *************",
    };
    expectLines(lines, [&] { unit.disc.presence(1); });
    const auto again = unit.log().size();
    unit.disc.presence(1);
    EXPECT_THAT(logged(again, lines), ElementsAre(lines[0], lines[1]));
}

TEST(MainStateWithoutCatalogue, FirstReportOfADiscAndEachInsertionTryToOpenItAgain) {
    Unit unit;
    const auto failed = unit.log("QDB Error: ").size();
    EXPECT_EQ(failed, 1u) << "at start";
    unit.disc.presence(1);
    EXPECT_EQ(unit.log("QDB Error: ").size(), failed + 1);
    unit.disc.presence(1);
    EXPECT_EQ(unit.log("QDB Error: ").size(), failed + 1) << "the same disc, reported once more";
    unit.disc.presence(0);
    unit.disc.presence(1);
    EXPECT_EQ(unit.log("QDB Error: ").size(), failed + 2);
}

TEST_F(MainState, RemovedDiscLeavesThePlayPageToTheDiscState) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.presence(0);
    EXPECT_EQ(state(), VIEW_STATE_AUDIO_PLAY);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainState, LoadingShowsItsMessageAndStartsItsTimer) {
    unit.disc.presence(0);
    unit.disc.state(DISC_STATE_LOADING);
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).textId, 33);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).icon(), 0);
    EXPECT_TRUE(unit.main.item(WND_DISC_LOADING, ITEM_BUSY).visible);
    EXPECT_EQ(unit.log("[OnUserMsgDiscState]  playStatus.nPlayStatus=1").size(), 1u);
    unit.clearRequests();
    unit.advance(39999ms);
    EXPECT_THAT(unit.requests(), IsEmpty()) << "the no-disc timer has been ended";
    unit.advance(1ms);
    EXPECT_EQ(state(), VIEW_STATE_DISC_ERROR);
}

TEST_F(MainState, FirstPlayingStateChoosesThePage) {
    struct Case {
        int type;
        int status;
        int page;
        int state;
        int tab;
    };
    constexpr Case ROWS[] = {
        {PLAY_TYPE_DVD, DISC_STATE_PLAYING, WND_VIDEO, VIEW_STATE_VIDEO_PLAY, 1},
        {PLAY_TYPE_DVD, DISC_STATE_PAUSED, WND_VIDEO, VIEW_STATE_VIDEO_PLAY, 1},
        {PLAY_TYPE_CD, DISC_STATE_PLAYING, WND_AUDIO_PLAY, VIEW_STATE_AUDIO_PLAY, 6},
        {PLAY_TYPE_CD, DISC_STATE_PAUSED, WND_AUDIO_PLAY, VIEW_STATE_AUDIO_PLAY, 6},
        {PLAY_TYPE_MUSIC, DISC_STATE_PLAYING, WND_AUDIO_PLAY, VIEW_STATE_AUDIO_PLAY, 0},
        {PLAY_TYPE_MUSIC, DISC_STATE_PAUSED, WND_AUDIO_PLAY, VIEW_STATE_AUDIO_PLAY, 0},
        {PLAY_TYPE_VIDEO, DISC_STATE_PLAYING, WND_VIDEO, VIEW_STATE_VIDEO_PLAY, 1},
        {PLAY_TYPE_PHOTO, DISC_STATE_PLAYING, WND_VIDEO, VIEW_STATE_PHOTO_PLAY, 2},
        {PLAY_TYPE_PHOTO, DISC_STATE_PAUSED, WND_VIDEO, VIEW_STATE_PHOTO_PLAY, 2},
        {PLAY_TYPE_VCD, DISC_STATE_PLAYING, WND_VIDEO, VIEW_STATE_VIDEO_PLAY, 1},
    };
    unit.disc.videoMode(VIDEO_MODE_ON);
    for (const Case& row : ROWS) {
        SCOPED_TRACE(std::to_string(row.type) + " with " + std::to_string(row.status));
        unit.disc.mediaType(row.type);
        unit.disc.state(DISC_STATE_LOADING);
        unit.clearCommands();
        unit.disc.state(row.status);
        EXPECT_EQ(unit.main.window(), row.page);
        EXPECT_EQ(state(), row.state);
        const bool starts = row.status == DISC_STATE_PAUSED;
        EXPECT_EQ(unit.commands(), starts ? std::vector<std::string>{Play()} : std::vector<std::string>{});
        unit.advance(45s);
        EXPECT_EQ(unit.main.window(), row.page) << "the loading timer has been ended";
        EXPECT_EQ(state(), row.state);
        EXPECT_EQ(returnTarget(), row.tab);
    }
}

TEST_F(MainState, ADiscThatIsReadAgainReturnsToTheFilesOfItsType) {
    for (const auto& [type, tab] : {std::pair{PLAY_TYPE_MUSIC, 0}, std::pair{PLAY_TYPE_PHOTO, 2}}) {
        unit.disc.mediaType(type);
        unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
        unit.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO, BT_STATE_RELEASED); // another list was looked at
        unit.disc.state(DISC_STATE_LOADING);
        unit.disc.state(DISC_STATE_PLAYING);
        EXPECT_EQ(returnTarget(), tab) << type;
    }
}

TEST_F(MainState, PausedDiscIsPlayedOnceLoadedWhateverItsType) {
    unit.disc.videoMode(VIDEO_MODE_OFF);
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_UNKNOWN}) {
        unit.disc.mediaType(type);
        unit.disc.state(DISC_STATE_LOADING);
        unit.clearCommands();
        unit.disc.state(DISC_STATE_PAUSED);
        EXPECT_THAT(unit.commands(), ElementsAre(Play())) << type;
        EXPECT_EQ(state(), VIEW_STATE_LOADING);
    }
}

TEST_F(MainState, VideoWaitsForItsMode) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VIDEO, PLAY_TYPE_VCD}) {
        SCOPED_TRACE(type);
        unit.disc.videoMode(VIDEO_MODE_OFF);
        unit.disc.mediaType(type);
        unit.disc.state(DISC_STATE_LOADING);
        unit.disc.state(DISC_STATE_PLAYING);
        EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
        unit.disc.videoMode(VIDEO_MODE_ON);
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
        unit.advance(45s);
        EXPECT_EQ(state(), VIEW_STATE_VIDEO_PLAY);
        EXPECT_EQ(returnTarget(), PLAY_LIST_VIDEO);
    }
}

TEST_F(MainState, PlayingStateOutsideLoadingKeepsThePage) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.disc.state(DISC_STATE_PAUSED);
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainState, PlayAndPauseButtonFollowTheState) {
    struct Case {
        int status;
        bool play;
    };
    for (const int type : {PLAY_TYPE_CD, PLAY_TYPE_MUSIC}) {
        unit.disc.mediaType(type);
        unit.disc.state(DISC_STATE_LOADING);
        for (const auto& [status, isPlay] :
             {Case{2, false}, Case{0, true}, Case{2, false}, Case{6, true}, Case{2, false}, Case{10, true},
              Case{2, false}, Case{11, true}, Case{2, false}, Case{5, false}}) {
            SCOPED_TRACE(status);
            unit.disc.state(status);
            EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_PLAY).visible, isPlay);
            EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_PAUSE).visible, !isPlay);
        }
    }
}

TEST_F(MainState, StoppedVideoShowsTheOverlay) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VIDEO, PLAY_TYPE_VCD}) {
        SCOPED_TRACE(type);
        play(type);
        ASSERT_FALSE(unit.osd.visible());
        unit.disc.state(DISC_STATE_STOPPED);
        EXPECT_TRUE(unit.osd.visible());
        unit.click(WND_VIDEO, 1);
    }
}

TEST_F(MainState, StoppedVideoShowsNoOverlayOnTheParkingPageOrInAList) {
    play(PLAY_TYPE_DVD);
    unit.device(DEV_STATUS_PARKING, 0);
    ASSERT_EQ(unit.main.window(), WND_PARKING);
    unit.disc.state(DISC_STATE_STOPPED);
    EXPECT_FALSE(unit.osd.visible());
    unit.device(DEV_STATUS_PARKING, 1);
    reach(VIEW_STATE_VIDEO_LIST);
    unit.disc.state(DISC_STATE_STOPPED);
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(MainState, DiscErrorComesFromAnyState) {
    for (const int type : {PLAY_TYPE_MUSIC, PLAY_TYPE_DVD, PLAY_TYPE_PHOTO}) {
        SCOPED_TRACE(type);
        play(type);
        const auto sent = captures().size();
        unit.disc.state(DISC_STATE_ERROR);
        EXPECT_EQ(unit.main.window(), WND_DISC_ERROR);
        EXPECT_EQ(state(), VIEW_STATE_DISC_ERROR);
        EXPECT_GT(captures().size(), sent);
        EXPECT_EQ(captures().back(), "off");
        EXPECT_FALSE(unit.osd.visible());
        unit.advance(3s);
        EXPECT_THAT(unit.commands(), ElementsAre(Eject()));
    }
    EXPECT_EQ(unit.log("[DiscError]").size(), 3u);
}

TEST_F(MainState, EjectingShowsItsMessageAndHidesTheVideo) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    ASSERT_TRUE(unit.osd.visible());
    unit.disc.state(DISC_STATE_EJECTING);
    EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
    EXPECT_EQ(state(), VIEW_STATE_EXIT);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).textId, 110);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).icon(), 134);
    EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, ITEM_BUSY).visible);
    EXPECT_FALSE(videoShown());
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_EQ(captures().back(), "off");
    EXPECT_EQ(unit.log("[DiscExit]").size(), 1u);
    unit.clearCommands();
    unit.clearRequests();
    unit.advance(60s);
    EXPECT_EQ(state(), VIEW_STATE_EXIT) << "no timer runs";
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.requests(), IsEmpty());
}

TEST_F(MainState, PendingVoiceRequestIsCarriedOutOnceMusicPlays) {
    unit.disc.mixedType(MIXED_MUSIC);
    unit.appData("--song='song 7'");
    unit.disc.mediaType(PLAY_TYPE_CD);
    unit.clearCommands();
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_THAT(unit.commands(), IsEmpty()) << "a CD is no music file";
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(7, 1)));
    unit.clearCommands();
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_THAT(unit.commands(), IsEmpty()) << "only once";
}

TEST_F(MainState, RootMenuHidesTheOverlay) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    unit.disc.rootMenu(false);
    EXPECT_TRUE(unit.osd.visible());
    unit.disc.rootMenu(true);
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(MainState, CaptureStateIsOnlyLogged) {
    for (const bool on : {true, false}) {
        CDiscData::GetInstance()->SetVideoStatus(on);
        viewMessage(DISC_VMSG_VIDEOSTATUS);
        EXPECT_EQ(unit.log(std::string("[DiscView::OnCaptureStateChanged]state=") + (on ? "1" : "0")).size(),
                  1u);
    }
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
    EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
}

TEST_F(MainState, RepeatedDiscStateIsHandledAgain) {
    play(PLAY_TYPE_MUSIC);
    const auto lines = unit.log("[OnUserMsgDiscState]  playStatus.nPlayStatus=2").size();
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_EQ(unit.log("[OnUserMsgDiscState]  playStatus.nPlayStatus=2").size(), lines + 1);
}

} // namespace zm::test
