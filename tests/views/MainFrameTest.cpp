#include "DiscQDB.h"
#include "tests/views/MainView.h"

namespace zm::test {

using MainFrame = MainView;

TEST_F(MainFrame, StartsOnTheLoadingPage) {
    EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
    EXPECT_EQ(unit.log("[DiscView::ViewInit]").size(), 1u);
}

TEST_F(MainFrame, StartsWithItsDefaults) {
    EXPECT_EQ(unit.main.window(), WND_DISC_LOADING);
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_FALSE(videoShown());
    EXPECT_THAT(unit.commands(), IsEmpty());
    const Reported view = reported();
    EXPECT_EQ(view.browsed, PLAY_TYPE_UNKNOWN);
    EXPECT_EQ(view.source, LIST_FROM_ALL_AUDIO);
    EXPECT_EQ(view.folder, 1);
    EXPECT_EQ(returnTarget(), PLAY_LIST_MUSIC);
    EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(255, 1))) << "of an unknown type";
    for (const int tab : {ITEM_TAB_MUSIC, ITEM_TAB_VIDEO, ITEM_TAB_PHOTO}) {
        unit.clearCommands();
        unit.click(WND_MEDIA_LIST, tab, BT_STATE_RELEASED);
        EXPECT_THAT(unit.commands(), IsEmpty()) << "no type is known to be on the disc";
    }
}

TEST_F(MainFrame, SourceNameStandsOnSevenPages) {
    for (const int page : {WND_DISC_LOADING, WND_FOLDER_LIST, WND_MEDIA_LIST, WND_CD_LIST, WND_AUDIO_PLAY,
                           WND_DISC_ERROR, WND_PARKING}) {
        EXPECT_EQ(unit.main.item(page, ITEM_SRC_BUTTON).textId, 30) << page;
    }
}

TEST_F(MainFrame, InitialisationEmptiesTheListsAndSetsThePlaceholders) {
    play(PLAY_TYPE_MUSIC);
    openList();
    ASSERT_FALSE(unit.main.item(WND_MEDIA_LIST, ITEM_LIST).rows.empty());
    unit.disc.state(DISC_STATE_LOADING);
    unit.device(DEV_STATUS_MUTE, 255);
    unit.time("9:30", 12);
    unit.onViewThread([&] { unit.view().ShowWnd(WND_DISC_ERROR, true, 0); });
    unit.onViewThread([&] { unit.view().ViewInit(); });
    EXPECT_THAT(unit.main.item(WND_MEDIA_LIST, ITEM_LIST).rows, IsEmpty());
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TRACK).text, "--/--");
    for (const int item : {OSD_ITEM_MUTE, OSD_ITEM_AM, OSD_ITEM_PM}) {
        EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, item).visible) << item;
    }
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_TEMP).text, "--.-");
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_CLOCK).text, "00:00");
    EXPECT_EQ(state(), VIEW_STATE_LOADING);
    unit.advance(40s);
    EXPECT_EQ(state(), VIEW_STATE_DISC_ERROR) << "the loading timer runs";
}

TEST_F(MainFrame, ShownPageRefreshesMuteBluetoothTemperatureAndClock) {
    const std::vector<std::string> lines = {
        "_PLATEN_[OnShow]-[DiscView::OnShow] dwWndId=22,bShow=1",
        "_PLATEN_[UpdateMuteStatus]-[DiscView::UpdateMuteStatus]-----status:0",
        "_PLATEN_[UpdateBTStatus]-[DiscView::UpdateBTStatus]",
        "_PLATEN_[UpdateCarTemp]-[DiscView::UpdateCarTemp]-----status:200",
        "_PLATEN_[OnShow]-[DiscView::OnShow] end",
    };
    expectLines(lines, [&] { unit.onViewThread([&] { unit.view().OnShow(WND_DISC_ERROR, true, 0); }); });
}

TEST_F(MainFrame, PlayPageStartsWithoutATrackNumber) {
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TRACK).text, "--/--");
}

TEST_F(MainFrame, ListsStartEmpty) {
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        EXPECT_THAT(unit.main.item(page, ITEM_LIST).rows, IsEmpty()) << page;
    }
}

TEST_F(MainFrame, HidingAPageChangesNothing) {
    unit.onViewThread([&] { unit.view().OnShow(WND_MEDIA_LIST, false, 0); });
    unit.device(DEV_STATUS_CAR_TEMP, 101); // shown on what the view takes for the page
    EXPECT_EQ(unit.main.item(WND_DISC_LOADING, OSD_ITEM_TEMP).text, "10.1");
    EXPECT_NE(unit.main.item(WND_MEDIA_LIST, OSD_ITEM_TEMP).text, "10.1");
    EXPECT_EQ(unit.log("[DiscView::OnShow] dwWndId=24,bShow=0").size(), 1u);
}

TEST_F(MainFrame, ShowingAPageLogsBeginningAndEnd) {
    EXPECT_FALSE(unit.log("[DiscView::OnShow] dwWndId=1,bShow=1").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnShow] end").empty());
}

TEST_F(MainFrame, ShowingAPageClosesItsSourcePopup) {
    unit.click(WND_DISC_LOADING, OSD_CTRL_SRC_OPEN);
    ASSERT_TRUE(unit.main.item(WND_DISC_LOADING, OSD_ITEM_SRC_GROUP).visible);
    unit.disc.state(DISC_STATE_LOADING);
    EXPECT_FALSE(unit.main.item(WND_DISC_LOADING, OSD_ITEM_SRC_GROUP).visible);
}

