// What fades: pages, popups, bars over the picture, keys that are let go. Looked at by the pixels alone.
#include "SceneFixture.h"

#include <algorithm>

using namespace zm::test;
using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;
using zm::MotionLevel;

namespace {

using Pixels = std::vector<uint8_t>;

class Fades : public testing::Test {
protected:
    Fades() {
        stage.scene->setMotion(MotionLevel::Full);
        overlay.scene->setMotion(MotionLevel::Full);
    }

    Pixels settled(int window) {
        Stage still(resourceDir + "DISC.zmrc_device");
        still.scene->showWindow(window, true);
        still.paint();
        return still.pixels;
    }
    /** Puts a page there and lets it arrive. */
    void begin(int window) {
        stage.scene->showWindow(window, true);
        stage.scene->finishFades();
        stage.paint();
    }
    /** Lets the clock go on by a frame each until all has arrived; gives the milliseconds. */
    int64_t run(
        Stage& moving, const std::function<void()>& look = [] {}) {
        const int64_t start = now;
        while (moving.scene->fading() && now < start + 5000) {
            moving.scene->tick(now);
            moving.paint();
            look();
            now += 16;
        }
        return now - start;
    }
    static size_t seenThrough(const Pixels& pixels) {
        size_t count = 0;
        for (size_t at = 3; at < pixels.size(); at += 4) {
            count += pixels[at] != 255;
        }
        return count;
    }
    /** How far two pictures are apart. */
    static int away(const Pixels& one, const Pixels& other) {
        int64_t sum = 0;
        for (size_t at = 0; at < one.size(); ++at) {
            sum += std::abs(one[at] - other[at]);
        }
        return static_cast<int>(sum / 1000);
    }

