#include "ZMModel/CDiscData.h"
#include "tests/views/main_view.h"

namespace zm::test {

using MainKeys = MainView;

namespace {

/** What a key shows of the overlay: a picture stands, and a key type other than none clears it. */
constexpr int OSD_PICTURE = 2078;

struct KeyRow {
    int code;
    std::vector<std::string> commands;
    const char* log;
};

const std::vector<KeyRow>& commandKeys() {
    static const std::vector<KeyRow> ROWS = {
        {17, {"131,0,0"}, nullptr},
        {18, {"130,0,0"}, nullptr},
        {20, {"1,0,0"}, "------OnKeyboard::K_NEXT"},
        {21, {"2,0,0"}, "------OnKeyboard::K_PREV---------"},
        {22, {"3,0,0"}, "------OnKeyboard::K_FASTF"},
        {23, {"4,0,0"}, "------OnKeyboard::K_FASTB"},
        {64, {"2,0,0", "2,0,0"}, "------OnKeyboard::K_PRESET_UP---------"},
        {65, {"1,0,0"}, "------OnKeyboard::K_PRESET_DN"},
        {160, {"7,1,0", "9,4,0"}, nullptr},
        {161, {"9,2,0"}, nullptr},
        {162, {"7,4,0"}, nullptr},
        {163, {"182,1,0"}, nullptr},
    };
    return ROWS;
}

} // namespace

TEST_F(MainKeys, CommandKeysSendTheirCommands) {
    play(PLAY_TYPE_MUSIC);
    for (const KeyRow& row : commandKeys()) {
        SCOPED_TRACE(row.code);
        unit.clearCommands();
        const auto lines = row.log ? unit.log(row.log).size() : 0;
        unit.key(row.code);
        EXPECT_EQ(unit.commands(), row.commands);
        if (row.log) {
            EXPECT_EQ(unit.log(row.log).size(), lines + 1);
        }
        EXPECT_EQ(unit.log("[DiscView::OnKeyboard]: nKey=" + std::to_string(row.code)).size(), 1u);
    }
}

TEST_F(MainKeys, PresetUpSendsTwoPreviousAndPresetDownOneNext) {
    play(PLAY_TYPE_CD);
    unit.key(K_PRESET_UP);
    EXPECT_THAT(unit.commands(), ElementsAre("2,0,0", "2,0,0"));
    unit.clearCommands();
    unit.key(K_PRESET_DN);
    EXPECT_THAT(unit.commands(), ElementsAre("1,0,0"));
}

TEST_F(MainKeys, RestartPlaysTheCurrentItemByItsNumber) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 7, .curMediaIds = 12, .mediaId = 19, .parentFolder = 3});
    unit.key(K_RESTART);
    EXPECT_THAT(unit.commands(), ElementsAre("182,7,0"));
}

TEST_F(MainKeys, UnknownKeysAreNotHandled) {
    play(PLAY_TYPE_MUSIC);
    unit.onViewThread([&] {
        for (const int code : {-1, 0, 16, 19, 24, 43, 51, 63, 66, 86, 89, 159, 164}) {
            EXPECT_FALSE(unit.view().OnKeyboard(code)) << code;
        }
        for (const int code : {17, 18, 20, 21, 22, 23, 45, 46, 47, 48, 64, 65, 87, 88, 160, 161, 162, 163}) {
            EXPECT_TRUE(unit.view().OnKeyboard(code)) << code;
        }
    });
}

