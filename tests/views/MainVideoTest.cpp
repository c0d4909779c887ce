#include "ZMModel/CDiscData.h"
#include "ZMModel/ViewMessages.h"
#include "input/TouchPoints.h"
#include "input/VideoTouch.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "tests/views/MainView.h"
#include "video/OverlayWindow.h"

#include <nlohmann/json.hpp>

namespace zm::test {

using MainVideo = MainView;

namespace {

Json rect(int x, int y, int w, int h) {
    return {x, y, w, h};
}

} // namespace

TEST_F(MainVideo, CaptureIsAskedForWithGroupWindowAndSource) {
    play(PLAY_TYPE_DVD);
    const std::string request = unit.attribute(VIDEO_COMMAND, "zmvideo");
    EXPECT_THAT(request, HasSubstr(R"("status":"on")"));
    EXPECT_THAT(request, HasSubstr(R"("wnd_id":"zmdisc_video_win")"));
    EXPECT_THAT(request, HasSubstr(R"("src":"zmdisc")"));
    EXPECT_THAT(request, HasSubstr(R"("wndgp_id":"1-)"));
    EXPECT_EQ(unit.log("[OperateVideoCapture]: bStart=1,").size(), 1u);
}

TEST_F(MainVideo, PostedWindowFillsTheScreenBetweenViewAndOverlay) {
    play(PLAY_TYPE_DVD);
    const Json video = unit.video();
    EXPECT_TRUE(video.at("posted"));
    EXPECT_TRUE(video.at("visible"));
    EXPECT_EQ(video.at("zorder"), 2);
    EXPECT_EQ(video.at("rect"), rect(0, 0, 800, 480));
    EXPECT_EQ(unit.log("[DiscView::OnChildPost] strChild=zmdisc_video_win").size(), 1u);
    EXPECT_EQ(unit.log("[DiscView::OnChildPost] ================== video view ======").size(), 1u);
}

TEST_F(MainVideo, OnlyItsOwnChildrenAreExpected) {
    unit.onViewThread([&] {
        EXPECT_EQ(unit.view().OnChildPost("zmdisc_video_win"), 1);
        EXPECT_EQ(unit.view().OnChildPost("Disc_osd"), 1);
        EXPECT_EQ(unit.view().OnChildPost("other"), 0);
        EXPECT_EQ(unit.view().OnChildPost(""), 0);
        EXPECT_EQ(unit.view().OnChildPost(nullptr), 0);
    });
    EXPECT_FALSE(unit.log("[DiscView::OnChildPost] ================== osd view ======").empty());
}

TEST_F(MainVideo, ATouchOnAPictureTogglesTheOverlay) {
    play(PLAY_TYPE_PHOTO);
    const ControlLink control;
    const PageState state;
    const TouchPoints points;
    OverlayWindow overlay(unit.view(), control);
    VideoTouch touch(*CDiscData::GetInstance(), control, state, points, overlay);
    for (const bool shown : {true, false, true}) {
        unit.onViewThread([&] { touch.OnClickPictureWnd(1); });
        unit.settle();
        EXPECT_EQ(overlay.IsShown(), shown);
        EXPECT_EQ(unit.osd.visible(), shown);
    }
}

TEST_F(MainVideo, WhatTheSimpleViewWouldDoChangesNothing) {
    play(PLAY_TYPE_DVD);
    unit.clearCommands();
    const Json before = unit.main.describe();
    unit.onViewThread([&] {
        unit.view().SetSimpleViewTimer();
        unit.view().OnGotoSampleView();
    });
    unit.advance(60s);
    EXPECT_EQ(unit.main.describe(), before);
    EXPECT_TRUE(unit.commands().empty());
}

TEST_F(MainVideo, PostedOverlayIsHidden) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    ASSERT_TRUE(unit.osd.visible());
    unit.onViewThread([&] { unit.view().OnChildPost("Disc_osd"); });
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(MainVideo, WindowPostedAfterTheWishIsShownAtOnce) {
    unit.app("pause"); // no capture, hence no window yet
    play(PLAY_TYPE_DVD);
    EXPECT_FALSE(unit.log("[DiscView::SetVisibleVideo] ===============m_bVideoIsVisible=1").empty());
    EXPECT_FALSE(unit.video().value("posted", false));
    unit.app("resume");
    EXPECT_TRUE(unit.video().at("visible"));
    EXPECT_EQ(unit.video().at("rect"), rect(0, 0, 800, 480));
}

TEST_F(MainVideo, PageWithoutCaptureWhilePausedByTheLauncher) {
    unit.app("pause");
    play(PLAY_TYPE_VCD);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_THAT(captures(), IsEmpty());
}

TEST_F(MainVideo, CaptureThatIsOnIsNotStartedAgain) {
    CDiscData::GetInstance()->SetVideoStatus(true);
    play(PLAY_TYPE_DVD);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_THAT(captures(), IsEmpty());
    CDiscData::GetInstance()->SetVideoStatus(false);
    unit.disc.videoMode(VIDEO_MODE_ON); // to the page again
    EXPECT_THAT(captures(), ElementsAre("on"));
}

TEST_F(MainVideo, PageSetsTheStateOfItsType) {
    struct Case {
        int type;
        int state;
    };
    for (const auto& [type, playing] :
         {Case{PLAY_TYPE_DVD, VIEW_STATE_VIDEO_PLAY}, Case{PLAY_TYPE_VIDEO, VIEW_STATE_VIDEO_PLAY},
          Case{PLAY_TYPE_VCD, VIEW_STATE_VIDEO_PLAY}, Case{PLAY_TYPE_PHOTO, VIEW_STATE_PHOTO_PLAY}}) {
        play(type);
        EXPECT_EQ(state(), playing) << type;
        EXPECT_EQ(unit.log("[GotoVideoPage]  nType=" + std::to_string(type)).size(), 1u);
    }
}

TEST_F(MainVideo, PageStartsCaptureBeforeItShowsTheVideoAndItself) {
    const std::vector<std::string> lines = {
        "[GotoVideoPage]  nType=0",
        "[OperateVideoCapture]: bStart=1,",
        "[DiscView::SetVisibleVideo] ===============m_bVideoIsVisible=1",
        "[DiscView::OnShow] dwWndId=17,bShow=1",
    };
    const auto begin = unit.log().size();
    play(PLAY_TYPE_DVD);
    auto found = logged(begin, lines); // the posted window shows the video once more
    ASSERT_GE(found.size(), lines.size());
    found.resize(lines.size());
    EXPECT_EQ(found, lines);
}

TEST_F(MainVideo, PageWhileDrivingIsTheParkingPage) {
    unit.device(DEV_STATUS_PARKING, 0);
    play(PLAY_TYPE_DVD);
    EXPECT_EQ(unit.main.window(), WND_PARKING);
    EXPECT_EQ(state(), VIEW_STATE_VIDEO_PLAY);
    EXPECT_FALSE(videoShown());
    EXPECT_THAT(captures(), ElementsAre("on"));
    EXPECT_EQ(unit.log("[OnGotoParkingView]").size(), 1u);
}

TEST_F(MainVideo, VisibilityIsLogged) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    unit.click(WND_VIDEO, 1);
    EXPECT_FALSE(
        unit.log("[DiscView::SetVisibleVideo] ===============m_bVideoIsVisible=1===========").empty());
    EXPECT_EQ(unit.log("[DiscView::SetVisibleOsd] ===============m_bVideoOsd=1===========").size(), 1u);
    EXPECT_FALSE(unit.log("[DiscView::SetVisibleOsd] ===============m_bVideoOsd=0===========").empty());
}

TEST_F(MainVideo, HiddenOverlaysTimerRunsOutWithoutHarm) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    unit.click(WND_VIDEO, 1);
    const auto hidden = unit.log("[DiscView::SetVisibleOsd] ===============m_bVideoOsd=0===========").size();
    unit.advance(10s);
    EXPECT_EQ(unit.log("[DiscView::SetVisibleOsd] ===============m_bVideoOsd=0===========").size(),
              hidden + 1);
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(MainVideo, ModeOffHidesTheVideoAndStopsCapture) {
    play(PLAY_TYPE_DVD);
    unit.disc.videoMode(VIDEO_MODE_OFF);
    EXPECT_FALSE(videoShown());
    EXPECT_EQ(captures().back(), "off");
    EXPECT_EQ(unit.log("[DiscView::OnUserMsgVideoMode]-------videomode=2").size(), 1u);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
}

TEST_F(MainVideo, ModeOnShowsThePageOnlyOfARunningVideo) {
    struct Case {
        int type, status;
        bool shows;
    };
    for (const auto& [type, status, shows] :
         {Case{PLAY_TYPE_DVD, 2, true}, Case{PLAY_TYPE_VIDEO, 6, true}, Case{PLAY_TYPE_VCD, 2, true},
          Case{PLAY_TYPE_DVD, 0, false}, Case{PLAY_TYPE_DVD, 10, false}, Case{PLAY_TYPE_PHOTO, 2, false},
          Case{PLAY_TYPE_MUSIC, 2, false}}) {
        SCOPED_TRACE(std::to_string(type) + " with " + std::to_string(status));
        reach(VIEW_STATE_VIDEO_LIST);
        unit.disc.mediaType(type);
        unit.disc.videoMode(VIDEO_MODE_OFF);
        unit.disc.state(status);
        ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
        unit.disc.videoMode(VIDEO_MODE_ON);
        EXPECT_EQ(unit.main.window(), shows ? WND_VIDEO : WND_MEDIA_LIST);
    }
}

TEST_F(MainVideo, ModeToListReturnsFromAVideoFile) {
    play(PLAY_TYPE_VIDEO);
    unit.click(WND_VIDEO, 1);
    unit.clearCommands();
    unit.disc.videoMode(VIDEO_MODE_TO_LIST);
    expectLeftForTheList(GotoSubList(3, 1), VIEW_STATE_VIDEO_LIST);
}

TEST_F(MainVideo, ModeToListMeansNothingElsewhere) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD, PLAY_TYPE_PHOTO}) {
        play(type);
        unit.disc.videoMode(VIDEO_MODE_TO_LIST);
        EXPECT_EQ(unit.main.window(), WND_VIDEO) << type;
        EXPECT_THAT(unit.commands(), IsEmpty()) << type;
    }
    reach(VIEW_STATE_PHOTO_PLAY);
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    unit.disc.videoMode(VIDEO_MODE_TO_LIST);
    EXPECT_EQ(state(), VIEW_STATE_PHOTO_PLAY);
}

