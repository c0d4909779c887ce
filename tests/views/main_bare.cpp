#include "ZMModel/CDiscData.h"
#include "ZMModel/ViewMessages.h"
#include "tests/views/main_view.h"

namespace zm::test {

namespace {

/** A view as it is before its resource has been loaded and its controller attached. */
class MainBare : public testing::Test {
protected:
    DiscView view{"zmdisc"};
};

} // namespace

TEST_F(MainBare, TakesEveryViewMessage) {
    CDiscData::GetInstance()->SetDeviceStatus({.bExisting = true, .nMediaType = PLAY_TYPE_MUSIC});
    for (int code = DISC_VMSG_PLAYSTATE - 1; code <= DISC_VMSG_VIDEOMODE + 3; ++code) {
        APP_MSG_S message{{code, 0, 0, 0}};
        EXPECT_EQ(view.OnUserMessage(&message), 0) << code;
    }
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
        for (const int control : {0, 3, 4, 5, 99, 103, 2000, 2071, 2073, 2103, 6503, 6508, 6521, 6522}) {
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
