#include "tests/views/GotoPad.h"

namespace zm::test {

class GotoOsd : public GotoPad {
protected:
    using GotoPad::GotoPad;

    void open(const OsdClip& clip, const Track& track) {
        playClip(clip);
        unit.disc.track(track);
        press(OSD_CTRL_GOTO);
        forget();
    }
    View& padView() override { return unit.osd; }
    void clickPad(int control) override { unit.clickOsd(OSD_WND_GOTO, control, BT_STATE_RELEASED); }
};

TEST_F(GotoOsd, OpensForTheTitlesOfADvd) {
    open(DVD, {.mediaIds = 4, .chapters = 30, .titles = 12});
    EXPECT_EQ(unit.osd.window(), OSD_WND_GOTO);
    EXPECT_EQ(display(), "_/12");
    EXPECT_EQ(caption(), 166);
}

TEST_F(GotoOsd, OpensForTheFilesOfAVideoFolder) {
    open(VIDEO, {.curMediaId = 1, .curMediaIds = 12, .mediaIds = 40});
    EXPECT_EQ(display(), "_/12");
    EXPECT_EQ(caption(), 168);
}

TEST_F(GotoOsd, OpensForTheTracksOfAVcd) {
    open(VCD, {.curMediaIds = 40, .mediaId = 1, .mediaIds = 12});
    EXPECT_EQ(display(), "_/12");
    EXPECT_EQ(caption(), 168);
}

TEST_F(GotoOsd, OnlyNumbersWithinTheBoundCanBeTyped) {
    open(VCD, {.mediaIds = 12});
    expectEnabling();
    EXPECT_FALSE(unit.log("[DealInputNum]-[DiscOsdView::DealInputNum] nInputNum=12").empty());
    EXPECT_FALSE(unit.log("[DealInputNum]-[DiscOsdView::DealInputNum] totalNum=12").empty());
}

TEST_F(GotoOsd, WithoutACountNothingCanBeTyped) {
    open(VCD, {});
    expectNothingCanBeTyped();
}

TEST_F(GotoOsd, DigitsAreShownBeforeTheBound) {
    open(VCD, {.mediaIds = 12345});
    expectTyping();
}

TEST_F(GotoOsd, EachKeyBeeps) {
    open(DVD, {.titles = 1});
    for (const int control : {511, 519, 520, 523, 527, 531, 4}) {
        forget();
        clickPad(control);
        EXPECT_EQ(beeps(), 1) << control;
    }
    for (const int control : {510, 521, 522, 3, 5, 103}) {
        forget();
        clickPad(control);
        EXPECT_THAT(unit.requests(), IsEmpty()) << control;
    }
}

TEST_F(GotoOsd, OnlyAReleaseTypes) {
    open(VCD, {.mediaIds = 12});
    for (const int state : {0, 2, 3, 4}) {
        unit.clickOsd(OSD_WND_GOTO, 511, state);
    }
    EXPECT_EQ(display(), "_/12");
}

TEST_F(GotoOsd, OkPlaysATitle) {
    open(DVD, {.chapter = 5, .chapters = 9, .titles = 12});
    type("7");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTitle(7)));
    EXPECT_EQ(display(), "");
    EXPECT_THAT(unit.osd.shown(), testing::Not(testing::Contains(OSD_WND_GOTO)));
    unit.disc.error(32); // the chapter counter stands at 1
    forget();
    unit.disc.state(2);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayChapter(2)));
}

TEST_F(GotoOsd, OkPlaysAChapter) {
    open(DVD, {.chapter = 5, .chapters = 9, .titles = 12});
    clickPad(GOTO_ITEM_MODE);
    type("8");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayChapter(8)));
    unit.disc.error(32); // the chapter counter stands at 8
    forget();
    unit.disc.state(2);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayChapter(9)));
}

TEST_F(GotoOsd, OkPlaysAVcdTrackAlsoTheOneThatPlays) {
    open(VCD, {.curMediaId = 3, .mediaId = 3, .mediaIds = 12});
    type("3");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(3, 0)));
}

TEST_F(GotoOsd, OkPlaysAVideoFileOfTheFolder) {
    open(VIDEO, {.curMediaId = 3, .curMediaIds = 12, .parentFolder = 2});
    type("7");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{2}, File{7}, KIND_VIDEO)));
    EXPECT_FALSE(unit.log("[DiscView::OnClickGotoWnd] wParam=0x20007").empty());
}

TEST_F(GotoOsd, ThePlayingVideoFileSendsNothingButCloses) {
    open(VIDEO, {.curMediaId = 7, .curMediaIds = 12, .parentFolder = 2});
    type("7");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.osd.shown(), testing::Not(testing::Contains(OSD_WND_GOTO)));
}

TEST_F(GotoOsd, AFileNumberBeyondSixteenBitsRunsOverIntoTheFolder) {
    open(VIDEO, {.curMediaId = 1, .curMediaIds = 70000, .parentFolder = 2});
    type("65537");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{3}, File{1}, KIND_VIDEO)));
}

