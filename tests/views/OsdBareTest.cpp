#include "ZMModel/CDiscData.h"
#include "ZMModel/ViewMessages.h"
#include "parts/NumberPad.h"
#include "tests/support/StateStore.h"
#include "tests/views/OsdView.h"

namespace zm::test {

namespace {

constexpr int WINDOWS[] = {OSD_WND_DVD, OSD_WND_VIDEO, OSD_WND_VCD, OSD_WND_PICTURE, OSD_WND_GOTO, 99};

/** An overlay as it is before its resource has been loaded and its controller attached. */
class OsdBare : public testing::Test {
protected:
    OsdBare() { resetStateStore(); }
    void becomeClip(int type) {
        CDiscData::GetInstance()->SetDeviceStatus(
            {.bExisting = true, .nMediaType = type, .nErrorStatus = 32});
        send(DISC_VMSG_CLIPSTYPE);
    }
    int send(int code) {
        APP_MSG_S message{{code, 0, 0, 0}};
        return view.OnUserMessage(&message);
    }

    DiscOsdView view{*CDiscData::GetInstance()};
};

} // namespace

TEST_F(OsdBare, AnswersEveryMessageAsTheTableSays) {
    const std::set<int> handled = {1007, 1008, 1022, 1026};
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD, PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO, PLAY_TYPE_CD}) {
        becomeClip(type);
        for (const int state : {DISC_STATE_STOPPED, DISC_STATE_PLAYING, DISC_STATE_PAUSED}) {
            CDiscData::GetInstance()->SetCurPlayStatus({.discState = state});
            CDiscData::GetInstance()->SetMsgTip(state + 1);
            for (int code = DISC_VMSG_PLAYSTATE - 1; code <= DISC_VMSG_MSGTIP + 3; ++code) {
                const bool isTrack = code == DISC_VMSG_TRACKINFO && IsVideoType(type);
                EXPECT_EQ(send(code), handled.contains(code) || isTrack ? 1 : 0) << code;
            }
        }
    }
}

TEST_F(OsdBare, IgnoresEveryTouch) {
    for (const int window : WINDOWS) {
        for (const int control : {3, 4, 5, 99, 103, 512, 523, 527, 531, 2069, 6505, 6521, 6522, 6524, 6571}) {
            for (const int state : {BT_STATE_PRESSED, BT_STATE_HELD, BT_STATE_RELEASED}) {
                view.OnClick(nullptr, window, control, state);
            }
        }
    }
    EXPECT_EQ(view.GetCurKeyType(), OSD_KEY_NONE);
}

TEST_F(OsdBare, DrawsNothing) {
    view.ViewInit();
    for (const int window : WINDOWS) {
        view.OnShow(window, true, 0);
        view.OnShow(window, false, 0);
    }
    view.ShowCurWnd(false);
    view.DrawAllItem();
    view.ShowStateView(OSD_PIC_PAUSE, L"text");
    view.ShowStateView2(OSD_PIC_PAUSE, OSD_TXT_PAUSE);
    view.ShowCurTrack(3);
    view.ShowGotoView();
    view.HideGotoView();
    view.DealInputNum();
    view.ToBeep();
    view.SetDisplayStateTimer();
    view.SetDisplaySrcTimer();
}

TEST_F(OsdBare, RemembersTheKey) {
    for (const int key : {OSD_KEY_DVD_AUDIO, OSD_KEY_DVD_ANGLE, OSD_KEY_DVD_SUBTITLE, OSD_KEY_VCD_AUDIO}) {
        view.SetCurKeyType(key);
        view.ShowPlayState();
        EXPECT_EQ(view.GetCurKeyType(), key);
    }
    view.HideStateView();
    EXPECT_EQ(view.GetCurKeyType(), OSD_KEY_NONE);
}

} // namespace zm::test
