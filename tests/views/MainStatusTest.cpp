#include "tests/views/MainView.h"

#include <nlohmann/json.hpp>

namespace zm::test {

using MainStatus = MainView;

TEST_F(MainStatus, ClockShowsTwelveAndTwentyFourHours) {
    struct Case {
        const char* time;
        int format;
        const char* text;
        bool am, pm;
    };
    for (const Case& row :
         {Case{"0:05", 12, "12:05", true, false}, Case{"1:00", 12, "01:00", true, false},
          Case{"11:59", 12, "11:59", true, false}, Case{"12:00", 12, "12:00", false, true},
          Case{"13:07", 12, "01:07", false, true}, Case{"23:05", 12, "11:05", false, true},
          Case{"24:00", 12, "24:00", false, false}, Case{"0:05", 24, "00:05", false, false},
          Case{"12:00", 24, "12:00", false, false}, Case{"23:59", 24, "23:59", false, false}}) {
        SCOPED_TRACE(row.time);
        unit.time(row.time, row.format);
        EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_CLOCK).text, row.text);
        EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_AM).visible, row.am);
        EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_PM).visible, row.pm);
    }
}

TEST_F(MainStatus, TimeMessageReachesTheOverlayThroughTheController) {
    play(PLAY_TYPE_DVD);
    unit.time("23:05", 12);
    EXPECT_EQ(unit.main.item(WND_VIDEO, OSD_ITEM_CLOCK).text, "11:05");
    EXPECT_EQ(unit.osd.item(1, OSD_ITEM_CLOCK).text, "11:05");
    EXPECT_THAT(unit.viewMessages(), testing::Contains(1022));
}

TEST_F(MainStatus, BluetoothShowsAnyValue) {
    for (const int value : {0, 1, 2, 3, -1, 77}) {
        unit.device(DEV_STATUS_BT, value);
        EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_BT).text, std::to_string(value));
        EXPECT_EQ(unit.log("[OnAppsMessage] BT update:" + std::to_string(value)).size(), 1u);
    }
    EXPECT_FALSE(unit.log("[DiscView::UpdateBTStatus]").empty());
}

TEST_F(MainStatus, BluetoothValueOfThreeLeavesTheOverlaysItem) {
    play(PLAY_TYPE_DVD);
    unit.device(DEV_STATUS_BT, 2);
    unit.device(DEV_STATUS_BT, 3);
    EXPECT_EQ(unit.osd.item(1, OSD_ITEM_BT).text, "2");
    EXPECT_EQ(unit.main.item(WND_VIDEO, OSD_ITEM_BT).text, "3");
}

TEST_F(MainStatus, MuteMarkStandsForExactlyTwoHundredFiftyFive) {
    for (const int value : {255, 0, 255, 1, 255, 254, 255, 256, 255, -1}) {
        unit.device(DEV_STATUS_MUTE, value);
        EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_MUTE).visible, value == 255) << value;
        EXPECT_FALSE(unit.log("[OnAppsMessage] mute update:" + std::to_string(value)).empty());
        EXPECT_FALSE(unit.log("[DiscView::UpdateMuteStatus]-----status:" + std::to_string(value)).empty());
    }
}

TEST_F(MainStatus, TemperatureIsShownWithinItsRange) {
    struct Case {
        int tenths;
        const char* text;
    };
    for (const auto& [tenths, text] :
         {Case{235, "23.5"}, Case{-52, "-5.2"}, Case{870, "87.0"}, Case{871, "--.-"}, Case{-400, "-40.0"},
          Case{-401, "--.-"}, Case{0, " 0.0"}, Case{5, " 0.5"}, Case{-5, "-0.5"}, Case{999, "--.-"}}) {
        unit.device(DEV_STATUS_CAR_TEMP, tenths);
        EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_TEMP).text, text);
        EXPECT_FALSE(unit.log("[OnAppsMessage] car temp update:" + std::to_string(tenths)).empty());
        EXPECT_FALSE(unit.log("[DiscView::UpdateCarTemp]-----status:" + std::to_string(tenths)).empty());
    }
}

TEST_F(MainStatus, FailedReadsFallBackOnTheMainViewOnly) {
    play(PLAY_TYPE_DVD);
    unit.device(DEV_STATUS_BT, 2);
    unit.device(DEV_STATUS_MUTE, 255);
    unit.device(DEV_STATUS_CAR_TEMP, 235);
    for (const int id : {DEV_STATUS_BT, DEV_STATUS_MUTE, DEV_STATUS_CAR_TEMP}) {
        unit.deviceFails(id);
        appsMessage(3, 4, id, 1);
    }
    EXPECT_EQ(unit.main.item(WND_VIDEO, OSD_ITEM_BT).text, "0");
    EXPECT_FALSE(unit.main.item(WND_VIDEO, OSD_ITEM_MUTE).visible);
    EXPECT_EQ(unit.main.item(WND_VIDEO, OSD_ITEM_TEMP).text, "--.-");
    EXPECT_NE(unit.osd.item(1, OSD_ITEM_TEMP).text, "--.-") << "the overlay does not guard its reads";
}

