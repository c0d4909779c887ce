#include "ZMModel/CDiscData.h"
#include "ZMModel/ViewMessages.h"
#include "tests/support/StateStore.h"
#include "tests/views/MainView.h"
#include "zmui/CUI_BtList.h"

namespace zm::test {

namespace {

/** A view as it is before its resource has been loaded and its controller attached. */
class MainBare : public testing::Test {
protected:
    MainBare() { resetStateStore(); }
    void sendEveryMessage() {
        for (int code = DISC_VMSG_PLAYSTATE - 1; code <= DISC_VMSG_VIDEOMODE + 3; ++code) {
            APP_MSG_S message{{code, 0, 0, 0}};
            EXPECT_EQ(view.OnUserMessage(&message), 0) << code;
        }
    }

    DiscView view{"zmdisc", *CDiscData::GetInstance()};
};

} // namespace

TEST_F(MainBare, TakesEveryViewMessage) {
    CDiscData::GetInstance()->SetDeviceStatus({.bExisting = true, .nMediaType = PLAY_TYPE_MUSIC});
    sendEveryMessage();
    view.OnClick(nullptr, WND_CD_LIST, ITEM_TYPE_ICON, BT_STATE_RELEASED); // to the play page
    sendEveryMessage();
    view.OnClick(nullptr, WND_AUDIO_PLAY, ITEM_TO_LIST, BT_STATE_RELEASED);
    sendEveryMessage();
}

TEST_F(MainBare, InitialisesWithoutAResource) {
    view.ViewInit();
    view.SetWaitDeviceStateTimer();
    sendEveryMessage();
}

TEST_F(MainBare, TakesEveryPageChildAndListNotification) {
    for (int page = 0; page <= WND_LAST + 1; ++page) {
        view.OnShow(page, true, 0);
        view.OnShow(page, false, 0);
    }
    EXPECT_EQ(view.OnChildPost("zmdisc_video_win"), 1);
    EXPECT_EQ(view.OnChildPost(OSD_VIEW_NAME), 1);
    _tagList_Info info{ITEM_LIST, 3, 0};
    view.OnListInfoMessage(nullptr, WND_MEDIA_LIST, 3, &info);
    view.OnClose();
}

TEST_F(MainBare, ClosesInOrder) {
    CDiscData::GetInstance()->SetVideoStatus(true); // capture is on, but nobody can be asked to stop it
    view.Close();
}

TEST_F(MainBare, TakesEveryLauncherMessageAndTimer) {
    for (int subCode = -1; subCode <= 5; ++subCode) {
        for (int parameter = -1; parameter <= 10; ++parameter) {
            APP_MSG_S message{{3, subCode, parameter, 0}};
            view.OnAppsMessage(&message);
        }
    }
    view.OnAppsMessage(nullptr);
}

TEST_F(MainBare, TakesClicksOnEveryPage) {
    for (int page = 0; page <= WND_LAST + 1; ++page) {
        for (const int control :
             {0,   3,   4,    5,    99,   103,  500,  503,  504,  505,  506,  512,  523,  531, 542,
              545, 546, 1013, 2000, 2071, 2073, 2103, 5002, 6503, 6505, 6508, 6521, 6522, 6545}) {
            view.OnClick(nullptr, page, control, BT_STATE_RELEASED);
        }
    }
}

TEST_F(MainBare, HandlesNoKey) {
    for (int code = 0; code <= K_RESTART + 1; ++code) {
        EXPECT_FALSE(view.OnKeyboard(code)) << code;
    }
}

} // namespace zm::test