TEST_F(MainFrame, ErrorPageNamesTheError) {
    unit.disc.state(DISC_STATE_ERROR);
    EXPECT_EQ(unit.main.item(WND_DISC_ERROR, ITEM_ERROR_TEXT).textId, 13007);
}

TEST_F(MainFrame, ParkingPageSpeaksOfPhotosOrOfVideo) {
    unit.device(DEV_STATUS_PARKING, 0);
    for (const int type : {PLAY_TYPE_PHOTO, PLAY_TYPE_DVD, PLAY_TYPE_PHOTO, PLAY_TYPE_VCD}) {
        play(type);
        ASSERT_EQ(unit.main.window(), WND_PARKING);
        const bool photo = type == PLAY_TYPE_PHOTO;
        EXPECT_EQ(unit.main.item(WND_PARKING, PARK_CTRL_BACK).visible, photo) << type;
        EXPECT_EQ(unit.main.item(WND_PARKING, PARK_CTRL_HOME).visible, !photo) << type;
    }
}

TEST_F(MainFrame, ParkingPageKeepsItsWordingForVideoFiles) {
    unit.device(DEV_STATUS_PARKING, 0);
    play(PLAY_TYPE_PHOTO);
    play(PLAY_TYPE_VIDEO);
    ASSERT_EQ(unit.main.window(), WND_PARKING);
    EXPECT_TRUE(unit.main.item(WND_PARKING, PARK_CTRL_BACK).visible);
    EXPECT_FALSE(unit.main.item(WND_PARKING, PARK_CTRL_HOME).visible);
}

TEST_F(MainFrame, NumberPadShowsBackInsteadOfHome) {
    play(PLAY_TYPE_MUSIC);
    unit.key(K_GOTO);
    ASSERT_EQ(unit.main.window(), WND_GOTO);
    EXPECT_TRUE(unit.main.item(WND_GOTO, ITEM_BACK).visible);
    EXPECT_FALSE(unit.main.item(WND_GOTO, ITEM_HOME).visible);
}

TEST_F(MainFrame, ListPageOffersTheWayBackOnlyForThePlayingType) {
    play(PLAY_TYPE_MUSIC);
    openList();
    ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_TRUE(unit.main.item(WND_MEDIA_LIST, ITEM_TO_PLAYING).visible);
    EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_TO_PLAYING).text, "song 1");
    unit.onViewThread([&] { unit.view().ShowWnd(WND_FOLDER_LIST, true, 0); });
    EXPECT_TRUE(unit.main.item(WND_FOLDER_LIST, ITEM_TO_PLAYING).visible);
    unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO);
    unit.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
        unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
        EXPECT_FALSE(unit.main.item(page, ITEM_TO_PLAYING).visible) << page;
    }
}

TEST_F(MainFrame, ListPageOfAMissingTypeOffersNoWayBack) {
    play(PLAY_TYPE_MUSIC); // a disc with music only
    openList();
    unit.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO);
    unit.disc.mediaType(PLAY_TYPE_MUSIC); // browses the playing type again
    unit.onViewThread([&] { unit.view().ShowWnd(WND_MEDIA_LIST, true, 0); });
    EXPECT_FALSE(unit.main.item(WND_MEDIA_LIST, ITEM_TO_PLAYING).visible);
}

TEST_F(MainFrame, ListPageShowsTheBrowsedType) {
    struct Case {
        int type;
        int icon;
    };
    for (const auto& [type, icon] :
         {Case{PLAY_TYPE_VIDEO, 80}, Case{PLAY_TYPE_PHOTO, 55}, Case{PLAY_TYPE_MUSIC, 90}}) {
        unit.disc.mediaType(type);
        for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
            unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
            EXPECT_EQ(unit.main.item(page, ITEM_TYPE_ICON).icon(), icon) << page;
        }
    }
}

TEST_F(MainFrame, CdListPageAlwaysOffersTheWayBack) {
    unit.onViewThread([&] { unit.view().OnShow(WND_CD_LIST, true, 0); });
    EXPECT_TRUE(unit.main.item(WND_CD_LIST, ITEM_TO_PLAYING).visible);
}

TEST_F(MainFrame, EndingAfterStartSucceeds) {
    EXPECT_TRUE(unit.endApplication());
}

TEST_F(MainFrame, EndingStopsCaptureThatIsOn) {
    play(PLAY_TYPE_DVD);
    ASSERT_THAT(captures(), ElementsAre("on"));
    CDiscData::GetInstance()->SetVideoStatus(true);
    EXPECT_TRUE(unit.endApplication());
    EXPECT_THAT(unit.attribute(VIDEO_COMMAND, "zmvideo"), HasSubstr(R"("status":"off")"));
}

TEST_F(MainFrame, EndingLeavesCaptureThatIsNotReported) {
    play(PLAY_TYPE_DVD);
    EXPECT_TRUE(unit.endApplication());
    EXPECT_THAT(unit.attribute(VIDEO_COMMAND, "zmvideo"), HasSubstr(R"("status":"on")"));
}

} // namespace zm::test