TEST_F(MainStatus, ChangesReachBothViews) {
    play(PLAY_TYPE_DVD);
    unit.device(DEV_STATUS_BT, 1);
    unit.device(DEV_STATUS_MUTE, 255);
    unit.device(DEV_STATUS_CAR_TEMP, -52);
    EXPECT_EQ(unit.osd.item(1, OSD_ITEM_BT).text, "1");
    EXPECT_TRUE(unit.osd.item(1, OSD_ITEM_MUTE).visible);
    EXPECT_EQ(unit.osd.item(1, OSD_ITEM_TEMP).text, "-5.2");
}

TEST_F(MainStatus, OverlayFollowsTheRulesOfTheMainViewButForBluetooth) {
    play(PLAY_TYPE_VCD);
    for (const int value : {870, 871, -400, -401, 0}) {
        unit.device(DEV_STATUS_CAR_TEMP, value);
        EXPECT_EQ(unit.osd.item(OSD_WND_VCD, OSD_ITEM_TEMP).text,
                  unit.main.item(WND_VIDEO, OSD_ITEM_TEMP).text);
    }
    for (const int value : {255, 254, 255, 0}) {
        unit.device(DEV_STATUS_MUTE, value);
        EXPECT_EQ(unit.osd.item(OSD_WND_VCD, OSD_ITEM_MUTE).visible, value == 255);
    }
    std::string last;
    for (const int value : {0, 2, 1, 0, 3, -1, 1, 77}) {
        unit.device(DEV_STATUS_BT, value);
        last = value >= 0 && value <= 2 ? std::to_string(value) : last;
        EXPECT_EQ(unit.osd.item(OSD_WND_VCD, OSD_ITEM_BT).text, last) << value;
    }
}

TEST_F(MainStatus, WithoutAControllerTheIndicatorsStay) {
    play(PLAY_TYPE_DVD);
    unit.deviceSilently(DEV_STATUS_BT, 2);
    unit.deviceSilently(DEV_STATUS_MUTE, 255);
    unit.deviceSilently(DEV_STATUS_CAR_TEMP, 101);
    const Json main = unit.main.describe();
    withoutController([](DiscView& view) {
        for (const int device : {DEV_STATUS_BT, DEV_STATUS_MUTE, DEV_STATUS_CAR_TEMP}) {
            APP_MSG_S message{{3, 4, device, 1}};
            view.OnAppsMessage(&message);
        }
        APP_MSG_S time{{3, 3, 0, 0}};
        view.OnAppsMessage(&time);
    });
    EXPECT_EQ(unit.main.describe(), main);
}

TEST_F(MainStatus, IndicatorsReadTheValueAgainInsteadOfTheMessage) {
    unit.device(DEV_STATUS_CAR_TEMP, 235);
    appsMessage(3, 4, DEV_STATUS_CAR_TEMP, 100);
    EXPECT_EQ(unit.log("[OnAppsMessage] car temp update:100").size(), 1u);
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_TEMP).text, "23.5");
}

TEST_F(MainStatus, OtherDevicesAreIgnored) {
    const auto lines = unit.log("update:").size();
    for (const int id : {0, 1, 3, 5, 8, 85, 87}) {
        appsMessage(3, 4, id, 1);
    }
    EXPECT_EQ(unit.log("update:").size(), lines);
}

TEST_F(MainStatus, ShowingAPageRefreshesItsIndicators) {
    unit.deviceSilently(DEV_STATUS_BT, 1);
    unit.deviceSilently(DEV_STATUS_MUTE, 255);
    unit.deviceSilently(DEV_STATUS_CAR_TEMP, 101);
    unit.time("7:08", 24);
    unit.onViewThread([&] { unit.view().ShowWnd(WND_CD_LIST, true, 0); });
    EXPECT_EQ(unit.main.item(WND_CD_LIST, OSD_ITEM_BT).text, "1");
    EXPECT_TRUE(unit.main.item(WND_CD_LIST, OSD_ITEM_MUTE).visible);
    EXPECT_EQ(unit.main.item(WND_CD_LIST, OSD_ITEM_TEMP).text, "10.1");
    EXPECT_EQ(unit.main.item(WND_CD_LIST, OSD_ITEM_CLOCK).text, "07:08");
}

