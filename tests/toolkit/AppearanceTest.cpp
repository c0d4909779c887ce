// Pieces of the look that several pages use: veils that fade, chips, the knob of a touched progress bar, the rest of a
// time, what depends on a text, the number beside a list that moves, pages with colours of their own.

#include "SceneFixture.h"

#include "platform/linux/toolkit/FontBook.h"
#include "platform/linux/toolkit/TimeText.h"

#include <pango/pango.h>

#include <set>

using namespace zm::test;

namespace {

class Appearance : public testing::Test {
protected:
    Stage pages{resourceDir + "DISC.zmrc_device"};
    Stage overlay{resourceDir + "OVERLAY.zmrc_device"};

    static int alpha(const Stage& stage, int x, int y) { return static_cast<int>(stage.pixel(x, y) >> 24); }

    /** Where the accent's colour begins and ends on a line of the screen. */
    static std::pair<int, int> accentOn(const Stage& stage, int y) {
        std::pair<int, int> found{width, -1};
        for (int x = 0; x < width; ++x) {
            if (stage.pixel(x, y) == 0xFF5AB8FFu) {
                found = {std::min(found.first, x), std::max(found.second, x)};
            }
        }
        return found;
    }
    void playTime(const wchar_t* elapsed, const wchar_t* total) {
        pages.ui->SetItemText(6, 2067, elapsed);
        pages.ui->SetItemText(6, 2068, total);
        pages.ui->drawItem(6, 2067);
        pages.ui->drawItem(6, 2068);
    }
};

TEST_F(Appearance, veilsFadeIntoThePicture) {
    overlay.scene->showWindow(2, true);
    overlay.paint();
    const int middle = 420; // nothing else is drawn there
    EXPECT_NEAR(alpha(overlay, middle, 302), 2, 2);
    EXPECT_NEAR(alpha(overlay, middle, 316), 0xA0 / 2, 4);
    EXPECT_EQ(alpha(overlay, middle, 331), 0xA0);
    EXPECT_EQ(alpha(overlay, middle, 478), 0xA0);
    EXPECT_EQ(alpha(overlay, middle, 62), 0xA0);
    EXPECT_NEAR(alpha(overlay, middle, 90), 0xA0 * 3 / 2 / 28, 2);
    EXPECT_EQ(alpha(overlay, middle, 200), 0);
}

TEST_F(Appearance, theFilmsBarsAreDarkByDayToo) {
    overlay.scene->showWindow(1, true);
    overlay.paint();
    const auto byNight = overlay.pixels;
    EXPECT_TRUE(overlay.scene->setTheme("day"));
    overlay.paint();
    EXPECT_EQ(overlay.pixels, byNight);
}

TEST_F(Appearance, thePagesHaveTheirColoursWhileTheFilmHasItsOwn) {
    pages.scene->showWindow(6, true);
    for (const auto& [theme, page] :
         {std::pair{"day", 0xFFF4F6F8u}, {"contrast", 0xFF000000u}, {"night", 0xFF0B0F14u}}) {
        EXPECT_TRUE(pages.scene->setTheme(theme));
        pages.paint();
        EXPECT_EQ(pages.pixel(4, 200), page) << theme;
    }
}

TEST_F(Appearance, aCountStandsInAChipOfItsOwn) {
    overlay.scene->showWindow(1, true);
    const zm::Rect box = overlay.rect(1, 2155);
    /** Stretches of the line of state in which something is drawn. */
    const auto chips = [&](const wchar_t* text) {
        overlay.ui->SetItemText(1, 2155, text);
        overlay.ui->drawItem(1, 2155);
        overlay.paint();
        int found = 0;
        bool inside = false;
        for (int x = box.x; x < box.x + box.w; ++x) {
            const bool drawn = alpha(overlay, x, box.y + box.h / 2) > 0;
            found += drawn && !inside ? 1 : 0;
            inside = drawn;
        }
        return found;
    };
    EXPECT_EQ(chips(L"2/4  English"), 2);
    EXPECT_EQ(chips(L"1/3 AC3 5.1 English"), 2);
    EXPECT_EQ(chips(L"2/9"), 1);
    EXPECT_EQ(chips(L"x20"), 1);
    EXPECT_EQ(chips(L"Repeat A/B"), 1);
    EXPECT_EQ(chips(L"1/3 "), 1);
    EXPECT_EQ(chips(L" "), 0);
}

TEST_F(Appearance, aTouchedProgressBarShowsKnobAndTimeUnderTheFinger) {
    pages.ui->ShowItem(6, 20110, false);
    pages.scene->showWindow(6, true);
    playTime(L"00:10", L"03:20");
    pages.paint();
    const auto untouched = pages.pixels;
    const zm::Rect bar = pages.rect(6, 2069);
    const int aboveTheBar = bar.y + 10;
    EXPECT_EQ(accentOn(pages, aboveTheBar).second, -1);

    pages.scene->press(300, bar.y + bar.h - 30);
    pages.paint();
    const auto [left, right] = accentOn(pages, aboveTheBar);
    EXPECT_NEAR((left + right) / 2, 300, 2);

    pages.scene->move(500, bar.y + bar.h - 30, 10);
    pages.paint();
    const auto [nextLeft, nextRight] = accentOn(pages, aboveTheBar);
    EXPECT_NEAR((nextLeft + nextRight) / 2, 500, 2);
    EXPECT_EQ(pages.scene->staleness(pages.pixels.data(), width * 4), "");

    pages.scene->release(500, 300, 20);
    pages.paint();
    EXPECT_EQ(pages.pixels, untouched);
}

TEST_F(Appearance, theRoomForTheTimeUnderTheFingerTakesNoTouch) {
    pages.scene->showWindow(6, true);
    const zm::Rect bar = pages.rect(6, 2069);
    pages.scene->press(400, bar.y + 20);
    pages.scene->release(400, bar.y + 20, 10);
    pages.scene->press(400, bar.y + 41);
    EXPECT_THAT(pages.recorder.take(), testing::ElementsAre("6/0:0", "6/0:1", "6/2069:0"));
}

TEST_F(Appearance, withoutATotalTheKnobHasNoTime) {
    pages.scene->showWindow(6, true);
    pages.paint();
    const zm::Rect bar = pages.rect(6, 2069);
    pages.scene->press(300, bar.y + bar.h - 30);
    pages.paint();
    EXPECT_EQ(accentOn(pages, bar.y + 10).second, -1);
    EXPECT_GT(accentOn(pages, bar.y + bar.h - 30).second, 290);
}

TEST_F(Appearance, theRestOfTheTimeFollowsBothTimes) {
    pages.scene->showWindow(6, true);
    const auto rest = [&] { return pages.item(6, 20111).at("text").get<std::string>(); };
    playTime(L"01:23", L"03:47");
    EXPECT_EQ(rest(), "\u221202:24");
    playTime(L"59:59", L"01:00:00");
    EXPECT_EQ(rest(), "\u221200:01");
    playTime(L"00:00", L"02:00:05");
    EXPECT_EQ(rest(), "\u221202:00:05");
    playTime(L"03:48", L"03:47");
    EXPECT_EQ(rest(), "") << "beyond the end";
    playTime(L"00:10", L"00:00");
    EXPECT_EQ(rest(), "") << "without a total";
    pages.paint();
    EXPECT_EQ(pages.scene->staleness(pages.pixels.data(), width * 4), "");
}

TEST_F(Appearance, timesAreReadAndWritten) {
    EXPECT_EQ(zm::secondsOf("03:47"), 227);
    EXPECT_EQ(zm::secondsOf("88:59:59"), 88 * 3600 + 3599);
    EXPECT_EQ(zm::secondsOf("--/--"), 0);
    EXPECT_EQ(zm::secondsOf(""), 0);
    EXPECT_EQ(zm::timeText(3599), "59:59");
    EXPECT_EQ(zm::timeText(3600), "01:00:00");
    EXPECT_EQ(zm::timeText(-1), "00:00");
}

TEST_F(Appearance, anEmptyListSaysWhatIsMissingAndAFilledOneNothing) {
    pages.scene->showWindow(24, true);
    const auto seen = [&] {
        std::set<int> items;
        for (const int id : {20141, 20142, 20143, 20144, 20145}) {
            if (pages.item(24, id).at("visible").get<bool>()) {
                items.insert(id);
            }
        }
        return items;
    };
    const auto tip = [&](int text) {
        pages.ui->SetItemText(24, 2003, text);
        pages.ui->ShowItem(24, 2003, true);
        pages.ui->drawItem(24, 2003);
        pages.paint();
        EXPECT_EQ(pages.scene->staleness(pages.pixels.data(), width * 4), "");
        return seen();
    };
    EXPECT_EQ(tip(33), std::set({20141})) << "the ring while it is read";
    EXPECT_EQ(tip(71), std::set({20142, 20145}));
    EXPECT_EQ(tip(72), std::set({20143, 20145}));
    EXPECT_EQ(tip(70), std::set({20144, 20145}));
    pages.ui->SetItemText(24, 2003, L"a text of no number");
    pages.ui->drawItem(24, 2003);
    EXPECT_EQ(seen(), std::set<int>());
}

TEST_F(Appearance, aLongListSaysWhereItIsWhileItMoves) {
    pages.fill(*pages.list(24), 40);
    pages.scene->showWindow(24, true);
    pages.paint();
    const zm::Rect rows = pages.rect(24, 2000);
    const int beside = rows.x + rows.w - 60; // where the number stands, and else only the rows' faces
    const auto border = [&] {
        for (int y = rows.y; y < rows.y + rows.h; ++y) {
            if (pages.pixel(beside, y) == 0xFF5AB8FFu) {
                return true;
            }
        }
        return false;
    };
    EXPECT_FALSE(border());
    pages.scene->press(400, 300);
    pages.scene->move(400, 200, 100);
    pages.paint();
    EXPECT_TRUE(border());
    pages.scene->release(400, 200, 1000);
    pages.paint();
    EXPECT_FALSE(border());
    EXPECT_EQ(pages.scene->staleness(pages.pixels.data(), width * 4), "");
}

TEST_F(Appearance, aShortListNeedsNoNumber) {
    pages.fill(*pages.list(24), 12);
    pages.scene->showWindow(24, true);
    pages.paint();
    const zm::Rect rows = pages.rect(24, 2000);
    pages.scene->press(400, 300);
    pages.scene->move(400, 200, 100);
    pages.paint();
    for (int y = rows.y; y < rows.y + rows.h; ++y) {
        ASSERT_NE(pages.pixel(rows.x + rows.w - 60, y), 0xFF5AB8FFu) << y;
    }
}

TEST_F(Appearance, figuresOfTimesAreAllAsWide) {
    auto fonts = zm::FontBook::open(fontDir);
    ASSERT_TRUE(fonts) << fonts.error();
    for (const bool bold : {false, true}) {
        std::set<int> widths;
        for (char figure = '0'; figure <= '9'; ++figure) {
            const zm::LayoutPtr layout = (*fonts)->layout(26, bold, zm::TextDirection::LeftToRight);
            const std::string text(10, figure);
            pango_layout_set_text(layout.get(), text.c_str(), -1);
            int wide = 0;
            pango_layout_get_pixel_size(layout.get(), &wide, nullptr);
            widths.insert(wide);
        }
        EXPECT_EQ(widths.size(), 1u);
    }
}

TEST_F(Appearance, aModeThatIsOnHasABarBelowItsSign) {
    pages.scene->showWindow(6, true);
    for (const auto& [key, off, on] :
         {std::tuple{6504, 161, 53}, {6504, 161, 83}, {6504, 161, 85}, {6503, 94, 165}, {6503, 94, 87}}) {
        const zm::Rect box = pages.rect(6, key);
        const auto bar = [&, key = key](int picture) {
            pages.ui->SetItemIcon(6, key, picture, 2);
            pages.ui->drawItem(6, key);
            pages.paint();
            int most = 0;
            for (int y = box.y + box.h / 2 + 18; y < box.y + box.h; ++y) {
                int run = 0;
                for (int x = box.x; x < box.x + box.w; ++x) {
                    run += pages.pixel(x, y) == 0xFF5AB8FFu ? 1 : 0;
                }
                most = std::max(most, run);
            }
            return most;
        };
        EXPECT_EQ(bar(off), 0) << off;
        EXPECT_GT(bar(on), 24) << on;
    }
}

} // namespace
