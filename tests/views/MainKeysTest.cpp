#include "ZMModel/CDiscData.h"
#include "tests/views/MainView.h"

#include <nlohmann/json.hpp>

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
        {K_PLAY, {Play()}, nullptr},
        {K_PAUSE, {Pause()}, nullptr},
        {K_NEXT, {NextClip()}, "------OnKeyboard::K_NEXT"},
        {K_PREV, {PreviousClip()}, "------OnKeyboard::K_PREV---------"},
        {K_FASTF, {FastForward()}, "------OnKeyboard::K_FASTF"},
        {K_FASTB, {FastBackward()}, "------OnKeyboard::K_FASTB"},
        {K_PRESET_UP, {PreviousClip(), PreviousClip()}, "------OnKeyboard::K_PRESET_UP---------"},
        {K_PRESET_DN, {NextClip()}, "------OnKeyboard::K_PRESET_DN"},
        {K_SHUFFLE_FOLDER, {SetShuffleMode(1), SetRepeatMode(4)}, nullptr},
        {K_REPEAT_ALL, {SetRepeatMode(2)}, nullptr},
        {K_SHUFFLE, {SetShuffleMode(4)}, nullptr},
        {K_RESTART, {PlayTrack(1, 0)}, nullptr},
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
    EXPECT_THAT(unit.commands(), ElementsAre(PreviousClip(), PreviousClip()));
    unit.clearCommands();
    unit.key(K_PRESET_DN);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
}

TEST_F(MainKeys, RestartPlaysTheCurrentItemByItsNumber) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 7, .curMediaIds = 12, .mediaId = 19, .parentFolder = 3});
    unit.key(K_RESTART);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(7, 0)));
}

