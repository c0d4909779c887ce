#include "tests/views/GotoPad.h"

namespace zm::test {

class GotoMain : public GotoPad {
protected:
    void open(int type, const Track& track) {
        play(type);
        unit.disc.track(track);
        unit.key(K_GOTO);
        forget();
    }
    View& padView() override { return unit.main; }
    void clickPad(int control) override { unit.click(WND_GOTO, control, BT_STATE_RELEASED); }
};

TEST_F(GotoMain, OpensForTheFilesOfTheFolder) {
    for (const int type : {PLAY_TYPE_MUSIC, PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO}) {
        open(type, {.curMediaIds = 12, .mediaIds = 40});
        EXPECT_EQ(unit.main.window(), WND_GOTO) << type;
        EXPECT_EQ(display(), "_/12") << type;
        EXPECT_EQ(caption(), 14122);
        EXPECT_EQ(state(), VIEW_STATE_GOTO);
    }
}

TEST_F(GotoMain, ThePadHasAWayBackInThePlaceOfHome) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    EXPECT_TRUE(unit.main.item(WND_GOTO, ITEM_BACK).visible);
    EXPECT_FALSE(unit.main.item(WND_GOTO, ITEM_HOME).visible);
}

TEST_F(GotoMain, OpensForTheTracksOfACd) {
    open(PLAY_TYPE_CD, {.curMediaIds = 40, .mediaIds = 12});
    EXPECT_EQ(display(), "_/12");
}

TEST_F(GotoMain, OnlyNumbersWithinTheBoundCanBeTyped) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    expectEnabling();
    EXPECT_FALSE(unit.log("[DealInputNum]-[DiscOsdView::DealInputNum] nInputNum=12").empty());
    EXPECT_FALSE(unit.log("[DealInputNum]-[DiscOsdView::DealInputNum] totalNum=12").empty());
}

TEST_F(GotoMain, WithoutACountNothingCanBeTyped) {
    open(PLAY_TYPE_CD, {});
    expectNothingCanBeTyped();
}

TEST_F(GotoMain, DigitsAreShownBeforeTheBound) {
    open(PLAY_TYPE_MUSIC, {.curMediaIds = 12345});
    expectTyping();
}

TEST_F(GotoMain, EachKeyBeepsButTheCaption) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    for (const int control : {511, 519, 520, 523, 531}) {
        forget();
        clickPad(control);
        EXPECT_EQ(beeps(), 1) << control;
    }
    forget();
    clickPad(GOTO_ITEM_MODE);
    EXPECT_THAT(unit.requests(), IsEmpty());
}

TEST_F(GotoMain, OtherKeysGoToTheSourceGroup) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    clickPad(OSD_CTRL_SRC_RADIO);
    EXPECT_THAT(applications(), ElementsAre("zmradio null"));
}

TEST_F(GotoMain, OkOnACdTouchesTheRowOfTheTrack) {
    catalogue.sql("DELETE FROM files");
    catalogue.file(11, 1, Catalogue::Music, "first");
    catalogue.file(12, 1, Catalogue::Music, "second");
    play(PLAY_TYPE_CD);
    unit.click(WND_AUDIO_PLAY, ITEM_TO_LIST, BT_STATE_RELEASED);
    unit.advance(50ms);
    open(PLAY_TYPE_CD, {.mediaId = 11, .mediaIds = 2});
    type("2");
    clickPad(GOTO_KEY_OK);
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClick] nPlayType=1,nUiFrom=9,nLine=1").empty());
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(12, 1)));
    EXPECT_EQ(state(), VIEW_STATE_AUDIO_PLAY);
}

struct MainOkCase {
    int type;
    std::string command;
    int state;
};

TEST_F(GotoMain, OkPlaysAFileOfTheFolder) {
    const MainOkCase rows[] = {
        {PLAY_TYPE_MUSIC, PlayTrack(Folder{2}, File{7}, KIND_MUSIC), VIEW_STATE_AUDIO_PLAY},
        {PLAY_TYPE_PHOTO, PlayTrack(Folder{2}, File{7}, KIND_PICTURE), VIEW_STATE_PHOTO_PLAY},
        {PLAY_TYPE_VIDEO, PlayTrack(Folder{2}, File{7}, KIND_VIDEO), VIEW_STATE_VIDEO_PLAY},
    };
    for (const MainOkCase& row : rows) {
        SCOPED_TRACE(row.type);
        open(row.type, {.curMediaId = 3, .curMediaIds = 12, .parentFolder = 2});
        type("7");
        clickPad(GOTO_KEY_OK);
        EXPECT_THAT(unit.commands(), ElementsAre(row.command));
        EXPECT_EQ(state(), row.state);
        EXPECT_EQ(display(), "");
        EXPECT_THAT(unit.main.shown(), testing::Not(testing::Contains(WND_GOTO)));
    }
    EXPECT_EQ(unit.log("[DiscView::OnClickGotoWnd] wParam=0x20007").size(), 3u);
}

