#include "tests/framework/TestApplication.h"

#include <gmock/gmock.h>

using namespace zm::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/** Shows the play page, and both pages of the overlay if it is to be there. */
class TouchTest : public FrameworkTest {
protected:
    void SetUp() override {
        run();
        app.main.ShowWnd(6, true, 0);
        headUnit.settle();
        app.events.take();
    }
    void showOverlay() {
        app.osd.ShowWnd(1, true, 0);
        app.main.onHandler = [this](const std::string&) { app.main.SetVisible("Disc_osd", true); };
        headUnit.askData({{"t", "key"}, {"code", 20}});
        app.main.onHandler = nullptr;
        app.events.take();
    }
    void step(const char* kind, int x, int y) { headUnit.askData({{"t", kind}, {"x", x}, {"y", y}}); }
};

} // namespace

TEST_F(TouchTest, IsReportedAsPressAndRelease) {
    headUnit.askData({{"t", "touch"}, {"x", 150}, {"y", 160}, {"hold", 0}});
    EXPECT_THAT(app.events.take(), ElementsAre("down 150 160", "click 6 20 0", "up 150 160", "click 6 20 1"));
}

TEST_F(TouchTest, OfEightHundredMillisecondsIsReportedAsHeldAtOnce) {
    headUnit.askData({{"t", "touch"}, {"x", 150}, {"y", 160}, {"hold", 800}});
    EXPECT_THAT(app.events.take(),
                ElementsAre("down 150 160", "click 6 20 0", "click 6 20 4", "up 150 160", "click 6 20 1"));
    headUnit.askData({{"t", "touch"}, {"x", 150}, {"y", 160}, {"hold", 799}});
    EXPECT_THAT(app.events.take(), ElementsAre("down 150 160", "click 6 20 0", "up 150 160", "click 6 20 1"));
}

TEST_F(TouchTest, BesideAllItemsReportsControlZero) {
    headUnit.askData({{"t", "touch"}, {"x", 700}, {"y", 400}});
    EXPECT_THAT(app.events.take(), ElementsAre("down 700 400", "click 6 0 0", "up 700 400", "click 6 0 1"));
}

TEST_F(TouchTest, OnADisabledItemReportsNothing) {
    headUnit.askData({{"t", "touch"}, {"x", 350}, {"y", 150}, {"hold", 900}});
    EXPECT_THAT(app.events.take(), ElementsAre("down 350 150", "up 350 150"));
}

TEST_F(TouchTest, AFingerThatRestsIsReportedAsHeldOnce) {
    step("press", 150, 160);
    headUnit.advance(799);
    EXPECT_THAT(app.events.take(), ElementsAre("down 150 160", "click 6 20 0"));
    headUnit.advance(5000);
    EXPECT_THAT(app.events.take(), ElementsAre("click 6 20 4"));
    step("release", 150, 160);
    EXPECT_THAT(app.events.take(), ElementsAre("up 150 160", "click 6 20 1"));
}

TEST_F(TouchTest, EndsWithoutAReportWhenTheLauncherTellsSomething) {
    step("press", 150, 160);
    app.events.take();
    headUnit.askData({{"t", "app"}, {"status", 1}});
    headUnit.askData({{"t", "app"}, {"status", 0}});
    headUnit.advance(800);
    step("release", 150, 160);
    EXPECT_THAT(app.events.take(), IsEmpty());
}

TEST_F(TouchTest, OfAHeldItemEndsWithAReportWhenTheLauncherTellsSomething) {
    step("press", 150, 160);
    headUnit.advance(800);
    app.events.take();
    headUnit.askData({{"t", "app"}, {"status", 1}});
    EXPECT_THAT(app.events.take(), ElementsAre("click 6 20 1"));
    step("release", 150, 160);
    EXPECT_THAT(app.events.take(), IsEmpty());
}

TEST_F(TouchTest, AFingerThatLeftInTimeIsNotReportedAsHeld) {
    step("press", 150, 160);
    step("release", 150, 160);
    app.events.take();
    headUnit.advance(2000);
    EXPECT_THAT(app.events.take(), IsEmpty());
}

TEST_F(TouchTest, TremblingIsStillResting) {
    step("press", 150, 160);
    step("move", 160, 150);
    app.events.take();
    headUnit.advance(800);
    EXPECT_THAT(app.events.take(), ElementsAre("click 6 20 4"));
}

TEST_F(TouchTest, ADragIsNeverHeldAndClicksTheItemOfThePress) {
    headUnit.askData({{"t", "drag"}, {"x1", 150}, {"y1", 160}, {"x2", 450}, {"y2", 170}});
    EXPECT_THAT(app.events.take(), ElementsAre("down 150 160", "click 6 20 0", "up 450 170", "click 6 20 1"));
    step("press", 150, 160);
    step("move", 450, 160);
    app.events.take();
    headUnit.advance(2000);
    EXPECT_THAT(app.events.take(), IsEmpty());
    step("release", 450, 160);
    EXPECT_THAT(app.events.take(), ElementsAre("up 450 160", "click 6 20 1"));
}

