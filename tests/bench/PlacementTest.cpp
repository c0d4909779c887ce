#include "services/bench/display/Placement.h"

#include <gtest/gtest.h>

namespace zm::bench::display {

TEST(Placement, AWholeMultipleIsExactAndFillsTheWindow) {
    EXPECT_EQ(placeScreen(800, 480), (Placement{{0, 0, 800, 480}, 1, true}));
    EXPECT_EQ(placeScreen(2400, 1440), (Placement{{0, 0, 2400, 1440}, 3, true}));
}

TEST(Placement, OtherWindowsHaveBarsAndTheNextLargerMultiple) {
    EXPECT_EQ(placeScreen(1280, 800), (Placement{{0, 16, 1280, 768}, 2, false}));
    EXPECT_EQ(placeScreen(1000, 480), (Placement{{100, 0, 800, 480}, 1, true}));
    EXPECT_EQ(placeScreen(400, 300), (Placement{{0, 30, 400, 240}, 1, false}));
    EXPECT_EQ(placeScreen(1, 1), (Placement{{0, 0, 1, 1}, 1, false}));
}

TEST(Placement, AWindowWithoutAreaShowsAndTouchesNothing) {
    for (const auto& placement : {placeScreen(0, 480), placeScreen(800, 0), placeScreen(-1, -1)}) {
        EXPECT_TRUE(placement.area.empty());
        EXPECT_EQ(screenPoint(placement, 0, 0, true), std::nullopt);
    }
}

TEST(Placement, APlaceOfTheWindowIsThePixelUnderIt) {
    const auto placement = placeScreen(1600, 1000);
    EXPECT_EQ(screenPoint(placement, 0, 20, false), std::pair(0, 0));
    EXPECT_EQ(screenPoint(placement, 1599.5F, 979.5F, false), std::pair(799, 479));
    EXPECT_EQ(screenPoint(placement, 801, 500, false), std::pair(400, 240));
}

TEST(Placement, BesideTheScreenThereIsNoPixelButTheNearestForAFingerThatIsDown) {
    const auto placement = placeScreen(1600, 1000);
    EXPECT_EQ(screenPoint(placement, 800, 19, false), std::nullopt);
    EXPECT_EQ(screenPoint(placement, 800, 980, false), std::nullopt);
    EXPECT_EQ(screenPoint(placement, 800, 19, true), std::pair(400, 0));
    EXPECT_EQ(screenPoint(placement, 9000, 9000, true), std::pair(799, 479));
    EXPECT_EQ(screenPoint(placement, -5, 500, true), std::pair(0, 240));
}

TEST(Placement, OfALargerScreenIsInItsOwnShapeAndPixels) {
    constexpr ScreenSize screen{1280, 720};
    const auto placement = placeScreen(1280, 800, screen);
    EXPECT_EQ(placement, (Placement{{0, 40, 1280, 720}, 1, true, screen}));
    EXPECT_EQ(screenPoint(placement, 1279.5F, 759.5F, false), std::pair(1279, 719));
    EXPECT_EQ(screenPoint(placement, 9000, 9000, true), std::pair(1279, 719));
    EXPECT_EQ(screenPoint(placement, 640, 39, false), std::nullopt);
}

} // namespace zm::bench::display
