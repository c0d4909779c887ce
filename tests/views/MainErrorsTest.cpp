#include "parts/DiscTimers.h"
#include "tests/views/MainView.h"

namespace zm::test {

using MainErrors = MainView;

TEST_F(MainErrors, SurfaceAndTemperatureErrorsAreOnlyLogged) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.error(34);
    unit.disc.error(48);
    unit.disc.error(33);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------SURFACE_ERROR").size(), 1u);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------TEMP_ERROR").size(), 1u);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainErrors, RegionErrorShowsItsMessageAndEjectsThreeSecondsLater) {
    play(PLAY_TYPE_DVD);
    unit.disc.error(144);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------REGION_CODE_ERROR").size(), 1u);
    EXPECT_EQ(unit.log("[RegionError]").size(), 1u);
    EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
    EXPECT_EQ(state(), VIEW_STATE_REGION_ERROR);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).textId, 13067);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, ITEM_MESSAGE).icon(), 125);
    EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, ITEM_BUSY).visible);
    unit.advance(2999ms);
    EXPECT_THAT(unit.commands(), IsEmpty());
    unit.advance(1ms);
    EXPECT_THAT(unit.commands(), ElementsAre(Eject()));
}

TEST_F(MainErrors, ErrorAndEjectingAreShownFromEveryState) {
    for (const int from : EVERY_STATE) {
        SCOPED_TRACE(from);
        reach(from);
        unit.disc.state(DISC_STATE_ERROR);
        EXPECT_EQ(unit.main.window(), WND_DISC_ERROR);
        EXPECT_EQ(state(), VIEW_STATE_DISC_ERROR);
        reach(from);
        unit.disc.state(DISC_STATE_EJECTING);
        EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
        EXPECT_EQ(state(), VIEW_STATE_EXIT);
    }
}

TEST_F(MainErrors, AnErrorStopsCaptureAndOverlayBeforeItsPageComes) {
    const std::vector<std::string> lines = {
        "[DiscError]",
        "[OperateVideoCapture]: bStart=0,",
        "[DiscView::SetVisibleOsd] ===============m_bVideoOsd=0",
        "[DiscView::OnShow] dwWndId=22,bShow=1",
    };
    play(PLAY_TYPE_DVD);
    expectLines(lines, [&] { unit.disc.state(DISC_STATE_ERROR); });
}

TEST_F(MainErrors, EjectingShowsItsPageBeforeVideoAndCaptureEnd) {
    const std::vector<std::string> lines = {
        "[DiscExit]",
        "[DiscView::OnShow] dwWndId=1,bShow=1",
        "[DiscView::SetVisibleVideo] ===============m_bVideoIsVisible=0",
        "[OperateVideoCapture]: bStart=0,",
    };
    play(PLAY_TYPE_DVD);
    expectLines(lines, [&] { unit.disc.state(DISC_STATE_EJECTING); });
}

TEST_F(MainErrors, ErrorAndEjectingEndTheWaitForAList) {
    for (const int status : {DISC_STATE_ERROR, DISC_STATE_EJECTING}) {
        SCOPED_TRACE(status);
        play(PLAY_TYPE_MUSIC);
        unit.click(WND_AUDIO_PLAY, ITEM_TO_LIST);
        unit.disc.state(status);
        const int page = unit.main.window();
        unit.advance(1s);
        EXPECT_EQ(unit.main.window(), page);
        EXPECT_THAT(unit.log("[DiscView::FileQueryWait]"), IsEmpty());
    }
}

TEST_F(MainErrors, ErrorAndEjectingEndTheOverlaysTimer) {
    constexpr char HIDDEN[] = "[DiscView::SetVisibleOsd] ===============m_bVideoOsd=0===========";
    for (const int status : {DISC_STATE_ERROR, DISC_STATE_EJECTING}) {
        SCOPED_TRACE(status);
        play(PLAY_TYPE_DVD);
        unit.click(WND_VIDEO, 1);
        unit.disc.state(status);
        const auto hidden = unit.log(HIDDEN).size();
        unit.advance(11s);
        EXPECT_EQ(unit.log(HIDDEN).size(), hidden);
    }
}

TEST_F(MainErrors, EjectingEndsTheTimerOfTheStatePictureAndAnErrorDoesNot) {
    for (const int status : {DISC_STATE_ERROR, DISC_STATE_EJECTING}) {
        play(PLAY_TYPE_DVD);
        unit.onViewThread([&] {
            unit.osdView().SetCurKeyType(OSD_KEY_TYPE_NEXT);
            unit.osdView().SetDisplayStateTimer();
        });
        unit.disc.state(status);
        unit.advance(3s);
        int keyType = 0; // taking the picture away resets it
        unit.onViewThread([&] { keyType = unit.osdView().GetCurKeyType(); });
        EXPECT_EQ(keyType, status == DISC_STATE_EJECTING ? OSD_KEY_TYPE_NEXT : 0) << status;
    }
}

TEST_F(MainErrors, ReadErrorSkipsToTheNextTrack) {
    struct Case {
        int track;
        std::string command; ///< empty: none
    };
    for (const int type : {PLAY_TYPE_CD, PLAY_TYPE_VCD}) {
        play(type);
        for (const auto& [track, command] :
             {Case{3, PlayTrack(4, 0)}, Case{12, PlayTrack(1, 0)}, Case{13, ""}}) {
            SCOPED_TRACE(track);
            unit.disc.track({.curMediaId = 1, .curMediaIds = 1, .mediaId = track, .mediaIds = 12});
            unit.clearCommands();
            unit.disc.error(32);
            EXPECT_EQ(unit.commands(),
                      !command.empty() ? std::vector<std::string>{command} : std::vector<std::string>{});
        }
    }
}

TEST_F(MainErrors, ReadErrorSkipsToTheNextFileAndWrapsWithTheIndexInTheFoldersPlace) {
    struct Case {
        int index;
        std::string command;
    };
    for (const int type : {PLAY_TYPE_MUSIC, PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO}) {
        play(type);
        for (const auto& [index, command] :
             {Case{3, PlayTrack(4, 9)}, Case{12, PlayTrack(1, 13)}, Case{13, ""}}) {
            SCOPED_TRACE(index);
            unit.disc.track(
                {.curMediaId = index, .curMediaIds = 12, .mediaId = 1, .mediaIds = 1, .parentFolder = 9});
            unit.clearCommands();
            unit.disc.error(35);
            EXPECT_EQ(unit.commands(),
                      !command.empty() ? std::vector<std::string>{command} : std::vector<std::string>{});
        }
    }
}

TEST_F(MainErrors, ReadErrorOfADvdOrUnknownDiscSkipsNothing) {
    for (const int type : {static_cast<int>(PLAY_TYPE_DVD), 255}) {
        unit.disc.mediaType(type);
        unit.disc.track({.curMediaId = 1, .curMediaIds = 5, .mediaId = 1, .mediaIds = 5});
        unit.clearCommands();
        unit.disc.error(32);
        EXPECT_THAT(unit.commands(), IsEmpty()) << type;
    }
    EXPECT_FALSE(unit.log("[DiscView::OnUserMessage]-------READ_ERROR").empty());
}

} // namespace zm::test
