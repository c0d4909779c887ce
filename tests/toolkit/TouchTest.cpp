#include "SceneFixture.h"

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Touch : public testing::Test {
protected:
    Stage stage{resourceDir + "DISC.zmrc_device"};
    Stage overlay{resourceDir + "OVERLAY.zmrc_device"};
};

TEST_F(Touch, aClickIsReportedAsPressAndRelease) {
    stage.scene->showWindow(6, true);
    stage.click(6, 6521);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("6/6521:0", "6/6521:1"));
}

TEST_F(Touch, aHeldButtonIsReportedOnceMore) {
    stage.scene->showWindow(6, true);
    stage.pressItem(6, 6524);
    stage.scene->hold();
    stage.scene->release(0, 0, 900);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("6/6524:0", "6/6524:4", "6/6524:1"));
}

TEST_F(Touch, theReleaseBelongsToTheItemOfThePress) {
    stage.scene->showWindow(6, true);
    stage.pressItem(6, 6521);
    stage.scene->move(700, 200, 20);
    stage.scene->release(700, 200, 40);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("6/6521:0", "6/6521:1"));
}

TEST_F(Touch, aTouchBesideAllItemsIsControlZero) {
    stage.scene->showWindow(6, true);
    stage.scene->press(400, 100);
    stage.scene->release(400, 100, 0);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("6/0:0", "6/0:1"));
}

TEST_F(Touch, aDisabledItemSwallowsTheTouch) {
    stage.ui->EnableItem(6, 6521, false);
    stage.scene->showWindow(6, true);
    stage.pressItem(6, 6521);
    stage.scene->hold();
    stage.scene->release(0, 0, 0);
    EXPECT_THAT(stage.recorder.take(), IsEmpty());
}

TEST_F(Touch, aHiddenItemTakesNoTouch) {
    stage.ui->ShowItem(6, 6521, false);
    stage.scene->showWindow(6, true);
    stage.click(6, 6521);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("6/0:0", "6/0:1"));
}

TEST_F(Touch, whatLiesInAHiddenPanelTakesNoTouch) {
    stage.scene->showWindow(1, true);
    stage.click(1, 103);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("1/0:0", "1/0:1"));
    stage.ui->ShowItem(1, 101, true);
    stage.click(1, 103);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("1/103:0", "1/103:1"));
}

TEST_F(Touch, theOpenSourcePopupCoversWhatLiesUnderIt) {
    stage.fill(*stage.list(24), 10);
    stage.scene->showWindow(24, true);
    stage.ui->ShowItem(24, 101, true);
    const zm::Rect popup = stage.rect(24, 101);
    stage.scene->press(popup.x + 4, popup.y + popup.h / 2);
    stage.scene->release(0, 0, 0);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24/0:0", "24/0:1"));
}

TEST_F(Touch, playAndPauseShareTheirPlaceAndTheShownOneIsTouched) {
    stage.scene->showWindow(6, true);
    stage.click(6, 6522);
    stage.ui->ShowItem(6, 6522, false);
    stage.ui->ShowItem(6, 6523, true);
    stage.click(6, 6523);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("6/6522:0", "6/6522:1", "6/6523:0", "6/6523:1"));
}

TEST_F(Touch, theProgressBarReportsItself) {
    stage.scene->showWindow(6, true);
    stage.click(6, 2069);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("6/2069:0", "6/2069:1"));
}

TEST_F(Touch, theTitleOverTheReturnButtonLetsTouchesThrough) {
    stage.scene->showWindow(24, true);
    stage.click(24, 2073);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24/2071:0", "24/2071:1"));
}

TEST_F(Touch, theMediaColumnFoldsAndUnfolds) {
    stage.scene->showWindow(24, true);
    stage.click(24, 503);
    stage.click(24, 500);
    stage.click(24, 5002);
    EXPECT_THAT(stage.recorder.take(),
                ElementsAre("24/503:0", "24/503:1", "24/500:0", "24/500:1", "24/5002:0", "24/5002:1"));
    stage.ui->ShowItem(24, 500, false);
    stage.ui->ShowItem(24, 501, true);
    stage.click(24, 503);
    stage.click(24, 500);
    EXPECT_THAT(stage.recorder.take(), ElementsAre("24/0:0", "24/0:1", "24/5002:0", "24/5002:1"));
}

