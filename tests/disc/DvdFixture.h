#pragma once

#include "tests/disc/DvdDisc.h"
#include "tests/disc/PictureFixture.h"
#include "tests/support/Eventually.h"

namespace zm::test {

inline constexpr Colour menuBlue{0x20, 0x20, 0x60};
inline constexpr Colour cyan{0, 255, 255};
inline constexpr Colour magenta{255, 0, 255};

/** A DVD in the drive of the real service, what is seen and heard of it. */
class Dvd : public testing::Test {
protected:
#ifdef __SANITIZE_THREAD__
    void SetUp() override {
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
    }
#endif
    void play(DvdKind kind) {
        playDisc(dvdImage(kind));
    }
    void playDisc(const std::string& path) {
        m_unit.startService(path);
        m_unit.command(187, 1, 0);
        m_unit.nextState(disc::model::PlayState::Playing);
    }
    /** From here on `published` counts. */
    void watch() {
        m_watched = m_unit.recorder().all().size();
    }
    /** All values of `name` since `watch`, in order. */
    std::vector<std::string> published(const std::string& name) {
        std::vector<std::string> values;
        const auto all = m_unit.recorder().all();
        for (size_t i = m_watched; i < all.size(); ++i) {
            if (all[i].name == name) {
                values.push_back(all[i].value);
            }
        }
        return values;
    }
    /** The next "trackinfo" of that title and chapter. */
    Published nextPlace(int title, int chapter) {
        return m_unit.next("trackinfo", [=](const Published& each) {
            return each.json()["title"] == title && each.json()["chapter"] == chapter;
        });
    }
    Published nextTime(int from, int to) {
        return m_unit.next("playtime", [=](const Published& each) {
            return each.json()["time"] >= from && each.json()["time"] <= to;
        });
    }
    void nextTip(int tip) {
        m_unit.next("msgtip", std::to_string(tip));
    }
    /** The user sees the menu of `Menus` and may choose. */
    void nextMenu() {
        m_unit.next("rootmenu", "true");
        EXPECT_TRUE(m_unit.pictures().waitFor(700, 20, menuBlue));
    }
    /** Touches the middle of button 1, 2 or 3 of `Menus`; the screen counts as 720 wide and 480 high. */
    void touchButton(int number) {
        m_unit.command(188, 220, 33 + 100 * number);
    }
    /** The middle of the picture, or a place on the screen. */
    bool shows(Colour colour, int x = MiddleX, int y = MiddleY) {
        return m_unit.pictures().waitFor(x, y, colour);
    }
    /** A title of `Menus` plays, chosen by its button. */
    void playTitle(int title) {
        play(DvdKind::Menus);
        nextMenu();
        touchButton(title);
        nextPlace(title, 1);
    }

    DiscUnit m_unit;

private:
    size_t m_watched = 0;
};

} // namespace zm::test
