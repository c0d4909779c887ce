// What a finger on the screen does: presses, holds, drags and releases through the hit test of the toolkit.
#include "tests/views/FolderView.h"
#include "tests/views/OsdView.h"

#include <nlohmann/json.hpp>

namespace zm::test {

namespace {

constexpr Rect SCREEN = {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
constexpr int FIRST_OF_POPUP = OSD_CTRL_SRC_CLOSE;
constexpr int LAST_OF_POPUP = OSD_CTRL_SRC_AIRCOND;
constexpr int BESIDE_ALL = 0;
constexpr auto LONG_TOUCH = 800ms;

std::string clickLine(const char* view, int window, int control, int state) {
    return std::string("[") + view + "::OnClick]--nWndId=" + std::to_string(window) +
           ",nCtrlId=" + std::to_string(control) + ",nBtState=" + std::to_string(state);
}

struct Point {
    int x;
    int y;
};

Point middle(const Rect& rect) {
    return {rect.x + rect.w / 2, rect.y + rect.h / 2};
}

} // namespace

class ScreenTouch : public FolderView {
protected:
    void showPage(int window) {
        unit.onViewThread([&] { unit.view().ShowWnd(window, true, 0); });
        unit.settle();
    }
    /** Buttons that can be pressed now; those of the source popup are another matter. */
    std::vector<int> buttons(const View& view, int window) {
        std::vector<int> ids;
        const Json items = view.describe().at("windows").at(std::to_string(window)).at("items");
        for (const auto& [id, item] : items.items()) {
            const int number = std::stoi(id);
            if (item.at("kind") == "button" && item.at("visible") && item.at("enabled") &&
                (number < FIRST_OF_POPUP || number > LAST_OF_POPUP)) {
                ids.push_back(number);
            }
        }
        return ids;
    }
    Point at(const View& view, int window, int item) { return middle(view.item(window, item).rect); }
    void step(const char* kind, Point point) {
        unit.act({kind, std::to_string(point.x), std::to_string(point.y)});
    }
    std::vector<std::string> clicksSince(size_t begin) {
        std::vector<std::string> clicks;
        const auto lines = unit.log();
        for (size_t i = begin; i < lines.size(); ++i) {
            if (const auto found = lines[i].find("OnClick]--"); found != std::string::npos) {
                clicks.push_back(lines[i].substr(lines[i].rfind('[', found)));
            }
        }
        return clicks;
    }
    size_t linesLogged() { return unit.log().size(); }
    /** The middle of row `row` (from 0) of those that are in view. */
    Point rowInView(int page, int row) {
        const Rect list = unit.main.item(page, ITEM_LIST).rect;
        return {list.x + list.w / 2, list.y + rowHeight * row + rowHeight / 2};
    }
    void showOverlay() {
        unit.touch(400, 240);
        ASSERT_TRUE(unit.osd.visible());
        forget();
    }

