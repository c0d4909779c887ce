// What is on the screen is what the items say, whatever came before: each step compares the picture with one
// drawn anew, these are the ways on which something stayed behind.

#include "tests/views/DrawingView.h"
#include "tests/views/Draws.h"
#include "tests/views/ListView.h"

namespace zm::test {

class Drawing : public DrawingView {
protected:
    void openPopup(int page) {
        unit.click(page, OSD_CTRL_SRC_OPEN, BT_STATE_RELEASED);
        ASSERT_TRUE(unit.main.item(page, OSD_ITEM_SRC_GROUP).visible);
    }
    /** `action` takes the popup of the page away; nothing of it stays. */
    void expectNoTrace(int page, const std::function<void()>& action) {
        const Rect popup = unit.main.item(page, OSD_ITEM_SRC_GROUP).rect;
        action();
        const auto without = cut(popup);
        openPopup(page);
        EXPECT_NE(cut(popup), without);
        action();
        ASSERT_EQ(unit.main.window(), page);
        EXPECT_FALSE(unit.main.item(page, OSD_ITEM_SRC_GROUP).visible);
        EXPECT_EQ(cut(popup), without);
    }
};

TEST_F(Drawing, ANumberFromTheKeyboardLeavesNothingOfTheSourcePopup) {
    play(PLAY_TYPE_MUSIC);
    expectNoTrace(WND_AUDIO_PLAY, [&] { unit.appData("--kb_val=5 --kb_ret=1"); });
}

TEST_F(Drawing, LoadingLeavesNothingOfTheSourcePopup) {
    expectNoTrace(WND_DISC_LOADING, [&] { unit.disc.state(DISC_STATE_LOADING); });
}

TEST_F(Drawing, AListThatIsReadAgainLeavesNothingOfTheSourcePopup) {
    play(PLAY_TYPE_MUSIC);
    openList();
    expectNoTrace(WND_MEDIA_LIST, [&] {
        unit.disc.updateDb(0x10001);
        unit.advance(LIST_WAIT);
    });
    // What is touched is what is seen there: not a source, but the tab behind it.
    unit.clearRequests();
    const Rect radio = unit.main.item(WND_MEDIA_LIST, OSD_CTRL_SRC_RADIO).rect;
    unit.touch(radio.x + radio.w / 2, radio.y + radio.h / 2);
    EXPECT_THAT(unit.requests(), testing::Not(testing::Contains(HasSubstr("QueryLauncher"))));
}

TEST_F(Drawing, OnlyOneTabIsLit) {
    play(PLAY_TYPE_MUSIC); // a disc with music only
    unit.appData("--song=song");
    unit.advance(LIST_WAIT);
    unit.key(K_Up);
    unit.advance(LIST_WAIT);
    unit.touchItem(unit.main, WND_MEDIA_LIST, ITEM_TAB_VIDEO);
    unit.advance(LIST_WAIT);
    const auto like = [&](int lit) {
        unit.onViewThread([&] {
            CUIAnalysis& items = *unit.view().GetUIWndMgrWrapper()->GetUIAnalysisObj();
            for (const int tab : {ITEM_TAB_MUSIC, ITEM_TAB_VIDEO, ITEM_TAB_PHOTO}) {
                items.SetItemState(WND_MEDIA_LIST, tab, tab == lit ? ITEM_STATE_SELECTED : ITEM_STATE_NORMAL);
                items.drawItem(WND_MEDIA_LIST, tab);
            }
        });
        return unit.picture().pixels;
    };
    const auto shown = unit.picture().pixels;
    EXPECT_EQ(shown, like(ITEM_TAB_VIDEO));
    EXPECT_NE(shown, like(ITEM_TAB_MUSIC));
}

TEST_F(Drawing, AnotherTypeOfClipMovesTheLitTabOfAShownList) {
    play(PLAY_TYPE_MUSIC);
    openList();
    const Rect tabs = unit.main.item(WND_MEDIA_LIST, ITEM_TAB_MUSIC).rect;
    const auto lit = cut(tabs);
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_TAB_VIDEO).state, ITEM_STATE_SELECTED);
    EXPECT_NE(cut(tabs), lit);
}

