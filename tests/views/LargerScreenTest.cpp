// The application counts in 800 x 480 pixels; the screen may have more. Touches, the film and pages meet all the same.
#include "tests/support/Decoder.h"
#include "tests/views/MainView.h"

#include <nlohmann/json.hpp>

namespace zm::test {

class LargerScreen : public MainView, public testing::WithParamInterface<ScreenSize> {
protected:
    LargerScreen() : MainView({.screen = GetParam()}) {}
    /** A place of the 800 x 480 pixels that the application knows, touched where it lies on this screen. */
    void touchOwn(int x, int y) {
        unit.touch(x * GetParam().width / SCREEN_WIDTH, y * GetParam().height / SCREEN_HEIGHT);
    }
    const int width = GetParam().width;
    const int height = GetParam().height;
};

TEST_P(LargerScreen, KeysAreHitWhereTheyAreSeen) {
    play(PLAY_TYPE_MUSIC);
    const Rect next = unit.main.item(WND_AUDIO_PLAY, 6524).rect;
    EXPECT_GT(next.x, 476 * height / SCREEN_HEIGHT) << "laid out for this screen";
    unit.touch(next.x + 1, next.y + 1);
    unit.touch(next.x + next.w - 2, next.y + next.h - 2);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip(), NextClip()));
}

TEST_P(LargerScreen, TheFilmsWindowFillsIt) {
    play(PLAY_TYPE_DVD);
    EXPECT_EQ(unit.video().at("rect"), Json({0, 0, width, height}));
    Decoder decoder(unit);
    decoder.showColor(0xFFFF00FF);
    unit.settle();
    const Image picture = unit.picture();
    ASSERT_EQ(picture.width, width);
    ASSERT_EQ(picture.height, height);
    for (const auto& [x, y] : {std::pair(0, 0), std::pair(width - 1, height - 1), std::pair(width / 2, 0)}) {
        EXPECT_EQ(picture.at(x, y)[2], 255) << x << "," << y;
        EXPECT_EQ(picture.at(x, y)[1], 0) << x << "," << y;
    }
}

TEST_P(LargerScreen, ATouchOnADiscMenuCountsAsOnTheUsualScreen) {
    play(PLAY_TYPE_DVD);
    unit.disc.rootMenu(true);
    unit.clearCommands();
    unit.touch(width / 2, height / 2);
    unit.touch(width - 1, height - 1);
    EXPECT_THAT(unit.commands(), ElementsAre(SendTsPos(360, 240), SendTsPos(719, 479)));
}

TEST_P(LargerScreen, TheCornerOfADiscMenuIsAsLargeAShareOfIt) {
    play(PLAY_TYPE_DVD);
    unit.disc.rootMenu(true);
    touchOwn(210, 70);
    touchOwn(190, 90);
    EXPECT_FALSE(unit.osd.visible());
    touchOwn(190, 70);
    EXPECT_TRUE(unit.osd.visible());
}

TEST_P(LargerScreen, TheOverlaysKeysAreHitWhereTheyAreSeen) {
    play(PLAY_TYPE_VIDEO);
    unit.touch(width / 2, height / 2);
    ASSERT_TRUE(unit.osd.visible());
    unit.clearCommands();
    unit.touchItem(unit.osd, 2, 6524);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
}

TEST_P(LargerScreen, ItsLastPixelCanBeTouchedAndNoneBeside) {
    EXPECT_EQ(unit.run({"touch", std::to_string(width - 1), std::to_string(height - 1)}).exit, 0);
    const auto answer = unit.run({"touch", std::to_string(width), "9"});
    EXPECT_EQ(answer.exit, 1);
    EXPECT_THAT(answer.err, HasSubstr("not on the screen, which has " + std::to_string(width) + " x " +
                                      std::to_string(height) + " pixels; the nearest place is " +
                                      std::to_string(width - 1) + " 9"));
}

INSTANTIATE_TEST_SUITE_P(, LargerScreen, testing::Values(ScreenSize{1024, 600}, ScreenSize{1280, 720}),
                         [](const auto& test) { return test.param.text(); });

} // namespace zm::test