    int64_t now = 1000;
    Stage stage{resourceDir + "DISC.zmrc_device"};
    Stage overlay{resourceDir + "OVERLAY.zmrc_device"};
};

TEST_F(Fades, aPageGoesOverToTheNextInAFifthOfASecondQuickestAtFirst) {
    begin(6);
    const Pixels before = stage.pixels;
    const Pixels after = settled(24);
    stage.scene->showWindow(24, true);
    EXPECT_TRUE(stage.scene->fading());
    EXPECT_THAT(stage.paint(), IsEmpty()) << "nothing has changed yet";
    EXPECT_TRUE(stage.pixels == before);
    std::vector<int> left{away(before, after)};
    const int64_t took = run(stage, [&] { left.push_back(away(stage.pixels, after)); });
    EXPECT_GE(took, 150);
    EXPECT_LE(took, 250);
    EXPECT_TRUE(std::is_sorted(left.rbegin(), left.rend()));
    EXPECT_LT(left[4], left[0] / 2) << "more than half is done in four frames";
    EXPECT_TRUE(stage.pixels == after);
    EXPECT_FALSE(stage.scene->fading());
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(Fades, aTouchOfThePageThatComesHitsItWhereItWillBe) {
    begin(6);
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.scene->tick(now);
    stage.paint();
    const Pixels half = stage.pixels;
    stage.recorder.take();
    stage.pressItem(24, 2071);
    EXPECT_THAT(stage.recorder.take(), testing::ElementsAre("24/2071:0"));
    stage.paint();
    stage.scene->release(0, 0, now);
    run(stage);
    EXPECT_TRUE(stage.pixels != half);
    EXPECT_TRUE(stage.pixels == settled(24));
}

TEST_F(Fades, aPageThatComesMeanwhileStartsFromWhatIsSeen) {
    begin(6);
    stage.scene->showWindow(24, true);
    stage.paint();
    for (int frame = 0; frame < 4; ++frame, now += 16) {
        stage.scene->tick(now);
        stage.paint();
    }
    const Pixels seen = stage.pixels;
    stage.scene->showWindow(22, true);
    stage.paint();
    EXPECT_TRUE(stage.pixels == seen);
    run(stage);
    EXPECT_TRUE(stage.pixels == settled(22));
}

TEST_F(Fades, whatIsDrawnMeanwhileIsThereAtTheEnd) {
    begin(24);
    stage.scene->showWindow(6, true);
    stage.paint();
    stage.scene->tick(now);
    stage.paint();
    stage.ui->SetItemText(6, 2065, L"A title");
    stage.ui->drawItem(6, 2065);
    stage.paint();
    EXPECT_EQ(stage.scene->staleness(stage.pixels.data(), width * 4), "");
    run(stage);
    Stage still(resourceDir + "DISC.zmrc_device");
    still.ui->SetItemText(6, 2065, L"A title");
    still.scene->showWindow(6, true);
    still.paint();
    EXPECT_TRUE(stage.pixels == still.pixels);
}

// The film lies below the window: any pixel that is not opaque lets it through.
TEST_F(Fades, noFilmShinesThroughOnTheWayBetweenAnyTwoPages) {
    const std::vector<int> pages = {6, 10, 17, 20, 22, 24, 25, 27};
    const auto covers = [](int page) { return page != 17; };
    for (const int from : pages) {
        for (const int to : pages) {
            if (from == to) {
                continue;
            }
            begin(from);
            stage.scene->showWindow(to, true);
            stage.paint();
            if (!covers(from)) {
                EXPECT_EQ(seenThrough(stage.pixels), 0u) << "the parking page in place of the film, at once";
            }
            run(stage, [&] {
                if (covers(to)) {
                    ASSERT_EQ(seenThrough(stage.pixels), 0u) << from << " to " << to;
                }
            });
            EXPECT_TRUE(stage.pixels == settled(to)) << from << " to " << to;
        }
    }
}

TEST_F(Fades, theParkingPageCoversTheFilmAtOnceAlsoHalfWay) {
    begin(6);
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.scene->tick(now);
    stage.paint();
    stage.scene->showWindow(17, true);
    stage.paint();
    EXPECT_TRUE(stage.pixels == settled(17)) << "nothing of the list is left over the film";
    stage.scene->showWindow(10, true);
    stage.paint();
    EXPECT_TRUE(stage.pixels == settled(10));
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(Fades, aPopupComesAndGoesSoftly) {
    begin(6);
    const Pixels before = stage.pixels;
    for (const bool show : {true, false}) {
        const Pixels start = stage.pixels;
        stage.ui->ShowItem(6, 101, show);
        stage.ui->drawItem(6, 101);
        stage.paint();
        EXPECT_TRUE(stage.pixels == start);
        stage.scene->tick(now);
        stage.paint();
        EXPECT_TRUE(stage.pixels != start);
        const int64_t took = run(stage);
        EXPECT_GE(took, 130);
        EXPECT_LE(took, 250);
        EXPECT_EQ(stage.pixels == before, !show);
    }
}

TEST_F(Fades, aPressedKeyShowsItAtOnceAndLetsGoSoftly) {
    begin(6);
    const Pixels before = stage.pixels;
    stage.pressItem(6, 6523);
    EXPECT_THAT(stage.paint(), SizeIs(1));
    const Pixels pressed = stage.pixels;
    EXPECT_TRUE(pressed != before);
    EXPECT_FALSE(stage.scene->fading());
    stage.scene->release(0, 0, now);
    stage.paint();
    EXPECT_TRUE(stage.pixels == pressed);
    EXPECT_GE(run(stage), 130);
    EXPECT_TRUE(stage.pixels == before);
}

TEST_F(Fades, barsOverThePictureComeSoftlyWithTheirWindow) {
    overlay.scene->setSeen(false);
    overlay.scene->showWindow(2, true);
    overlay.paint();
    const Pixels whole = overlay.pixels;
    overlay.scene->setSeen(true);
    EXPECT_THAT(overlay.paint(), SizeIs(1)) << "the window comes with nothing in it";
    EXPECT_THAT(overlay.pixels, Each(0));
    overlay.scene->tick(now);
    overlay.paint();
    EXPECT_TRUE(overlay.pixels != whole);
    EXPECT_THAT(overlay.pixels, testing::Contains(testing::Ne(0)));
    run(overlay);
    EXPECT_TRUE(overlay.pixels == whole);
}

TEST_F(Fades, whatIsNotSeenDoesNotFade) {
    overlay.scene->setSeen(false);
    overlay.scene->showWindow(2, true);
    overlay.paint();
    overlay.scene->showWindow(1, true);
    EXPECT_FALSE(overlay.scene->fading());
}

TEST_F(Fades, withLessMotionPagesChangeAtOnce) {
    for (const MotionLevel level : {MotionLevel::Reduced, MotionLevel::Off}) {
        begin(6);
        stage.scene->setMotion(level);
        stage.scene->showWindow(24, true);
        stage.paint();
        EXPECT_TRUE(stage.pixels == settled(24));
        EXPECT_EQ(stage.scene->nextTick(), -1);
        stage.scene->setMotion(MotionLevel::Full);
        begin(6);
        stage.scene->showWindow(22, true);
        stage.paint();
        stage.scene->tick(now);
        stage.paint();
        stage.scene->setMotion(level);
        stage.paint();
        EXPECT_TRUE(stage.pixels == settled(22)) << "the car drives off half way";
    }
}

TEST_F(Fades, whatNothingMovesIsAtOnceWhereItLeadsTo) {
    stage.scene->setMotion(MotionLevel::Off);
    stage.scene->showWindow(1, true);
    stage.paint();
    EXPECT_EQ(stage.scene->nextTick(), -1) << "the busy ring stands";
    stage.scene->showWindow(24, true);
    stage.fill(*stage.list(24), 100);
    stage.paint();
    stage.scene->press(300, 300);
    stage.scene->move(300, 280, 1000);
    stage.scene->move(300, 200, 1016);
    stage.scene->release(300, 200, 1020);
    EXPECT_EQ(stage.scene->nextTick(), -1);
    EXPECT_GT(stage.list(24)->GetTopIndex(), 5) << "the list has run on";
    EXPECT_THAT(stage.recorder.take(), testing::Contains(testing::HasSubstr("state 5")));
    overlay.scene->setMotion(MotionLevel::Off);
    overlay.scene->showWindow(2, true);
    overlay.paint();
    EXPECT_TRUE(overlay.ui->TriggerAnimation(2, 4, 4));
    overlay.scene->showWindow(2, false);
    overlay.paint();
    EXPECT_THAT(overlay.pixels, Each(0));
}

TEST_F(Fades, aTouchEndsThem) {
    begin(6);
    stage.scene->showWindow(24, true);
    stage.paint();
    stage.scene->tick(now);
    stage.paint();
    ASSERT_TRUE(stage.scene->fading());
    const zm::Rect title = stage.rect(24, 2071);
    stage.scene->press(title.x + title.w + 2, 2); // beside all keys
    stage.paint();
    EXPECT_TRUE(stage.pixels == settled(24));
    EXPECT_FALSE(stage.scene->fading());
}

TEST_F(Fades, whatIsDrawnBesideThemIsThereAtOnce) {
    begin(6);
    stage.pressItem(6, 6523);
    stage.paint();
    stage.scene->release(0, 0, now);
    stage.paint();
    ASSERT_TRUE(stage.scene->fading());
    stage.ui->SetItemText(6, 2065, L"A title");
    stage.ui->drawItem(6, 2065);
    EXPECT_THAT(stage.paint(), testing::Contains(stage.rect(6, 2065)));
    EXPECT_TRUE(stage.scene->fading());
    Stage still(resourceDir + "DISC.zmrc_device");
    still.ui->SetItemText(6, 2065, L"A title");
    still.scene->showWindow(6, true);
    still.paint();
    const zm::Rect title = stage.rect(6, 2065);
    for (int y = title.y; y < title.y + title.h; ++y) {
        for (int x = title.x; x < title.x + title.w; ++x) {
            ASSERT_EQ(stage.pixel(x, y), still.pixel(x, y)) << x << ", " << y;
        }
    }
}

TEST_F(Fades, onlyGroupsComeAndGoSoftly) {
    begin(6);
    stage.ui->ShowItem(6, 6522, false);
    stage.ui->ShowItem(6, 6523, true);
    stage.ui->drawItem(6, 6522);
    stage.ui->drawItem(6, 6523);
    EXPECT_FALSE(stage.scene->fading()) << "a key";
    stage.ui->ShowItem(6, 101, true);
    stage.ui->drawItem(6, 101);
    run(stage);
    stage.ui->EnableItem(6, 101, false);
    stage.ui->drawItem(6, 101);
    EXPECT_FALSE(stage.scene->fading()) << "a popup that stays";
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

} // namespace