TEST_F(MainKeys, UnknownKeysAreNotHandled) {
    play(PLAY_TYPE_MUSIC);
    unit.onViewThread([&] {
        for (const int code : {-1, 0, 16, 19, 24, 43, 51, 63, 66, 86, 89, 159, 164}) {
            EXPECT_FALSE(unit.view().OnKeyboard(code)) << code;
        }
        for (const int code : {K_PLAY, K_PAUSE, K_NEXT, K_PREV, K_FASTF, K_FASTB, K_Up, K_Down, K_Left,
                               K_Right, K_PRESET_UP, K_PRESET_DN, K_ENCODER_INC, K_ENCODER_DEC,
                               K_SHUFFLE_FOLDER, K_REPEAT_ALL, K_SHUFFLE, K_RESTART}) {
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
    for (const int code : {K_PLAY, K_NEXT, K_GOTO, K_Up, K_Enter, K_Return, K_PRESET_UP, K_RESTART}) {
        EXPECT_FALSE(view.OnKeyboard(code));
    }
}

TEST_F(MainKeys, SomeKeysLetTheListFollow) {
    play(PLAY_TYPE_MUSIC);
    openList();
    const auto report = [&](int file) {
        unit.disc.track({.curMediaId = file, .curMediaIds = 12, .mediaIds = 12, .parentFolder = 1});
    };
    const auto selected = [&] { return unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current; };
    for (const int code :
         {K_PLAY, K_PAUSE, K_NEXT, K_PREV, K_FASTF, K_FASTB, K_Left, K_Right, K_PRESET_UP, K_PRESET_DN,
          K_ENCODER_INC, K_ENCODER_DEC, K_SHUFFLE_FOLDER, K_REPEAT_ALL, K_SHUFFLE, K_RESTART}) {
        report(2); // ends what a key before has asked for
        unit.key(code);
        const int before = selected();
        const int file = before == 8 ? 5 : 9;
        report(file);
        const bool follows = code == K_NEXT || code == K_PREV || code == K_PRESET_UP || code == K_PRESET_DN;
        EXPECT_EQ(selected(), follows ? file - 1 : before) << code;
    }
}

TEST_F(MainKeys, SkipAndFastKeysAnswerOnTheOverlay) {
    play(PLAY_TYPE_DVD);
    for (const int code :
         {K_NEXT, K_PREV, K_FASTF, K_FASTB, K_PRESET_UP, K_PRESET_DN, K_PLAY, K_REPEAT_ALL}) {
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
    for (const int code :
         {K_NEXT, K_PREV, K_Up, K_Down, K_PRESET_UP, K_PRESET_DN, K_ENCODER_INC, K_ENCODER_DEC}) {
        unit.advance(5s);
        unit.key(code);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST) << code;
    }
    unit.advance(5s);
    for (const int code : {K_PLAY, K_PAUSE, K_FASTF, K_FASTB, K_Left, K_Right, K_SHUFFLE_FOLDER, K_REPEAT_ALL,
                           K_SHUFFLE, K_RESTART}) {
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
        unit.disc.mediaType(PLAY_TYPE_DVD); // no row does anything then
        unit.key(code);
        unit.disc.mediaType(PLAY_TYPE_MUSIC);
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
    unit.key(K_GOTO);
    EXPECT_EQ(unit.main.window(), WND_GOTO);
    EXPECT_EQ(state(), VIEW_STATE_GOTO);
}

TEST_F(MainKeys, PadKeyDoesNothingOverAListOfNothing) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO);
    unit.key(K_GOTO);
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
    for (const auto& [code, step] : {Case{K_Down, 1}, Case{K_ENCODER_INC, 1}, Case{K_Down, 1}, Case{K_Up, -1},
                                     Case{K_ENCODER_DEC, -1}}) {
        unit.key(code);
        expected += step;
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current, expected) << code;
    }
    EXPECT_FALSE(unit.log("------OnKeyboard::K_ENCODER_INC").empty());
    EXPECT_FALSE(unit.log("------OnKeyboard::K_ENCODER_DEC").empty());
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(MainKeys, OnACdTheKeysMoveTheTrackList) {
    play(PLAY_TYPE_CD);
    openList();
    ASSERT_EQ(unit.main.window(), WND_CD_LIST);
    const auto selected = [&] { return unit.main.item(WND_CD_LIST, ITEM_LIST).current; };
    const int start = selected();
    ASSERT_GE(start, 0);
    unit.key(K_Down);
    EXPECT_EQ(selected(), start + 1);
    unit.key(K_Up);
    EXPECT_EQ(selected(), start);
    EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current, -1);
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.key(K_Down);
    EXPECT_EQ(selected(), start) << "another list is on screen";
}

TEST_F(MainKeys, EnterPlaysTheSelectedRow) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.key(K_Down);
    const int row = unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current;
    unit.key(K_Enter);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{1}, File{row + 1}, KIND_MUSIC)));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(MainKeys, EnterOverTheCdListClicksTheFileList) {
    play(PLAY_TYPE_MUSIC);
    openList();
    unit.key(K_Down);
    const int row = unit.main.item(WND_MEDIA_LIST, ITEM_LIST).current;
    ASSERT_GT(row, 0);
    play(PLAY_TYPE_CD);
    openList();
    ASSERT_NE(unit.main.item(WND_CD_LIST, ITEM_LIST).current, row);
    unit.key(K_Enter); // plays the row that is selected in the list of files, as a track of the CD
    EXPECT_EQ(
        unit.log("[DiscView::OnHandleUIListClick] nPlayType=1,nUiFrom=9,nLine=" + std::to_string(row)).size(),
        1u);
}

TEST_F(MainKeys, KeysOnTheMusicPlayPage) {
    play(PLAY_TYPE_MUSIC);
    unit.key(K_Down);
    unit.key(K_Left);
    unit.key(K_Enter);
    unit.key(K_ENCODER_INC);
    unit.key(K_ENCODER_DEC);
    EXPECT_THAT(unit.commands(),
                ElementsAre(SetRepeatMode(0), SetShuffleMode(0), PlayPause(), NextClip(), PreviousClip()));
    unit.key(K_Right);
    EXPECT_THAT(applications(), ElementsAre("zmeq null"));
    unit.key(K_Up);
    EXPECT_EQ(unit.log("[OnHandleUIReturnList]--m_nPlayListFrom:0").size(), 1u);
    unit.advance(LIST_WAIT);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(MainKeys, KeysOverVideoAndPhotos) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_PHOTO}) {
        play(type);
        unit.clearCommands();
        for (const int code : {K_Up, K_Down, K_Left, K_Right, K_Enter, K_ENCODER_INC, K_ENCODER_DEC}) {
            unit.key(code);
        }
        EXPECT_THAT(unit.commands(), ElementsAre(PlayPause(), NextClip(), PreviousClip())) << type;
        EXPECT_THAT(applications(), IsEmpty());
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
    }
}