TEST_F(Drawing, ThePauseOfADvdLeavesNothingOfTheSourcePopup) {
    playClip(DVD);
    unit.disc.state(DISC_STATE_STOPPED);
    unit.disc.state(DISC_STATE_PLAYING);
    const Rect popup = item(OSD_ITEM_SRC_GROUP).rect;
    unit.disc.state(DISC_STATE_STOPPED);
    const auto paused = cut(popup);
    unit.disc.state(DISC_STATE_PLAYING);
    press(OSD_CTRL_SRC_OPEN);
    unit.disc.state(DISC_STATE_STOPPED);
    EXPECT_EQ(picture(), 259);
    EXPECT_FALSE(item(OSD_ITEM_SRC_GROUP).visible);
    EXPECT_EQ(cut(popup), paused);
}

TEST_F(Drawing, AnOverlayThatComesBackShowsTheTimeOfNow) {
    unit.time("10:00", 24);
    playClip(VIDEO);
    unit.click(WND_VIDEO, 1);
    ASSERT_TRUE(unit.osd.visible());
    press(OSD_CTRL_RETURN); // withdraws the overlay with its bar
    unit.advance(LIST_WAIT);
    ASSERT_FALSE(unit.osd.visible());
    unit.disc.mediaType(PLAY_TYPE_PHOTO); // another bar gets the time
    unit.time("11:11", 24);
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    unit.advance(8s); // back to the film
    ASSERT_EQ(unit.main.window(), WND_VIDEO);
    unit.click(WND_VIDEO, 1);
    ASSERT_TRUE(unit.osd.visible());
    EXPECT_EQ(text(OSD_ITEM_CLOCK), "11:11");
    const auto clock = cut(item(OSD_ITEM_CLOCK).rect);
    unit.time("10:00", 24);
    EXPECT_NE(cut(item(OSD_ITEM_CLOCK).rect), clock);
    unit.time("11:11", 24);
    EXPECT_EQ(cut(item(OSD_ITEM_CLOCK).rect), clock);
}

TEST_F(Drawing, ABarThatDropsThePadTellsTheOverlay) {
    const auto told = [&] { return unit.log("[DiscOsdView::OnShow] dwWndId=20,bShow=0").size(); };
    playClip(DVD);
    unit.click(WND_VIDEO, 1);
    press(OSD_CTRL_GOTO);
    EXPECT_THAT(unit.osd.shown(), ElementsAre(OSD_WND_DVD, OSD_WND_GOTO));
    const size_t before = told();
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    unit.disc.state(DISC_STATE_STOPPED); // the overlay comes with the bar of a video file
    EXPECT_THAT(unit.osd.shown(), ElementsAre(OSD_WND_VIDEO));
    EXPECT_EQ(told(), before + 1);
    unit.advance(10s); // the overlay goes: the pad is not hidden once more
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_EQ(told(), before + 1);
}

// Where everything is drawn afterwards, the picture does not tell whether an item was drawn by itself.
TEST_F(Drawing, ThePadsDrawWhatTheyChangeAndThenEverything) {
    const auto drawn = [&](int control) {
        takeDraws();
        unit.clickOsd(OSD_WND_GOTO, control, BT_STATE_RELEASED);
        return takeDraws();
    };
    playClip(DVD);
    unit.disc.track({.chapters = 30, .titles = 12});
    press(OSD_CTRL_GOTO);
    EXPECT_THAT(drawn(GOTO_KEY_1), ElementsAre("20/510", "all"));
    EXPECT_THAT(drawn(GOTO_KEY_9), ElementsAre("all")); // beyond the bound: the display stays
    EXPECT_THAT(drawn(GOTO_KEY_BACK), ElementsAre("20/510", "all"));
    EXPECT_THAT(drawn(GOTO_ITEM_MODE), ElementsAre("20/527", "20/510", "all"));
}

