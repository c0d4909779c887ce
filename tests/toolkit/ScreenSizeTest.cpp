// The pages on larger screens than the one that they are written for: laid out anew, as legible and as easy to hit.

#include "LegibilityRules.h"
#include "SceneFixture.h"

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;
using zm::Anchor;
using zm::Rect;
using zm::ScreenFit;
using zm::ScreenSize;

namespace {

constexpr ScreenSize usual;
constexpr ScreenSize wide{1024, 600};
constexpr ScreenSize wider{1280, 720};

TEST(ScreenFit, ChangesNothingOnTheScreenThatPagesAreWrittenFor) {
    for (const Anchor anchor :
         {Anchor::Spread, Anchor::Left, Anchor::Right, Anchor::Center, Anchor::Stretch}) {
        EXPECT_EQ(ScreenFit(usual, usual).place({228, 380, 96, 87}, anchor), (Rect{228, 380, 96, 87}));
    }
}

// 1280 x 720 is 853.3 x 480 at one and a half times the size: 53.3 more, of which 80 pixels are made.
TEST(ScreenFit, PutsWhatTheScreenIsWiderWhereTheAnchorSays) {
    const ScreenFit fit(usual, wider);
    const Rect rect{300, 100, 200, 40};
    EXPECT_EQ(fit.place(rect, Anchor::Left), (Rect{450, 150, 300, 60}));
    EXPECT_EQ(fit.place(rect, Anchor::Right), (Rect{530, 150, 300, 60}));
    EXPECT_EQ(fit.place(rect, Anchor::Center), (Rect{490, 150, 300, 60}));
    EXPECT_EQ(fit.place(rect, Anchor::Stretch), (Rect{450, 150, 380, 60}));
    EXPECT_EQ(fit.place(rect, Anchor::Spread), (Rect{480, 150, 320, 60})) << "its share: 200 of 776";
}

TEST(ScreenFit, KeepsTheMarginsOfAllScreensAndFillsThem) {
    for (const ScreenSize screen : {wide, wider}) {
        const ScreenFit fit(usual, screen);
        const int margin = fit.pixels(12);
        EXPECT_EQ(fit.place({0, 0, 800, 480}, Anchor::Spread), screen.area());
        EXPECT_EQ(fit.place({12, 0, 776, 480}, Anchor::Spread),
                  (Rect{margin, 0, screen.width - 2 * margin, screen.height}));
    }
}

TEST(ScreenFit, LetsNoLineVanishAndNothingAppear) {
    const ScreenFit smaller(usual, {200, 120});
    EXPECT_EQ(smaller.pixels(1), 1);
    EXPECT_EQ(smaller.pixels(0), 0);
}

TEST(ScreenFit, LetsEachLengthOfALookGrow) {
    zm::Resource resource = readResource("DISC");
    zm::Style& style = resource.styles.front();
    style.radius = style.thickness = 8;
    for (zm::Look& look : style.looks) {
        look.borderWidth = 2;
        look.nudge = 4;
    }
    ScreenFit(usual, wider).apply(resource);
    EXPECT_EQ(style.radius, 12);
    EXPECT_EQ(style.thickness, 12);
    for (const zm::Look& look : style.looks) {
        EXPECT_EQ(look.borderWidth, 3);
        EXPECT_EQ(look.nudge, 6);
    }
}

struct Case {
    const char* file;
    ScreenSize screen;
};

class LargerScreen : public testing::TestWithParam<Case> {
protected:
    LargerScreen() { fit.apply(resource); }
    ScreenFit fit{usual, GetParam().screen};
    zm::Resource resource = readResource(GetParam().file);
};

TEST_P(LargerScreen, TouchTargetsGrowWithIt) {
    EXPECT_THAT(touchTargets(resource, fit), IsEmpty());
}

TEST_P(LargerScreen, NothingOverlapsOrLeavesIt) {
    EXPECT_THAT(distances(resource, fit), IsEmpty());
}

TEST_P(LargerScreen, TextsGrowWithIt) {
    EXPECT_THAT(textSizes(resource, fit), IsEmpty());
}

TEST_P(LargerScreen, NoTextIsCutInAnyLanguage) {
    auto fonts = zm::FontBook::open(fontDir);
    ASSERT_TRUE(fonts) << fonts.error();
    EXPECT_THAT(cutTexts(resource, **fonts), IsEmpty());
}

TEST_P(LargerScreen, TallLettersOfAnyScriptStayInTheirPlace) {
    auto fonts = zm::FontBook::open(fontDir);
    ASSERT_TRUE(fonts) << fonts.error();
    EXPECT_THAT(highTexts(resource, **fonts), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Files, LargerScreen,
                         testing::Values(Case{"DISC", wide}, Case{"OVERLAY", wide}, Case{"OTHERS", wide},
                                         Case{"DISC", wider}, Case{"OVERLAY", wider}, Case{"OTHERS", wider}),
                         [](const auto& test) { return test.param.file + test.param.screen.text(); });

TEST(LargerScreenRules, FindWhatDoesNotGrow) {
    const ScreenFit fit(usual, wider);
    EXPECT_THAT(touchTargets(readResource("DISC"), fit), testing::Not(IsEmpty()));
    EXPECT_THAT(distances(readResource("DISC"), fit), testing::Not(IsEmpty()));
    EXPECT_THAT(textSizes(readResource("DISC"), fit), testing::Not(IsEmpty()));
}

/** The player's pages as they are drawn and touched on a larger screen. */
class DrawnOnLarger : public testing::TestWithParam<ScreenSize> {
protected:
    DrawnOnLarger() {
        const ScreenSize& screen = GetParam();
        auto loaded = zm::Scene::load(resourceDir + "DISC.zmrc_device", fontDir, usual.width, usual.height,
                                      recorder, screen);
        EXPECT_TRUE(loaded) << loaded.error();
        scene = std::move(*loaded);
        pixels.resize(static_cast<size_t>(screen.width) * static_cast<size_t>(screen.height) * 4);
    }
    void paint() { scene->paint(pixels.data(), GetParam().width * 4); }

    Recorder recorder;
    std::unique_ptr<zm::Scene> scene;
    std::vector<uint8_t> pixels;
};

TEST_P(DrawnOnLarger, EveryControlIsHitWhereItIsSeen) {
    for (const int window : {1, 6, 10, 20, 24, 25, 27}) {
        for (const char* language : {"en", "ar"}) {
            scene->setLanguage(language);
            scene->showWindow(window, true);
            for (const auto& item : scene->describeSeen()) {
                if (!item.contains("touch") || item.at("kind") == "list") {
                    continue;
                }
                const auto& rect = item.at("rect");
                const int x = rect[0].get<int>() + rect[2].get<int>() / 2;
                const int y = rect[1].get<int>() + rect[3].get<int>() / 2;
                scene->press(x, y);
                scene->release(x, y, 0);
                const std::string name =
                    std::to_string(window) + "/" + std::to_string(item.at("item").get<int>());
                EXPECT_THAT(recorder.take(), ElementsAre(name + ":0", name + ":1")) << language;
            }
            scene->showWindow(window, false);
        }
    }
}

TEST_P(DrawnOnLarger, ThePageFillsTheScreenToItsCorners) {
    scene->showWindow(6, true);
    paint();
    const auto at = [&](int x, int y) {
        return pixels[static_cast<size_t>((y * GetParam().width + x) * 4 + 3)];
    };
    const auto [width, height] = GetParam();
    for (const auto& [x, y] : {std::pair(0, 0), std::pair(width - 1, 0), std::pair(0, height - 1),
                               std::pair(width - 1, height - 1)}) {
        EXPECT_EQ(at(x, y), 255) << x << "," << y;
    }
}

// A finger may stray as far as before, in what the driver sees: a hundredth of the screen's height is no drag.
TEST_P(DrawnOnLarger, AListIsDraggedByTheSameShareOfTheScreen) {
    CUI_BtList* list = nullptr;
    scene->wndMng().GetUIAnalysisObj()->GetItemData(24, 2000, list);
    for (int i = 0; i < 20; ++i) {
        list->InsertItem(i, -1);
    }
    scene->showWindow(24, true);
    const int middle = GetParam().height / 2;
    const int far = ScreenFit(usual, GetParam()).pixels(12);
    const auto drag = [&](int by) {
        scene->press(GetParam().width / 2, middle);
        scene->move(GetParam().width / 2, middle - by, 10);
        scene->release(GetParam().width / 2, middle - by, 1000);
        return recorder.take();
    };
    EXPECT_THAT(drag(far - 1), ElementsAre("24/2000:0", "24/2000:1"));
    EXPECT_THAT(drag(far), testing::Contains(testing::HasSubstr("scroll")));
}

TEST_P(DrawnOnLarger, AnEditedFileIsLaidOutForTheSameScreen) {
    const auto before = scene->describe(6);
    ASSERT_TRUE(scene->reload());
    EXPECT_EQ(scene->describe(6), before);
}

INSTANTIATE_TEST_SUITE_P(, DrawnOnLarger, testing::Values(wide, wider),
                         [](const auto& test) { return test.param.text(); });

} // namespace