TEST_F(MainKeys, RawKeysAreTakenAndDoNothing) {
    play(PLAY_TYPE_MUSIC);
    unit.onViewThread([&] { EXPECT_TRUE(unit.view().OnKey(20, 1, 0)); });
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST(MainKeysWithoutController, NothingIsHandled) {
    DiscView view("zmdisc", *CDiscData::GetInstance());
    for (const int code : {17, 20, 44, 45, 49, 50, 64, 163}) {
        EXPECT_FALSE(view.OnKeyboard(code));
    }
}

TEST_F(MainKeys, SomeKeysLetTheListFollow) {
    play(PLAY_TYPE_MUSIC);
    for (const int code : {17, 18, 20, 21, 22, 23, 47, 48, 64, 65, 87, 88, 160, 161, 162, 163}) {
        inside.setFollowsPlaying(false);
        unit.key(code);
        const bool follows = code == 20 || code == 21 || code == 64 || code == 65;
        EXPECT_EQ(inside.followsPlaying(), follows) << code;
    }
}

TEST_F(MainKeys, SkipAndFastKeysAnswerOnTheOverlay) {
    play(PLAY_TYPE_DVD);
    for (const int code : {20, 21, 22, 23, 64, 65, 17, 161}) {
        SCOPED_TRACE(code);
        unit.disc.tip(2); // a picture for three seconds
        ASSERT_TRUE(unit.osd.item(1, OSD_PICTURE).visible);
        unit.key(code);
        const bool answers = code >= 20 && code <= 23;
        EXPECT_EQ(unit.osd.item(1, OSD_PICTURE).visible, !answers) << "taking a key clears the picture";
        if (answers) {
            int keyType = 0;
            unit.onViewThread([&] { keyType = unit.osdView().GetCurKeyType(); });
            EXPECT_EQ(keyType, code - 19);
        }
    }
}

TEST_F(MainKeys, SomeKeysRestartTheWayBackToThePlayPage) {
    play(PLAY_TYPE_MUSIC);
    openList();
    for (const int code : {20, 21, 45, 46, 64, 65, 87, 88}) {
        unit.advance(5s);
        unit.key(code);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST) << code;
    }
    unit.advance(5s);
    for (const int code : {17, 18, 22, 23, 47, 48, 160, 161, 162, 163}) {
        unit.key(code);
    }
    unit.advance(2999ms);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    unit.advance(1ms);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY) << "8 s after the last key that restarts the timer";
}

TEST_F(MainKeys, EnterRestartsTheWayBackToThePlayPageAndReturnDoesNot) {
    struct Case {
        int code;
        bool restarts;
    };
    for (const auto& [code, restarts] : {Case{K_Enter, true}, Case{K_Return, false}}) {
        SCOPED_TRACE(code);
        play(PLAY_TYPE_MUSIC);
        openList();
        unit.advance(7s);
        inside.setBrowsedType(PLAY_TYPE_DVD); // no row does anything then
        unit.key(code);
        inside.setBrowsedType(PLAY_TYPE_MUSIC);
        unit.advance(1s);
        EXPECT_EQ(unit.main.window(), restarts ? WND_MEDIA_LIST : WND_AUDIO_PLAY);
        unit.advance(7s);
        EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    }
}

TEST_F(MainKeys, UpOnThePlayPageStartsTheWayBackToIt) {
    play(PLAY_TYPE_MUSIC);
    unit.key(K_Up);
    unit.advance(7999ms);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    unit.advance(1ms);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainKeys, PadKeyOpensTheNumberPad) {
    play(PLAY_TYPE_MUSIC);
    unit.key(44);
    EXPECT_EQ(unit.main.window(), WND_GOTO);
    EXPECT_EQ(inside.state(), VIEW_STATE_GOTO);
}

