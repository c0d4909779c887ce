// Where reading begins on the right, pages stand the other way round.

#include "SceneFixture.h"

using namespace zm::test;

namespace {

class Mirror : public testing::Test {
protected:
    Stage pages{resourceDir + "DISC.zmrc_device"};
    Stage overlay{resourceDir + "OVERLAY.zmrc_device"};

    static zm::Rect otherSide(const zm::Rect& rect) {
        return {width - rect.x - rect.w, rect.y, rect.w, rect.h};
    }
    static bool ink(const Stage& stage, int x, int y) { return stage.pixel(x, y) == 0xFF5AB8FFu; }
};

TEST_F(Mirror, homeBackListAndTimesChangeSidesAndComeBack) {
    for (const auto& [window, item] :
         {std::pair{6, 3}, {10, 4}, {6, 8}, {24, 503}, {24, 2000}, {6, 2067}, {6, 2068}, {6, 6521}}) {
        const zm::Rect before = pages.rect(window, item);
        pages.scene->setLanguage("ar");
        EXPECT_EQ(pages.rect(window, item), otherSide(before)) << window << " " << item;
        pages.scene->setLanguage("ar");
        EXPECT_EQ(pages.rect(window, item), otherSide(before)) << "twice";
        pages.scene->setLanguage("de");
        EXPECT_EQ(pages.rect(window, item), before);
    }
}

TEST_F(Mirror, figuresOfTheNumberPadStayWhereTheyAre) {
    for (int key = 511; key <= 520; ++key) {
        const zm::Rect before = pages.rect(20, key);
        pages.scene->setLanguage("ar");
        EXPECT_EQ(pages.rect(20, key), before);
        pages.scene->setLanguage("en");
    }
}

TEST_F(Mirror, aTouchHitsWhatStandsThere) {
    pages.scene->setLanguage("ar");
    pages.scene->showWindow(6, true);
    pages.click(6, 6521);
    EXPECT_GT(pages.rect(6, 6521).x, pages.rect(6, 6524).x) << "previous stands on the right";
    EXPECT_THAT(pages.recorder.take(), testing::ElementsAre("6/6521:0", "6/6521:1"));
}

TEST_F(Mirror, progressRunsFromTheRight) {
    pages.ui->SetProgressItemPos(6, 2069, 25);
    pages.scene->showWindow(6, true);
    const zm::Rect bar = pages.rect(6, 2069);
    const int y = bar.y + bar.h - 30;
    pages.paint();
    EXPECT_TRUE(ink(pages, bar.x + 40, y));
    EXPECT_FALSE(ink(pages, bar.x + bar.w - 40, y));
    pages.scene->setLanguage("ar");
    pages.paint();
    EXPECT_FALSE(ink(pages, bar.x + 40, y));
    EXPECT_TRUE(ink(pages, bar.x + bar.w - 40, y));
}

TEST_F(Mirror, arrowsPointTheOtherWay) {
    pages.scene->showWindow(10, true);
    pages.ui->ShowItem(10, 3, false);
    pages.ui->ShowItem(10, 4, true);
    const auto picture = [&](const char* language) {
        pages.scene->setLanguage(language);
        pages.scene->invalidate();
        pages.paint();
        const zm::Rect box = pages.rect(10, 4);
        std::vector<uint32_t> pixels;
        for (int y = box.y; y < box.y + box.h; ++y) {
            for (int x = box.x; x < box.x + box.w; ++x) {
                pixels.push_back(pages.pixel(x, y));
            }
        }
        return std::pair(box, pixels);
    };
    const auto [box, left] = picture("en");
    auto right = picture("ar").second;
    EXPECT_NE(left, right);
    for (int row = 0; row < box.h; ++row) {
        std::reverse(right.begin() + static_cast<ptrdiff_t>(row) * box.w,
                     right.begin() + static_cast<ptrdiff_t>(row + 1) * box.w);
    }
    EXPECT_EQ(left, right);
}

TEST_F(Mirror, theStateStandsAtTheRightWithItsCountFirst) {
    overlay.scene->setLanguage("ar");
    overlay.scene->showWindow(1, true);
    overlay.ui->SetItemText(1, 2155, L"2/4  English");
    overlay.ui->drawItem(1, 2155);
    overlay.paint();
    const zm::Rect box = overlay.rect(1, 2155);
    const int y = box.y + box.h / 2;
    EXPECT_GT(overlay.pixel(box.x + box.w - 3, y) >> 24, 0u);
    EXPECT_EQ(overlay.pixel(box.x + 3, y) >> 24, 0u);
    overlay.ui->SetItemText(1, 2155, L"x20");
    overlay.ui->drawItem(1, 2155);
    overlay.paint();
    EXPECT_GT(overlay.pixel(box.x + box.w - 3, y) >> 24, 0u);
    EXPECT_EQ(overlay.pixel(box.x + 3, y) >> 24, 0u);
}

TEST_F(Mirror, whatIsReadAgainStandsOnItsSide) {
    const zm::Rect before = pages.rect(6, 3);
    pages.scene->setLanguage("ar");
    ASSERT_TRUE(pages.scene->reload());
    EXPECT_EQ(pages.rect(6, 3), otherSide(before));
    pages.scene->setLanguage("en");
    EXPECT_EQ(pages.rect(6, 3), before);
}

} // namespace