TEST_F(MainStatus, DrivingReplacesTheVideoByTheParkingPage) {
    struct Case {
        int type, state;
    };
    for (const auto& [type, playing] :
         {Case{PLAY_TYPE_DVD, VIEW_STATE_VIDEO_PLAY}, Case{PLAY_TYPE_PHOTO, VIEW_STATE_PHOTO_PLAY}}) {
        play(type);
        unit.click(WND_VIDEO, 1);
        ASSERT_TRUE(unit.osd.visible());
        unit.device(DEV_STATUS_PARKING, 0);
        EXPECT_EQ(unit.main.window(), WND_PARKING);
        EXPECT_FALSE(unit.osd.visible());
        EXPECT_FALSE(videoShown());
        EXPECT_EQ(state(), playing);
        unit.device(DEV_STATUS_PARKING, 5);
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
        EXPECT_TRUE(videoShown());
        EXPECT_EQ(state(), playing);
    }
    EXPECT_EQ(unit.log("[OnAppsMessage] parking update:0").size(), 2u);
    EXPECT_EQ(unit.log("[OnGotoParkingView]").size(), 2u);
    EXPECT_EQ(unit.log("[OnHideParkingView]").size(), 2u);
}

TEST_F(MainStatus, ParkingMessageWithoutAChangeDoesNothing) {
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1);
    unit.device(DEV_STATUS_PARKING, 1);
    unit.device(DEV_STATUS_PARKING, 2);
    EXPECT_TRUE(unit.osd.visible());
    EXPECT_THAT(unit.log("[OnHideParkingView]"), IsEmpty());
    unit.device(DEV_STATUS_PARKING, 0);
    unit.click(WND_PARKING, PARK_CTRL_CONTINUE);
    unit.device(DEV_STATUS_PARKING, 0);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
}

TEST_F(MainStatus, ParkingChangeOverAListIsOnlyRemembered) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.device(DEV_STATUS_PARKING, 0);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_THAT(unit.log("[OnGotoParkingView]"), IsEmpty());
    play(PLAY_TYPE_DVD);
    EXPECT_EQ(unit.main.window(), WND_PARKING);
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.device(DEV_STATUS_PARKING, 1);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    play(PLAY_TYPE_DVD);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
}

TEST_F(MainStatus, ParkingPageOfDiscVideoGoesHome) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VIDEO, PLAY_TYPE_VCD}) {
        for (const int control : {PARK_CTRL_HOME, PARK_CTRL_BACK}) {
            unit.disc.mediaType(type);
            unit.clearRequests();
            unit.clearCommands();
            unit.click(WND_PARKING, control);
            EXPECT_THAT(applications(), ElementsAre("zmhome null"));
            EXPECT_THAT(unit.requests(), testing::Contains(HasSubstr(R"("type":0)")));
            EXPECT_THAT(unit.commands(), IsEmpty());
            EXPECT_EQ(beeps(), 1);
        }
    }
}

TEST_F(MainStatus, ParkingPageOfPhotosGoesToTheirList) {
    for (const int control : {PARK_CTRL_HOME, PARK_CTRL_BACK}) {
        play(PLAY_TYPE_PHOTO);
        unit.device(DEV_STATUS_PARKING, 0);
        unit.disc.updateDb(0x10000); // asked for even when the catalogue is complete
        unit.clearCommands();
        unit.clearRequests();
        unit.click(WND_PARKING, control);
        EXPECT_EQ(unit.commands().front(), GotoSubList(4, 1));
        EXPECT_THAT(applications(), IsEmpty());
        EXPECT_EQ(beeps(), 1);
        unit.device(DEV_STATUS_PARKING, 1);
        unit.advance(LIST_WAIT);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        EXPECT_EQ(state(), VIEW_STATE_PHOTO_LIST);
        unit.advance(8s);
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
    }
}

TEST_F(MainStatus, ParkingPageCanBeDismissed) {
    play(PLAY_TYPE_DVD);
    unit.device(DEV_STATUS_PARKING, 0);
    unit.clearRequests();
    unit.click(WND_PARKING, PARK_CTRL_CONTINUE);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_TRUE(videoShown());
    EXPECT_EQ(beeps(), 1);
    unit.disc.state(DISC_STATE_LOADING);
    unit.disc.state(DISC_STATE_PLAYING);
    EXPECT_EQ(unit.main.window(), WND_PARKING) << "only that once: the car still drives";
}

TEST_F(MainStatus, ParkingPageHandsOtherControlsToTheSourceGroup) {
    for (const int control : {0, 1, 2, 2102, 2104}) {
        unit.click(WND_PARKING, control);
    }
    EXPECT_THAT(unit.requests(), IsEmpty());
    unit.click(WND_PARKING, OSD_CTRL_SRC_RADIO);
    EXPECT_THAT(applications(), ElementsAre("zmradio null"));
}

} // namespace zm::test