TEST_F(MainVideo, OverlayReturnLeavesVideoFilesAndPhotos) {
    struct Case {
        int type, state;
        std::string command;
    };
    for (const auto& [type, state, command] :
         {Case{PLAY_TYPE_VIDEO, VIEW_STATE_VIDEO_LIST, GotoSubList(3, 1)},
          Case{PLAY_TYPE_PHOTO, VIEW_STATE_PHOTO_LIST, GotoSubList(4, 1)}}) {
        SCOPED_TRACE(type);
        play(type);
        unit.click(WND_VIDEO, 1);
        viewMessage(DISC_VMSG_OSDRETURN);
        EXPECT_EQ(unit.log("DISC_VMSG_OSDRETURN m_nCurPlayType=" + std::to_string(type)).size(), 1u);
        expectLeftForTheList(command, state);
    }
}

TEST_F(MainVideo, OverlayReturnOfACompleteCatalogueSendsNothing) {
    for (const int type : {PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO}) {
        play(type);
        unit.disc.updateDb(0x10000);
        viewMessage(DISC_VMSG_OSDRETURN);
        EXPECT_THAT(unit.commands(), IsEmpty()) << type;
    }
}

TEST_F(MainVideo, OverlayReturnMeansNothingForMusic) {
    for (const int type : {PLAY_TYPE_CD, PLAY_TYPE_MUSIC}) {
        play(type);
        viewMessage(DISC_VMSG_OSDRETURN);
        unit.advance(LIST_WAIT);
        EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
        EXPECT_THAT(unit.commands(), IsEmpty());
    }
}

TEST_F(MainVideo, OverlayReturnMeansNothingForDiscVideo) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD}) {
        play(type);
        viewMessage(DISC_VMSG_OSDRETURN);
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
        EXPECT_TRUE(videoShown());
        EXPECT_THAT(unit.commands(), IsEmpty());
    }
}

} // namespace zm::test
