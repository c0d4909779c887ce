// What a key of the number pad changes stands on the screen at once, on the pads of both views alike.

#include "tests/views/DrawingView.h"
#include "tests/views/Draws.h"

#include <algorithm>

namespace zm::test {

class GotoDrawing : public DrawingView {
protected:
    using Digit = std::function<void(int key)>;

    void openMain() {
        play(PLAY_TYPE_CD);
        unit.disc.track({.mediaIds = 12});
        unit.key(K_GOTO);
        ASSERT_EQ(unit.main.window(), WND_GOTO);
    }
    void openOverlay(const OsdClip& clip) {
        playClip(clip);
        unit.disc.track({.mediaIds = 12, .chapters = 34, .titles = 12});
        unit.click(WND_VIDEO, 1);
        press(OSD_CTRL_GOTO);
        ASSERT_EQ(unit.osd.window(), OSD_WND_GOTO);
    }
    void clickMain(int key) { unit.click(WND_GOTO, key, BT_STATE_RELEASED); }
    void clickOverlay(int key) { unit.clickOsd(OSD_WND_GOTO, key, BT_STATE_RELEASED); }

    /** An item of the pad is drawn by itself, before the whole pad: it follows the finger at once. */
    static void expectDrawnFirst(std::initializer_list<int> items, const std::function<void()>& action) {
        takeDraws();
        action();
        const auto drawn = takeDraws();
        const auto whole = std::find(drawn.begin(), drawn.end(), "all");
        for (const int id : items) {
            const std::string draw = std::to_string(GOTO_WINDOW) + "/" + std::to_string(id);
            EXPECT_NE(std::find(drawn.begin(), whole, draw), whole) << "item " << id;
        }
        EXPECT_NE(whole, drawn.end());
    }
    /** With a bound of 12 and nothing typed. */
    void expectEntryDrawn(const View& view, const Digit& click) {
        const auto digit = [&] { click(GOTO_KEY_1); };
        const auto back = [&] { click(GOTO_KEY_BACK); };
        expectChange(view, GOTO_WINDOW,
                     {GOTO_ITEM_DISPLAY, GOTO_KEY_0, GOTO_KEY_9, GOTO_KEY_BACK, GOTO_KEY_OK}, digit);
        expectChange(view, GOTO_WINDOW,
                     {GOTO_ITEM_DISPLAY, GOTO_KEY_0, GOTO_KEY_9, GOTO_KEY_BACK, GOTO_KEY_OK}, back);
        expectDrawnFirst({GOTO_ITEM_DISPLAY}, digit);
        expectDrawnFirst({GOTO_ITEM_DISPLAY}, back);
    }
};

TEST_F(GotoDrawing, TheMainViewsPadDrawsItsEntryAndItsKeys) {
    openMain();
    expectEntryDrawn(unit.main, [this](int key) { clickMain(key); });
}

TEST_F(GotoDrawing, TheOverlaysPadDrawsItsEntryAndItsKeys) {
    openOverlay(VCD);
    expectEntryDrawn(unit.osd, [this](int key) { clickOverlay(key); });
}

TEST_F(GotoDrawing, TheSwitchOfADvdsPadDrawsCaptionBoundAndKeys) {
    openOverlay(DVD);
    clickOverlay(GOTO_KEY_1);
    const auto change = [this] { clickOverlay(GOTO_ITEM_MODE); };
    expectChange(unit.osd, GOTO_WINDOW, {GOTO_ITEM_MODE, GOTO_ITEM_DISPLAY, GOTO_KEY_9, GOTO_KEY_OK}, change);
    expectDrawnFirst({GOTO_ITEM_MODE, GOTO_ITEM_DISPLAY}, change);
}

} // namespace zm::test