    static constexpr int rowHeight = 40; ///< less than that of a real row, so that row 0 is always the first
};

TEST_F(ScreenTouch, EveryButtonOfEveryMainPageIsReportedPressedAndReleased) {
    play(PLAY_TYPE_MUSIC);
    for (const int window : {WND_DISC_LOADING, WND_AUDIO_PLAY, WND_PARKING, WND_GOTO, WND_DISC_ERROR,
                             WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        showPage(window);
        const auto all = buttons(unit.main, window);
        EXPECT_FALSE(all.empty()) << window;
        for (const int button : all) {
            SCOPED_TRACE(std::to_string(button) + " on " + std::to_string(window));
            showPage(window);
            const Item now = unit.main.item(window, button);
            if (!now.visible || !now.enabled) {
                continue; // an earlier touch has changed it
            }
            // Back to what plays is there together with its title only; its key for the number pad lies over the other.
            const bool ofFoot = button == ITEM_TYPE_ICON || button == ITEM_GOTO;
            const bool there = !ofFoot || unit.main.item(window, ITEM_TO_PLAYING).visible;
            const int hit = there ? button : button == ITEM_GOTO ? ITEM_GOTO_PAD : BESIDE_ALL;
            // While there is a title, the upper key takes the touch.
            const bool below = button == ITEM_GOTO_PAD && unit.main.item(window, ITEM_TO_PLAYING).visible;
            const int expected = below ? ITEM_GOTO : hit;
            const auto begin = linesLogged();
            unit.touchItem(unit.main, window, button);
            EXPECT_THAT(clicksSince(begin), ElementsAre(clickLine("DiscView", window, expected, 0),
                                                        clickLine("DiscView", window, expected, 1)));
        }
    }
}

TEST_F(ScreenTouch, EveryButtonOfEveryBarIsReportedPressedAndReleased) {
    for (const OsdClip& clip : EVERY_CLIP) {
        play(clip.type);
        unit.onViewThread([&] { unit.osdView().HideGotoView(); });
        showOverlay();
        for (const int button : buttons(unit.osd, clip.window)) {
            SCOPED_TRACE(std::to_string(button) + " on " + std::to_string(clip.window));
            unit.onViewThread([&] {
                unit.osdView().HideGotoView();
                unit.osdView().ShowCurWnd(true);
            });
            if (!unit.osd.visible()) {
                play(clip.type);
                showOverlay();
            }
            const auto begin = linesLogged();
            unit.touchItem(unit.osd, clip.window, button);
            EXPECT_THAT(clicksSince(begin), ElementsAre(clickLine("DiscOsdView", clip.window, button, 0),
                                                        clickLine("DiscOsdView", clip.window, button, 1)));
        }
        unit.advance(10s);
    }
}

TEST_F(ScreenTouch, TheOpenSourcePopupTakesItsTouchesAndCloses) {
    play(PLAY_TYPE_MUSIC);
    unit.touchItem(unit.main, WND_AUDIO_PLAY, OSD_CTRL_SRC_OPEN);
    ASSERT_TRUE(unit.main.item(WND_AUDIO_PLAY, OSD_ITEM_SRC_GROUP).visible);
    forget();
    for (const int control : {OSD_CTRL_SRC_RADIO, OSD_CTRL_SRC_USB, OSD_CTRL_SRC_BTTEL, OSD_CTRL_SRC_NAVI,
                              OSD_CTRL_SRC_ASR, OSD_CTRL_SRC_AUX, OSD_CTRL_SRC_AIRCOND}) {
        unit.touchItem(unit.main, WND_AUDIO_PLAY, control);
    }
    EXPECT_THAT(applications(), ElementsAre("zmradio null", "zmusb null", "zmbttel null", "zmnavi null",
                                            "zmasr --type=ui", "zmaux1 null", "zmaircond null"));
    unit.touchItem(unit.main, WND_AUDIO_PLAY, OSD_CTRL_SRC_CLOSE);
    EXPECT_FALSE(unit.main.item(WND_AUDIO_PLAY, OSD_ITEM_SRC_GROUP).visible);
    unit.touchItem(unit.main, WND_AUDIO_PLAY, OSD_CTRL_SRC_OPEN);
    unit.advance(5s);
    EXPECT_FALSE(unit.main.item(WND_AUDIO_PLAY, OSD_ITEM_SRC_GROUP).visible) << "by itself";
    EXPECT_THAT(unit.commands(), IsEmpty()) << "nothing behind the popup was touched";
}

TEST_F(ScreenTouch, BesideAllItemsThePageReportsControlZeroWhichDoesNothing) {
    play(PLAY_TYPE_MUSIC);
    for (int y = 2; y < SCREEN.h; y += 20) {
        const auto begin = linesLogged();
        unit.touch(2, y);
        const auto clicks = clicksSince(begin);
        if (clicks == std::vector{clickLine("DiscView", WND_AUDIO_PLAY, BESIDE_ALL, 0),
                                  clickLine("DiscView", WND_AUDIO_PLAY, BESIDE_ALL, 1)}) {
            EXPECT_THAT(unit.commands(), IsEmpty());
            EXPECT_THAT(unit.requests(), IsEmpty());
            return;
        }
        forget();
    }
    FAIL() << "the page has no free place at its left edge";
}

TEST_F(ScreenTouch, ADisabledKeyReportsNothingAtAll) {
    playIn(FOLDER_KINDS[0], 5);
    unit.key(K_GOTO);
    ASSERT_FALSE(unit.main.item(WND_GOTO, GOTO_KEY_0).enabled);
    ASSERT_FALSE(unit.main.item(WND_GOTO, GOTO_KEY_OK).enabled);
    forget();
    const auto begin = linesLogged();
    for (const int key : {GOTO_KEY_0, GOTO_KEY_OK, GOTO_KEY_BACK}) {
        unit.touchItem(unit.main, WND_GOTO, key);
        unit.touchItem(unit.main, WND_GOTO, key, 900ms);
    }
    EXPECT_THAT(clicksSince(begin), IsEmpty());
    EXPECT_THAT(unit.requests(), IsEmpty());
    unit.touchItem(unit.main, WND_GOTO, GOTO_KEY_1 + 6);
    unit.touchItem(unit.main, WND_GOTO, GOTO_KEY_BACK);
    unit.touchItem(unit.main, WND_GOTO, GOTO_KEY_1 + 3);
    EXPECT_EQ(unit.main.item(WND_GOTO, GOTO_ITEM_DISPLAY).text, "4/8");
    unit.touchItem(unit.main, WND_GOTO, GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{5}, File{4}, KIND_MUSIC)));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(ScreenTouch, ARestingFingerSeeksAfterEightHundredMilliseconds) {
    play(PLAY_TYPE_MUSIC);
    const Point next = at(unit.main, WND_AUDIO_PLAY, ITEM_NEXT);
    step("press", next);
    unit.advance(LONG_TOUCH - 1ms);
    EXPECT_THAT(unit.commands(), IsEmpty());
    unit.advance(1ms);
    EXPECT_THAT(unit.commands(), ElementsAre(FastForward()));
    unit.advance(5s);
    step("release", next);
    EXPECT_THAT(unit.commands(), ElementsAre(FastForward())) << "the release does nothing";
    forget();
    unit.touch(next.x, next.y, LONG_TOUCH - 1ms);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
}

TEST_F(ScreenTouch, AnyOtherHeldButtonIsJustClicked) {
    play(PLAY_TYPE_MUSIC);
    unit.touchItem(unit.main, WND_AUDIO_PLAY, ITEM_SHUFFLE, 900ms);
    EXPECT_THAT(unit.commands(), ElementsAre(SetShuffleMode(0)));
    EXPECT_EQ(beeps(), 1);
}

TEST_F(ScreenTouch, ASwipeNeedsMoreThanAHundredPixels) {
    play(PLAY_TYPE_MUSIC);
    struct Case {
        Point from, to;
        std::string command;
    };
    for (const auto& [from, to, command] :
         {Case{{300, 200}, {400, 200}, ""}, Case{{300, 200}, {401, 200}, PreviousClip()},
          Case{{500, 200}, {400, 210}, ""}, Case{{500, 200}, {399, 210}, NextClip()},
          Case{{300, 200}, {600, 380}, ""}, Case{{300, 200}, {600, 379}, PreviousClip()}}) {
        SCOPED_TRACE(to.x - from.x);
        forget();
        unit.drag(from.x, from.y, to.x, to.y);
        std::vector<std::string> swiped = unit.commands();
        EXPECT_EQ(swiped, !command.empty() ? std::vector<std::string>{command} : std::vector<std::string>{});
        forget();
        step("press", from);
        step("move", {(from.x + to.x) / 2, (from.y + to.y) / 2});
        step("release", to);
        EXPECT_EQ(unit.commands(), swiped) << "the same finger in single steps";
    }
}

TEST_F(ScreenTouch, ASwipeThatBeginsOnAButtonClicksItToo) {
    play(PLAY_TYPE_MUSIC);
    const Point list = at(unit.main, WND_AUDIO_PLAY, OSD_CTRL_SRC_OPEN);
    unit.drag(list.x, list.y, list.x + 300, 200);
    EXPECT_TRUE(unit.main.item(WND_AUDIO_PLAY, OSD_ITEM_SRC_GROUP).visible);
    EXPECT_THAT(unit.commands(), ElementsAre(PreviousClip()));
    const Point progress = at(unit.main, WND_AUDIO_PLAY, ITEM_PROGRESS);
    unit.touchItem(unit.main, WND_AUDIO_PLAY, OSD_CTRL_SRC_CLOSE);
    forget();
    unit.drag(progress.x, progress.y, progress.x + 300, 200);
    EXPECT_THAT(unit.commands(), IsEmpty()) << "the progress bar is not swiped";
}

TEST_F(ScreenTouch, ADraggedListScrollsAndATouchPlaysTheRowUnderTheFinger) {
    catalogue.sql("DELETE FROM files");
    catalogue.files(60, Catalogue::Music, "song");
    playIn(FOLDER_KINDS[0], 1, 60);
    unit.touchItem(unit.main, WND_AUDIO_PLAY, ITEM_TO_LIST);
    tick();
    onList(WND_MEDIA_LIST, [](CUI_BtList& rows) { rows.SetTopIndex(0, 1, 0, 0, 0); });
    forget();
    const Rect rows = list().rect;
    unit.drag(rows.x + rows.w / 2, rows.y + rows.h - 20, rows.x + rows.w / 2, rows.y + 20);
    unit.advance(1s);
    const int top = list().top;
    EXPECT_GT(top, 0);
    EXPECT_THAT(unit.commands(), IsEmpty()) << "scrolling plays nothing";
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    const Point row = rowInView(WND_MEDIA_LIST, 0);
    unit.touch(row.x, row.y);
    const auto played = [&](int file) { return PlayTrack(Folder{1}, File{file}, KIND_MUSIC); };
    EXPECT_THAT(unit.commands(), ElementsAre(testing::AnyOf(played(top + 1), played(top + 2))))
        << "a row may be half in view";
}

TEST_F(ScreenTouch, ATouchOnADiscMenuIsScaledToTheMenusWidth) {
    play(PLAY_TYPE_DVD);
    unit.disc.rootMenu(true);
    forget();
    unit.touch(400, 300);
    EXPECT_THAT(unit.commands(), ElementsAre(SendTsPos(360, 300)));
    EXPECT_FALSE(unit.osd.visible());
    unit.touch(150, 60);
    EXPECT_TRUE(unit.osd.visible()) << "the corner brings the overlay";
    forget();
    unit.drag(300, 200, 640, 240);
    EXPECT_THAT(unit.commands(), ElementsAre(SendTsPos(576, 240))) << "the place of the release counts";
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(ScreenTouch, TheOverlayTakesWhatHitsItAndThePageTheRest) {
    play(PLAY_TYPE_VIDEO);
    showOverlay();
    unit.touchItem(unit.osd, OSD_WND_VIDEO, OSD_CTRL_NEXT);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
    EXPECT_TRUE(unit.osd.visible());
    unit.touch(400, 240);
    EXPECT_FALSE(unit.osd.visible());
    forget();
    unit.touchItem(unit.osd, OSD_WND_VIDEO, OSD_CTRL_NEXT); // no longer there: the page is touched
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_TRUE(unit.osd.visible());
}

TEST_F(ScreenTouch, EachTouchOfTheOverlayKeepsItForTenSeconds) {
    play(PLAY_TYPE_VIDEO);
    showOverlay();
    unit.advance(9s);
    unit.touchItem(unit.osd, OSD_WND_VIDEO, OSD_CTRL_NEXT);
    unit.advance(9s);
    EXPECT_TRUE(unit.osd.visible());
    unit.advance(1s);
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(ScreenTouch, TheOverlaysNumberPadLiesOverItsBar) {
    play(PLAY_TYPE_DVD);
    unit.disc.track({.chapter = 1, .chapters = 30, .title = 1, .titles = 12});
    showOverlay();
    unit.touchItem(unit.osd, OSD_WND_DVD, OSD_CTRL_GOTO);
    ASSERT_EQ(unit.osd.window(), OSD_WND_GOTO);
    forget();
    unit.touchItem(unit.osd, OSD_WND_GOTO, GOTO_KEY_1);
    unit.touchItem(unit.osd, OSD_WND_GOTO, GOTO_KEY_1 + 1);
    EXPECT_EQ(unit.osd.item(OSD_WND_GOTO, GOTO_ITEM_DISPLAY).text, "12/12");
    const auto begin = linesLogged();
    unit.touchItem(unit.osd, OSD_WND_GOTO, GOTO_KEY_1 + 2); // disabled by now
    EXPECT_THAT(clicksSince(begin), IsEmpty());
    unit.touchItem(unit.osd, OSD_WND_GOTO, GOTO_KEY_OK);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTitle(12)));
    EXPECT_NE(unit.osd.window(), OSD_WND_GOTO);
}

TEST_F(ScreenTouch, TheParkingPageIsTouchedWhileTheCarMoves) {
    play(PLAY_TYPE_DVD);
    unit.device(DEV_STATUS_PARKING, 0);
    forget();
    unit.touchItem(unit.main, WND_PARKING, PARK_CTRL_HOME);
    EXPECT_THAT(applications(), ElementsAre("zmhome null"));
    unit.touchItem(unit.main, WND_PARKING, PARK_CTRL_CONTINUE);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
}

} // namespace zm::test