TEST_F(GotoMain, ThePlayingFileSendsNothingButCloses) {
    for (const int type : {PLAY_TYPE_MUSIC, PLAY_TYPE_PHOTO, PLAY_TYPE_VIDEO}) {
        open(type, {.curMediaId = 7, .curMediaIds = 12, .parentFolder = 2});
        this->type("7");
        clickPad(GOTO_KEY_OK);
        EXPECT_THAT(unit.commands(), IsEmpty()) << type;
        EXPECT_EQ(display(), "");
        const int before = IsAudioType(type) ? WND_AUDIO_PLAY : WND_VIDEO;
        EXPECT_THAT(unit.main.shown(), ElementsAre(before));
        EXPECT_EQ(unit.main.window(), before);
    }
}

TEST_F(GotoMain, TheMusicPageBehindIsAliveAgain) {
    open(PLAY_TYPE_MUSIC, {.curMediaId = 7, .curMediaIds = 12, .parentFolder = 2});
    unit.key(K_GOTO); // once more over the open pad
    unit.disc.playTime(10, 100);
    type("7");
    clickPad(GOTO_KEY_OK);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ELAPSED).text, "00:10") << "what changed meanwhile";
    unit.disc.playTime(11, 100);
    unit.disc.id3("", "Later", "");
    unit.disc.track({.curMediaId = 8, .curMediaIds = 12, .parentFolder = 2});
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ELAPSED).text, "00:11");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_ARTIST).text, "Later");
    EXPECT_EQ(unit.main.item(WND_AUDIO_PLAY, ITEM_TRACK).text, "8/12");
    forget();
    unit.key(K_Down);
    unit.key(K_Left);
    EXPECT_EQ(unit.commands().size(), 2u);
}

TEST_F(GotoMain, AListBehindIsAliveAgain) {
    open(PLAY_TYPE_MUSIC, {.curMediaId = 7, .curMediaIds = 12, .parentFolder = 2});
    unit.key(K_Return);
    unit.advance(50ms);
    ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
    unit.key(K_GOTO);
    type("7");
    clickPad(GOTO_KEY_OK);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_EQ(state(), VIEW_STATE_MUSIC_LIST);
    unit.advance(9s);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY) << "the way back";
}

TEST_F(GotoMain, AZeroThatReachesTheDisabledKeyIsNoNumber) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    type("0");
    EXPECT_EQ(display(), "0/12");
    EXPECT_EQ(enabledKeys(), "123456789");
    clickPad(GOTO_KEY_OK);
    EXPECT_EQ(unit.main.window(), WND_GOTO);
    EXPECT_THAT(unit.commands(), IsEmpty());
    type("07");
    EXPECT_EQ(display(), "7/12");
}

TEST_F(GotoMain, AFileNumberBeyondSixteenBitsRunsOverIntoTheFolder) {
    open(PLAY_TYPE_MUSIC, {.curMediaId = 3, .curMediaIds = 70000, .parentFolder = 2});
    type("65537");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{3}, File{1}, KIND_MUSIC)));
}

TEST_F(GotoMain, AnInvalidOkKeepsPadAndEntry) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    clickPad(GOTO_KEY_OK);
    EXPECT_EQ(display(), "_/12");
    type("9");
    unit.disc.track({.mediaIds = 5}); // checked against the disc as it is now
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_GOTO);
    EXPECT_EQ(display(), "9/12");
}

TEST_F(GotoMain, WithoutAControllerOkKeepsPadAndEntry) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    type("7");
    clickWithoutController(WND_GOTO, GOTO_KEY_OK);
    EXPECT_EQ(display(), "7/12");
    EXPECT_EQ(unit.main.window(), WND_GOTO);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(GotoMain, DiscVideoHasNoBound) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD}) {
        open(type, {.curMediaIds = 12, .mediaIds = 12, .titles = 12});
        expectNothingCanBeTyped();
    }
}

TEST_F(GotoMain, TheShownBoundStaysWhileDigitsAreCheckedAgainstTheDisc) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    unit.disc.track({.mediaIds = 5});
    type("9");
    EXPECT_EQ(display(), "_/12");
    type("4");
    EXPECT_EQ(display(), "4/12");
}

TEST_F(GotoMain, TheCloseKeyReturnsToTheList) {
    open(PLAY_TYPE_MUSIC, {.curMediaId = 1, .curMediaIds = 12, .mediaIds = 12, .parentFolder = 1});
    type("1");
    forget();
    clickPad(GOTO_KEY_CLOSE);
    EXPECT_EQ(beeps(), 1);
    unit.advance(50ms);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_EQ(state(), VIEW_STATE_MUSIC_LIST);
    unit.advance(7950ms); // back to the play page
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(GotoMain, OpeningClearsTheEntry) {
    open(PLAY_TYPE_CD, {.mediaIds = 12});
    type("1");
    unit.key(K_GOTO);
    EXPECT_EQ(display(), "_/12");
}

} // namespace zm::test
