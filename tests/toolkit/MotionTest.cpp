#include "SceneFixture.h"

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Motion : public testing::Test {
protected:
    Stage stage{resourceDir + "DISC.zmrc_device"};
    Stage overlay{resourceDir + "OVERLAY.zmrc_device"};
};

TEST_F(Motion, nothingMovesOnAStillPage) {
    stage.scene->showWindow(6, true);
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(Motion, theBusyAnimationTurnsWhileItIsShown) {
    stage.scene->showWindow(1, true);
    stage.paint();
    EXPECT_EQ(stage.scene->nextTick(), 0);
    stage.scene->tick(1000);
    stage.paint();
    const auto first = stage.pixels;
    EXPECT_EQ(stage.scene->nextTick(), 1033);
    stage.scene->tick(1010);
    EXPECT_THAT(stage.paint(), IsEmpty()) << "too early for a step";
    stage.scene->tick(1033);
    EXPECT_THAT(stage.paint(), ElementsAre(stage.rect(1, 7003)));
    EXPECT_NE(stage.pixels, first);
    stage.scene->tick(2200);
    stage.paint();
    EXPECT_EQ(stage.pixels, first) << "one whole turn later";
    stage.ui->ShowItem(1, 7003, false);
    stage.ui->drawItem(1, 7003);
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(Motion, aSmallStepOfTheProgressIsWalked) {
    stage.scene->showWindow(6, true);
    stage.ui->SetProgressItemPos(6, 2069, 40);
    stage.ui->drawItem(6, 2069);
    stage.paint();
    EXPECT_EQ(stage.scene->nextTick(), -1) << "large steps jump";
    stage.ui->SetProgressItemPos(6, 2069, 41);
    EXPECT_EQ(stage.scene->nextTick(), -1) << "not drawn yet";
    stage.ui->drawItem(6, 2069);
    EXPECT_EQ(stage.item(6, 2069)["progress"], 41);
    int frames = 0;
    int64_t now = 0;
    while (stage.scene->nextTick() >= 0 && frames < 1000) {
        now += 33;
        stage.scene->tick(now);
        stage.paint();
        ++frames;
    }
    EXPECT_GT(frames, 3);
    EXPECT_LT(frames, 60);
    const auto walked = stage.pixels;
    Stage jumped(resourceDir + "DISC.zmrc_device");
    jumped.ui->SetProgressItemPos(6, 2069, 41);
    jumped.scene->showWindow(6, true);
    jumped.paint();
    EXPECT_EQ(walked, jumped.pixels);
}

TEST_F(Motion, aHiddenWindowFadesOutAfterItsAnimationAndLeavesNothing) {
    for (const auto& [window, style] : {std::pair{1, 6}, {2, 4}, {4, 4}, {11, 2}}) {
        overlay.scene->showWindow(window, true);
        overlay.paint();
        const auto shown = overlay.pixels;
        EXPECT_TRUE(overlay.ui->TriggerAnimation(window, style, style));
        overlay.scene->showWindow(window, false);
        EXPECT_THAT(overlay.scene->shownWindows(), IsEmpty());
        EXPECT_FALSE(overlay.scene->hits(400, 470)) << "what fades takes no touches";
        overlay.paint();
        EXPECT_EQ(overlay.pixels, shown);
        overlay.scene->tick(1000);
        overlay.scene->tick(1090);
        overlay.paint();
        EXPECT_NE(overlay.pixels, shown);
        EXPECT_THAT(overlay.pixels, testing::Contains(testing::Ne(0)));
        overlay.scene->tick(1200);
        overlay.paint();
        EXPECT_THAT(overlay.pixels, testing::Each(0)) << window;
        EXPECT_EQ(overlay.scene->nextTick(), -1);
    }
}

TEST_F(Motion, showingAFadingWindowAgainShowsItWhole) {
    overlay.scene->showWindow(2, true);
    overlay.paint();
    const auto shown = overlay.pixels;
    overlay.ui->TriggerAnimation(2, 4, 4);
    overlay.scene->showWindow(2, false);
    overlay.scene->tick(1000);
    overlay.scene->tick(1100);
    overlay.paint();
    overlay.scene->showWindow(2, true);
    overlay.paint();
    EXPECT_EQ(overlay.pixels, shown);
    EXPECT_EQ(overlay.scene->nextTick(), -1);
}

TEST_F(Motion, withoutAnAnimationAWindowIsGoneAtOnce) {
    overlay.scene->showWindow(2, true);
    overlay.paint();
    overlay.scene->showWindow(2, false);
    overlay.paint();
    EXPECT_THAT(overlay.pixels, testing::Each(0));
}

TEST_F(Motion, unknownAnimationsAreRefused) {
    EXPECT_FALSE(overlay.ui->TriggerAnimation(1, 3, 3));
    EXPECT_FALSE(overlay.ui->TriggerAnimation(1, 2, 4));
    EXPECT_TRUE(overlay.ui->TriggerAnimation(1, 2, 2));
}

TEST_F(Motion, aProgressThatWalksIsThereOnceNothingMayMove) {
    stage.scene->showWindow(6, true);
    stage.ui->SetProgressItemPos(6, 2069, 2);
    stage.ui->drawItem(6, 2069);
    stage.paint();
    ASSERT_GE(stage.scene->nextTick(), 0);
    stage.scene->setMotion(zm::MotionLevel::Off);
    stage.paint();
    EXPECT_EQ(stage.scene->nextTick(), -1);
    EXPECT_EQ(stage.scene->staleness(stage.pixels.data(), width * 4), "");
    Stage jumped(resourceDir + "DISC.zmrc_device");
    jumped.ui->SetProgressItemPos(6, 2069, 2);
    jumped.scene->showWindow(6, true);
    jumped.paint();
    EXPECT_EQ(stage.pixels, jumped.pixels);
}

} // namespace
