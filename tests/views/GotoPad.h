#pragma once

#include "tests/views/OsdView.h"

namespace zm::test {

/** What the pads of both views do alike. */
class GotoPad : public OsdView {
protected:
    using OsdView::OsdView;

    virtual View& padView() = 0;
    virtual void clickPad(int control) = 0;

    void type(const std::string& digits) {
        for (const char digit : digits) {
            clickPad(key(digit));
        }
    }
    std::string display() { return padView().item(GOTO_WINDOW, GOTO_ITEM_DISPLAY).text; }
    int caption() { return padView().item(GOTO_WINDOW, GOTO_ITEM_MODE).textId; }
    bool enabled(int control) { return padView().item(GOTO_WINDOW, control).enabled; }
    /** The digits that may be typed next, and "<" and "=" for the back and OK keys. */
    std::string enabledKeys() {
        std::string keys;
        for (const char digit : std::string("0123456789")) {
            if (enabled(key(digit))) {
                keys += digit;
            }
        }
        keys += enabled(GOTO_KEY_BACK) ? "<" : "";
        return keys + (enabled(GOTO_KEY_OK) ? "=" : "");
    }

    /** With a bound of 12. */
    void expectEnabling() {
        EXPECT_EQ(enabledKeys(), "123456789");
        type("1");
        EXPECT_EQ(enabledKeys(), "012<=");
        type("2");
        EXPECT_EQ(enabledKeys(), "<=");
        type("1"); // beyond the bound
        EXPECT_EQ(display(), "12/12");
        clickPad(GOTO_KEY_BACK);
        EXPECT_EQ(enabledKeys(), "012<=");
        clickPad(GOTO_KEY_BACK);
        EXPECT_EQ(enabledKeys(), "123456789");
        type("2");
        EXPECT_EQ(enabledKeys(), "<=");
    }

    void expectNothingCanBeTyped() {
        EXPECT_EQ(display(), "_/0");
        EXPECT_EQ(enabledKeys(), "");
        type("5");
        EXPECT_EQ(display(), "_/0");
    }

    /** With a bound of 12345. */
    void expectTyping() {
        type("1029");
        EXPECT_EQ(display(), "1029/12345");
        type("9");
        EXPECT_EQ(display(), "10299/12345");
        type("9");
        EXPECT_EQ(display(), "10299/12345");
        clickPad(GOTO_KEY_BACK);
        EXPECT_EQ(display(), "1029/12345");
        for (int i = 0; i < 6; ++i) {
            clickPad(GOTO_KEY_BACK);
        }
        EXPECT_EQ(display(), "_/12345");
        for (const char digit : std::string("345678")) {
            type({digit});
            EXPECT_EQ(display(), std::string(1, digit) + "/12345");
            clickPad(GOTO_KEY_BACK);
        }
    }

private:
    static int key(char digit) { return digit == '0' ? GOTO_KEY_0 : GOTO_KEY_1 + (digit - '1'); }
};

} // namespace zm::test