TEST_F(MainKeys, KeysInOtherStatesDoNothing) {
    for (const int state : {VIEW_STATE_GOTO, VIEW_STATE_LOADING, VIEW_STATE_EXIT, VIEW_STATE_NO_DISC,
                            VIEW_STATE_DISC_ERROR, VIEW_STATE_REGION_ERROR}) {
        SCOPED_TRACE(state);
        reach(state);
        for (const int code : {K_Up, K_Down, K_Left, K_Right, K_Enter, K_ENCODER_INC, K_ENCODER_DEC}) {
            unit.key(code);
        }
        EXPECT_THAT(unit.commands(), IsEmpty());
        EXPECT_THAT(unit.requests(), IsEmpty());
        EXPECT_EQ(reported().state, state);
    }
}

TEST_F(MainKeys, ReturnGoesHomeFromMostStates) {
    for (const int state : {VIEW_STATE_MUSIC_LIST, VIEW_STATE_VIDEO_LIST, VIEW_STATE_PHOTO_LIST,
                            VIEW_STATE_AUDIO_PLAY, VIEW_STATE_LOADING, VIEW_STATE_EXIT, VIEW_STATE_NO_DISC,
                            VIEW_STATE_DISC_ERROR, VIEW_STATE_REGION_ERROR}) {
        reach(state);
        unit.key(K_Return);
        const bool home =
            state <= VIEW_STATE_AUDIO_PLAY || (state >= VIEW_STATE_LOADING && state <= VIEW_STATE_DISC_ERROR);
        EXPECT_EQ(applications(), home ? std::vector<std::string>{"zmhome null"} : std::vector<std::string>{})
            << state;
        EXPECT_THAT(unit.commands(), IsEmpty()) << state;
    }
}

TEST_F(MainKeys, ReturnOverVideoGoesHomeForDiscVideoOnly) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD, PLAY_TYPE_VIDEO}) {
        play(type);
        unit.key(K_Return);
        EXPECT_EQ(applications().size(), type == PLAY_TYPE_VIDEO ? 0u : 1u) << type;
        EXPECT_THAT(unit.commands(), IsEmpty());
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
        EXPECT_EQ(state(), VIEW_STATE_VIDEO_PLAY);
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
    unit.key(K_Return);
    expectLeftForTheList(GotoSubList(4, 1), VIEW_STATE_PHOTO_LIST);
}

TEST_F(MainKeys, ReturnOverPhotosOfACompleteCatalogueSendsNothing) {
    play(PLAY_TYPE_PHOTO);
    unit.disc.updateDb(0x10000);
    unit.clearCommands();
    unit.key(K_Return);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(state(), VIEW_STATE_PHOTO_LIST);
}

TEST_F(MainKeys, ReturnInThePhotosStateLooksAtThePhotosCatalogueWhateverPlays) {
    play(PLAY_TYPE_VIDEO);
    unit.disc.updateDb(0x10000); // the films' is complete
    play(PLAY_TYPE_PHOTO);
    unit.disc.mediaType(PLAY_TYPE_VIDEO); // while the photo is on screen
    unit.clearCommands();
    unit.key(K_Return);
    EXPECT_THAT(unit.commands(), testing::Contains(GotoSubList(3, 1)));
}

TEST_F(MainKeys, ReturnOnTheNumberPadGoesToTheList) {
    play(PLAY_TYPE_MUSIC);
    unit.key(K_GOTO);
    unit.clearRequests();
    unit.key(K_Return);
    unit.advance(LIST_WAIT);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_THAT(applications(), IsEmpty());
    unit.advance(8s);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

} // namespace zm::test