TEST_F(MainKeys, PadKeyDoesNothingOverAListOfNothing) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO);
    ASSERT_TRUE(inside.noFileOfType());
    unit.key(44);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(MainKeys, DirectionKeysAndEncoderMoveTheListsSelection) {
    play(PLAY_TYPE_MUSIC);
    openList();
    const int start = unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current;
    ASSERT_GE(start, 0);
    struct Case {
        int code, step;
    };
    int expected = start;
    for (const auto& [code, step] : {Case{46, 1}, Case{87, 1}, Case{46, 1}, Case{45, -1}, Case{88, -1}}) {
        unit.key(code);
        expected += step;
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current, expected) << code;
    }
    EXPECT_FALSE(unit.log("------OnKeyboard::K_ENCODER_INC").empty());
    EXPECT_FALSE(unit.log("------OnKeyboard::K_ENCODER_DEC").empty());
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainKeys, KeysMoveTheListOfTheSource) {
    play(PLAY_TYPE_CD);
    unit.click(WND_AUDIO_PLAY, ITEM_TO_LIST);
    unit.advance(LIST_WAIT);
    ASSERT_EQ(unit.main.window(), WND_CD_LIST);
    unit.touchItem(unit.main, WND_CD_LIST, ITEM_LIST);
    unit.advance(LIST_WAIT);
    inside.setState(VIEW_STATE_MUSIC_LIST);
    const int start = unit.main.item(WND_CD_LIST, ITEM_LIST).current;
    ASSERT_GE(start, 0);
    unit.key(46);
    EXPECT_EQ(unit.main.item(WND_CD_LIST, ITEM_LIST).current, start + 1);
    for (const int source : {0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11}) {
        inside.setListFrom(source);
        unit.key(46);
        EXPECT_EQ(unit.main.item(WND_CD_LIST, ITEM_LIST).current, start + 1) << source;
    }
    inside.setListFrom(LIST_FROM_CUR_AUDIO);
    unit.key(45);
    EXPECT_EQ(unit.main.item(WND_CD_LIST, ITEM_LIST).current, start);
}

TEST_F(MainKeys, EnterPlaysTheSelectedRow) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.key(46);
    const int row = unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current;
    unit.key(49);
    EXPECT_THAT(unit.commands(), ElementsAre("182," + std::to_string(65536 + row + 1) + ",1"));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainKeys, EnterGoesToThePageOfTheSource) {
    play(PLAY_TYPE_MUSIC);
    openList();
    inside.setBrowsedType(PLAY_TYPE_DVD); // no row of either page does anything then
    for (const int source : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}) {
        SCOPED_TRACE(source);
        inside.setListFrom(source);
        const auto folder = unit.log("[DiscView::OnClickFolderListWnd] nCtrlId=2000").size();
        unit.clearRequests();
        unit.key(49);
        const bool isFolder = source == 1 || source == 3 || source == 5;
        EXPECT_EQ(unit.log("[DiscView::OnClickFolderListWnd] nCtrlId=2000").size(), folder + isFolder);
        EXPECT_EQ(beeps(), source <= 9 ? 1 : 0) << "the click of a row beeps";
    }
}

TEST_F(MainKeys, EnterOverTheCdListClicksTheFileList) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.key(46);
    const int row = unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current;
    // The page of the files decides by the browsed type: 1 plays its row from the CD's list.
    inside.setListFrom(LIST_FROM_CUR_AUDIO);
    inside.setBrowsedType(PLAY_TYPE_CD);
    unit.key(49);
    EXPECT_EQ(
        unit.log("[DiscView::OnHandleUIListClick] nPlayType=1,nUiFrom=9,nLine=" + std::to_string(row)).size(),
        1u);
}

TEST_F(MainKeys, KeysOnTheMusicPlayPage) {
    play(PLAY_TYPE_MUSIC);
    unit.key(46);
    unit.key(47);
    unit.key(49);
    unit.key(87);
    unit.key(88);
    EXPECT_THAT(unit.commands(), ElementsAre("9,0,0", "7,0,0", "5,0,0", "1,0,0", "2,0,0"));
    unit.key(48);
    EXPECT_THAT(applications(), ElementsAre("zmeq null"));
    unit.key(45);
    EXPECT_EQ(unit.log("[OnHandleUIReturnList]--m_nPlayListFrom:0").size(), 1u);
    unit.advance(LIST_WAIT);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(MainKeys, KeysOverVideoAndPhotos) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_PHOTO}) {
        play(type);
        inside.gotoVideoPage(type);
        unit.clearCommands();
        for (const int code : {45, 46, 47, 48, 49, 87, 88}) {
            unit.key(code);
        }
        EXPECT_THAT(unit.commands(), ElementsAre("5,0,0", "1,0,0", "2,0,0")) << type;
        EXPECT_THAT(applications(), IsEmpty());
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
    }
}