TEST_F(Drawing, APageThatIsBeingShownDrawsNoIndicatorByItself) {
    playClip(DVD);
    takeDraws();
    unit.onViewThread([&] {
        unit.osdView().ShowCurWnd(true);
        unit.view().ShowWnd(WND_AUDIO_PLAY, true, 0);
    });
    const auto draws = takeDraws();
    for (const int item :
         {OSD_ITEM_CLOCK, OSD_ITEM_AM, OSD_ITEM_PM, OSD_ITEM_BT, OSD_ITEM_MUTE, OSD_ITEM_TEMP}) {
        EXPECT_THAT(draws, testing::Not(testing::Contains("1/" + std::to_string(item))));
        EXPECT_THAT(draws, testing::Not(testing::Contains("6/" + std::to_string(item))));
    }
}

TEST_F(Drawing, APauseThatIsOverDoesNotTakeLaterPicturesAway) {
    for (const OsdClip& clip : {DVD, VCD, VIDEO}) {
        SCOPED_TRACE(clip.type);
        playClip(clip);
        unit.disc.state(DISC_STATE_STOPPED);
        EXPECT_EQ(picture(), 259);
        unit.disc.state(DISC_STATE_PLAYING);
        EXPECT_EQ(picture(), 0);
        unit.disc.tip(18); // forward, twice as fast
        unit.disc.state(DISC_STATE_FAST_FORWARD);
        EXPECT_EQ(picture(), 256);
    }
}

TEST_F(Drawing, AStateReportBringsTheCounterOfAVideoFileOrPhoto) {
    for (const OsdClip& clip : {VIDEO, PICTURE}) {
        SCOPED_TRACE(clip.type);
        playClip(DVD);
        unit.disc.track({.curMediaId = 3, .curMediaIds = 9, .mediaId = 5, .mediaIds = 11});
        unit.disc.mediaType(clip.type);
        window = clip.window;
        EXPECT_NE(text(OSD_ITEM_TRACK), "3/9");
        unit.disc.state(DISC_STATE_PLAYING);
        EXPECT_EQ(text(OSD_ITEM_TRACK), "3/9");
    }
}

TEST_F(Drawing, EachOverlayWindowRemembersTheLastTouch) {
    playClip(VIDEO);
    for (const int other : {OSD_WND_GOTO, OSD_WND_PICTURE}) {
        SCOPED_TRACE(other);
        forget();
        unit.clickOsd(OSD_WND_VIDEO, OSD_CTRL_NEXT, BT_STATE_HELD);
        unit.clickOsd(other, OSD_CTRL_NEXT, BT_STATE_RELEASED);
        unit.clearCommands();
        unit.clickOsd(OSD_WND_VIDEO, OSD_CTRL_NEXT, BT_STATE_RELEASED);
        EXPECT_THAT(unit.commands(), testing::SizeIs(1)) << "the touch before was no long one";
        unit.clickOsd(other, OSD_CTRL_NEXT, BT_STATE_HELD);
        unit.clearCommands();
        unit.clickOsd(OSD_WND_VIDEO, OSD_CTRL_NEXT, BT_STATE_RELEASED);
        EXPECT_THAT(unit.commands(), IsEmpty()) << "the touch before was a long one";
    }
}

TEST_F(Drawing, LeavingThroughTheOverlayWithdrawsItAsItStands) {
    for (const OsdClip& clip : {VIDEO, PICTURE}) {
        SCOPED_TRACE(clip.type);
        playClip(clip);
        unit.click(WND_VIDEO, 1);
        ASSERT_TRUE(unit.osd.visible());
        const size_t lines = unit.log("[DiscView::SetVisibleOsd]").size();
        press(OSD_CTRL_RETURN);
        EXPECT_FALSE(unit.osd.visible());
        EXPECT_THAT(unit.osd.shown(), ElementsAre(clip.window)) << "the bar is not hidden by itself";
        EXPECT_EQ(unit.log("[DiscView::SetVisibleOsd]").size(), lines);
        unit.advance(LIST_WAIT);
    }
}

} // namespace zm::test