TEST_F(GotoOsd, AnInvalidOkKeepsPadAndEntry) {
    open(VCD, {.mediaIds = 12});
    clickPad(GOTO_KEY_OK);
    EXPECT_EQ(display(), "_/12");
    type("9");
    unit.disc.track({.mediaIds = 5}); // the bound follows the disc
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.osd.window(), OSD_WND_GOTO);
    clickPad(GOTO_KEY_BACK);
    EXPECT_EQ(display(), "_/5");
}

TEST_F(GotoOsd, TheSwitchChangesBetweenTitlesAndChapters) {
    open(DVD, {.chapters = 30, .titles = 12});
    type("1");
    clickPad(GOTO_ITEM_MODE);
    EXPECT_EQ(display(), "_/30");
    EXPECT_EQ(caption(), 167);
    EXPECT_TRUE(enabled(513));
    clickPad(GOTO_ITEM_MODE);
    EXPECT_EQ(display(), "_/12");
    EXPECT_EQ(caption(), 166);
}

TEST_F(GotoOsd, OtherClipsHaveNothingToSwitch) {
    open(VCD, {.mediaIds = 12, .chapters = 30});
    type("1");
    clickPad(GOTO_ITEM_MODE);
    EXPECT_EQ(display(), "1/12");
    EXPECT_EQ(caption(), 168);
}

TEST_F(GotoOsd, ATitleIsPlayedAlsoWhenTheClipHasChangedUnderThePad) {
    open(DVD, {.titles = 12});
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    unit.disc.track({.curMediaId = 1, .curMediaIds = 9, .titles = 12});
    type("7");
    EXPECT_EQ(display(), "7/9");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTitle(7)));
}

TEST_F(GotoOsd, ATrackOfAClipThatIsNowADvdSendsNothingButCloses) {
    open(VCD, {.mediaIds = 12});
    unit.disc.mediaType(PLAY_TYPE_DVD);
    unit.disc.track({.mediaIds = 12, .titles = 9});
    type("7");
    EXPECT_EQ(display(), "7/9");
    clickPad(GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(display(), "");
    EXPECT_THAT(unit.osd.shown(), testing::Not(testing::Contains(OSD_WND_GOTO)));
}

TEST_F(GotoOsd, OpeningAgainStartsWithTitles) {
    open(DVD, {.chapters = 30, .titles = 12});
    clickPad(GOTO_ITEM_MODE);
    clickPad(GOTO_KEY_CLOSE);
    press(OSD_CTRL_GOTO);
    EXPECT_EQ(caption(), 166);
    EXPECT_EQ(display(), "_/12");
}

TEST_F(GotoOsd, TheCloseKeyForgetsTheEntry) {
    open(VCD, {.mediaIds = 12});
    type("1");
    clickPad(GOTO_KEY_CLOSE);
    EXPECT_EQ(display(), "_/12");
    EXPECT_THAT(unit.osd.shown(), testing::Not(testing::Contains(OSD_WND_GOTO)));
}

TEST_F(GotoOsd, TheBoundFollowsTheDiscOnEveryKey) {
    open(VCD, {.mediaIds = 12});
    unit.disc.track({.mediaIds = 345});
    EXPECT_EQ(display(), "_/12");
    clickPad(512);
    EXPECT_EQ(display(), "2/345");
    EXPECT_TRUE(enabled(519));
}

TEST_F(GotoOsd, ThePadGoesWithTheOverlay) {
    open(VCD, {.mediaIds = 12});
    type("1");
    unit.advance(10s);
    EXPECT_THAT(unit.osd.shown(), testing::Not(testing::Contains(OSD_WND_GOTO)));
    EXPECT_EQ(display(), "");
}

TEST_F(GotoOsd, ATouchOnTheVideoClosesThePad) {
    open(VIDEO, {.curMediaIds = 12});
    unit.click(WND_VIDEO, 1, BT_STATE_RELEASED); // shows the overlay
    unit.click(WND_VIDEO, 1, BT_STATE_RELEASED); // hides it with its pad
    EXPECT_THAT(unit.osd.shown(), testing::Not(testing::Contains(OSD_WND_GOTO)));
}

TEST_F(GotoOsd, ClosingAClosedPadDoesNothing) {
    open(VCD, {.mediaIds = 12});
    clickPad(GOTO_KEY_CLOSE);
    unit.onViewThread([&] { unit.osdView().HideGotoView(); });
    EXPECT_EQ(display(), "_/12"); // only a shown pad is emptied
}

/** An overlay that nobody gave a controller. */
class GotoOsdAlone : public GotoOsd {
protected:
    GotoOsdAlone() : GotoOsd(withoutOverlayControl()) {}
};

TEST_F(GotoOsdAlone, OkKeepsPadAndEntry) {
    playClip(VCD);
    unit.disc.track({.mediaIds = 12});
    unit.onViewThread([&] { unit.osdView().ShowGotoView(); });
    type("7");
    EXPECT_EQ(display(), "7/12");
    clickPad(GOTO_KEY_OK);
    EXPECT_EQ(display(), "7/12");
    EXPECT_EQ(unit.osd.window(), OSD_WND_GOTO);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

} // namespace zm::test