TEST_F(MainKeys, KeysInOtherStatesDoNothing) {
    unit.disc.presence(1);
    unit.clearCommands();
    unit.clearRequests();
    for (const int state : {VIEW_STATE_GOTO, VIEW_STATE_LOADING, VIEW_STATE_EXIT, VIEW_STATE_NO_DISC,
                            VIEW_STATE_DISC_ERROR, VIEW_STATE_REGION_ERROR}) {
        inside.setState(state);
        for (const int code : {45, 46, 47, 48, 49, 87, 88}) {
            unit.key(code);
        }
    }
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.requests(), IsEmpty());
}

TEST_F(MainKeys, ReturnGoesHomeFromMostStates) {
    play(PLAY_TYPE_MUSIC);
    for (int state = VIEW_STATE_MUSIC_LIST; state <= VIEW_STATE_REGION_ERROR; ++state) {
        if (state == VIEW_STATE_VIDEO_PLAY || state == VIEW_STATE_PHOTO_PLAY || state == VIEW_STATE_GOTO) {
            continue;
        }
        inside.setState(state);
        unit.clearRequests();
        unit.key(50);
        const bool home =
            state <= VIEW_STATE_AUDIO_PLAY || (state >= VIEW_STATE_LOADING && state <= VIEW_STATE_DISC_ERROR);
        EXPECT_EQ(applications(), home ? std::vector<std::string>{"zmhome null"} : std::vector<std::string>{})
            << state;
    }
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainKeys, ReturnOverVideoGoesHomeForDiscVideoOnly) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD, PLAY_TYPE_VIDEO}) {
        play(type);
        inside.gotoVideoPage(type);
        unit.clearCommands();
        unit.clearRequests();
        unit.key(50);
        EXPECT_EQ(applications().size(), type == PLAY_TYPE_VIDEO ? 0u : 1u) << type;
        EXPECT_THAT(unit.commands(), IsEmpty());
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
        EXPECT_EQ(inside.state(), VIEW_STATE_VIDEO_PLAY);
    }
}

TEST_F(MainKeys, ReturnOnAPlayingVideoFileChangesNothing) {
    play(PLAY_TYPE_VIDEO);
    unit.click(WND_VIDEO, 1);
    unit.clearRequests();
    const Json before = unit.main.describe();
    unit.key(K_Return);
    EXPECT_EQ(unit.main.describe(), before);
    EXPECT_TRUE(unit.osd.visible());
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.requests(), IsEmpty());
}

TEST_F(MainKeys, ReturnOverPhotosGoesToTheirList) {
    play(PLAY_TYPE_PHOTO);
    unit.click(WND_VIDEO, 1);
    unit.clearCommands();
    unit.key(50);
    expectLeftForTheList("186,4,1", VIEW_STATE_PHOTO_LIST);
}

TEST_F(MainKeys, ReturnOverPhotosOfACompleteCatalogueSendsNothing) {
    play(PLAY_TYPE_PHOTO);
    unit.disc.updateDb(0x10000);
    unit.clearCommands();
    unit.key(50);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(inside.state(), VIEW_STATE_PHOTO_LIST);
}

TEST_F(MainKeys, ReturnInThePhotosStateLooksAtThePhotosCatalogueWhateverPlays) {
    play(PLAY_TYPE_VIDEO);
    unit.disc.updateDb(0x10000); // the films' is complete
    inside.setState(VIEW_STATE_PHOTO_PLAY);
    unit.clearCommands();
    unit.key(50);
    EXPECT_THAT(unit.commands(), testing::Contains("186,3,1"));
}

TEST_F(MainKeys, ReturnOnTheNumberPadGoesToTheList) {
    play(PLAY_TYPE_MUSIC);
    unit.key(44);
    unit.clearRequests();
    unit.key(50);
    unit.advance(LIST_WAIT);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_THAT(applications(), IsEmpty());
    unit.advance(8s);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

} // namespace zm::test