TEST_F(Touch, theVideoPageTakesEveryTouch) {
    stage.scene->showWindow(17, true);
    for (const auto& [x, y] : {std::pair{0, 0}, {400, 240}, {799, 479}, {30, 30}}) {
        EXPECT_TRUE(stage.scene->hits(x, y));
        stage.scene->press(x, y);
        stage.scene->release(x, y, 0);
    }
    EXPECT_THAT(stage.recorder.take(), testing::Each(testing::StartsWith("17/0:")));
}

TEST_F(Touch, withoutAPageNothingIsHit) {
    EXPECT_FALSE(stage.scene->hits(400, 240));
}

TEST_F(Touch, overlayBarsTakeTouchesAndTheRestPassesThrough) {
    for (const int window : {1, 2, 4, 11}) {
        overlay.scene->showWindow(window, true);
        EXPECT_TRUE(overlay.scene->hits(300, 30)) << window;
        EXPECT_TRUE(overlay.scene->hits(400, 470)) << window;
        EXPECT_FALSE(overlay.scene->hits(400, 200)) << window;
        overlay.ui->ShowItem(window, 2078, true);
        overlay.ui->SetItemText(window, 2155, L"state");
        const zm::Rect state = overlay.rect(window, 2078);
        EXPECT_FALSE(overlay.scene->hits(state.x + 5, state.y + 5)) << window;
        overlay.ui->ShowItem(window, 101, true);
        EXPECT_TRUE(overlay.scene->hits(400, 200)) << window;
        overlay.ui->ShowItem(window, 101, false);
    }
}

TEST_F(Touch, theNumberPadCoversTheBarBelowIt) {
    overlay.scene->showWindow(1, true);
    overlay.scene->showWindow(20, true);
    overlay.click(20, 515);
    overlay.click(20, 527);
    overlay.click(1, 5);
    EXPECT_THAT(overlay.recorder.take(),
                ElementsAre("20/515:0", "20/515:1", "20/527:0", "20/527:1", "1/5:0", "1/5:1"));
}

TEST_F(Touch, aBarTouchedBesideItsControlsIsControlZeroOfThatBar) {
    overlay.scene->showWindow(11, true);
    overlay.scene->press(400, 391);
    overlay.scene->release(400, 391, 0);
    EXPECT_THAT(overlay.recorder.take(), ElementsAre("11/0:0", "11/0:1"));
}

TEST_F(Touch, aPressedButtonLooksPressedAtOnceAndNoLonger) {
    stage.scene->showWindow(6, true);
    stage.paint();
    const auto before = stage.pixels;
    stage.pressItem(6, 6521);
    EXPECT_THAT(stage.paint(), ElementsAre(stage.rect(6, 6521)));
    EXPECT_NE(stage.pixels, before);
    stage.scene->release(0, 0, 0);
    EXPECT_THAT(stage.paint(), ElementsAre(stage.rect(6, 6521)));
    EXPECT_EQ(stage.pixels, before);
}

TEST_F(Touch, aSecondPressWithoutAReleaseEndsTheFirstOneSilently) {
    stage.scene->showWindow(6, true);
    stage.pressItem(6, 6524);
    stage.paint();
    const auto second = stage.pixels;
    stage.pressItem(6, 6521);
    stage.paint();
    EXPECT_NE(stage.pixels, second);
    stage.pressItem(6, 6524);
    stage.paint();
    EXPECT_EQ(stage.pixels, second) << "one key looks pressed at a time";
    EXPECT_THAT(stage.recorder.take(), ElementsAre("6/6524:0", "6/6521:0", "6/6524:0"));
}

TEST_F(Touch, aFingerThatHasLeftDoesNothingMore) {
    stage.fill(*stage.list(24), 20);
    stage.scene->showWindow(24, true);
    const zm::Rect rows = stage.rect(24, 2000);
    stage.scene->press(rows.x + 50, rows.y + 200);
    stage.scene->release(rows.x + 50, rows.y + 200, 10);
    stage.paint();
    stage.recorder.take();
    stage.scene->move(rows.x + 50, rows.y + 150, 20);
    stage.scene->move(rows.x + 50, rows.y + 50, 30);
    stage.scene->hold();
    stage.scene->release(rows.x + 50, rows.y + 50, 40);
    EXPECT_THAT(stage.recorder.take(), IsEmpty());
    EXPECT_THAT(stage.paint(), IsEmpty());
}

} // namespace