TEST_F(TouchTest, AShownOverlayTakesWhatHitsItsWindows) {
    showOverlay();
    headUnit.askData({{"t", "touch"}, {"x", 150}, {"y", 120}});
    EXPECT_THAT(app.events.take(),
                ElementsAre("osd down 150 120", "osd click 1 40 0", "osd up 150 120", "osd click 1 40 1"));
    headUnit.askData({{"t", "touch"}, {"x", 150}, {"y", 180}});
    EXPECT_THAT(app.events.take(), ElementsAre("down 150 180", "click 6 20 0", "up 150 180", "click 6 20 1"));
}

TEST_F(TouchTest, AnInvisibleOverlayTakesNothing) {
    app.osd.ShowWnd(1, true, 0);
    headUnit.settle();
    app.events.take();
    headUnit.askData({{"t", "touch"}, {"x", 150}, {"y", 120}});
    EXPECT_THAT(app.events.take(), ElementsAre("down 150 120", "click 6 20 0", "up 150 120", "click 6 20 1"));
}

TEST_F(TouchTest, StaysWithTheViewOfThePress) {
    showOverlay();
    step("press", 150, 120);
    step("move", 700, 400);
    step("release", 700, 400);
    EXPECT_THAT(app.events.take(),
                ElementsAre("osd down 150 120", "osd click 1 40 0", "osd up 700 400", "osd click 1 40 1"));
}

TEST_F(TouchTest, APressWhileTheFingerIsDownReplacesTheLostTouch) {
    step("press", 150, 160);
    step("press", 700, 400);
    step("release", 700, 400);
    EXPECT_THAT(app.events.take(), ElementsAre("down 150 160", "click 6 20 0", "down 700 400", "click 6 0 0",
                                               "up 700 400", "click 6 0 1"));
}

TEST_F(TouchTest, AReleaseWithoutAPressIsIgnored) {
    step("release", 150, 160);
    step("move", 150, 160);
    EXPECT_THAT(app.events.take(), IsEmpty());
}

TEST_F(TouchTest, TheHeadUnitHearsWhatTheFingerWasLiftedFrom) {
    const json item = {{"released", {{"view", "main"}, {"window", 6}, {"control", 20}}}};
    EXPECT_EQ(headUnit.askData({{"t", "touch"}, {"x", 150}, {"y", 160}, {"hold", 0}}), item);
    EXPECT_EQ(headUnit.askData({{"t", "press"}, {"x", 150}, {"y", 160}}), json::object());
    EXPECT_EQ(headUnit.askData({{"t", "release"}, {"x", 150}, {"y", 160}}), item);
    EXPECT_EQ(
        headUnit.askData({{"t", "click"}, {"view", "main"}, {"window", 6}, {"control", 20}, {"state", 1}}),
        item);
    EXPECT_EQ(
        headUnit.askData({{"t", "click"}, {"view", "main"}, {"window", 6}, {"control", 20}, {"state", 0}}),
        json::object())
        << "a press";
    EXPECT_EQ(
        headUnit.askData({{"t", "click"}, {"view", "main"}, {"window", 27}, {"control", 20}, {"state", 1}}),
        json::object())
        << "a page that is not shown";
    showOverlay();
    EXPECT_EQ(
        headUnit.askData({{"t", "click"}, {"view", "osd"}, {"window", 1}, {"control", 6}, {"state", 1}}),
        (json{{"released", {{"view", "osd"}, {"window", 1}, {"control", 6}}}}));
}

TEST_F(TouchTest, APageThatWentWhileTheFingerLayOnItWasNotMeant) {
    step("press", 150, 160);
    app.main.onHandler = [this](const std::string&) {
        auto& view = app.main;    // this function ends with the assignment
        view.onHandler = nullptr; // showing a page is a handler's work, too
        view.ShowWnd(1, true, 0);
    };
    headUnit.askData({{"t", "key"}, {"code", 20}});
    app.events.take();
    EXPECT_EQ(headUnit.askData({{"t", "release"}, {"x", 150}, {"y", 160}}), json::object());
    EXPECT_THAT(app.events.take(), ElementsAre("up 150 160"));
}

TEST_F(TouchTest, AHeldFingerIsReportedAsLiftedAlsoFromAPageThatWent) {
    step("press", 150, 160);
    headUnit.advance(800);
    app.main.onHandler = [this](const std::string&) {
        auto& view = app.main; // this function ends with the assignment
        view.onHandler = nullptr;
        view.ShowWnd(1, true, 0);
    };
    headUnit.askData({{"t", "key"}, {"code", 20}});
    app.events.take();
    step("release", 150, 160);
    EXPECT_THAT(app.events.take(), ElementsAre("up 150 160", "click 6 20 1"))
        << "what the holding began ends";
}

TEST_F(TouchTest, ClickCallsTheViewStraight) {
    headUnit.askData({{"t", "click"}, {"view", "main"}, {"window", 27}, {"control", 12345}, {"state", 4}});
    headUnit.askData({{"t", "click"}, {"view", "osd"}, {"window", 1}, {"control", 6}, {"state", 1}});
    EXPECT_THAT(app.events.take(), ElementsAre("click 27 12345 4", "osd click 1 6 1"));
}
