// What moves only to please: the bars at the row that plays, and titles that are longer than their place.
#include "SceneFixture.h"

#include <set>

using namespace zm::test;
using testing::IsEmpty;
using testing::SizeIs;
using zm::Binding;
using zm::MotionLevel;

namespace {

const Binding discState{"zelmar/disc/status", "discstate", ""};
constexpr int mediaList = 24;
constexpr int playPage = 6;
constexpr int title = 2065;

using Pixels = std::vector<uint8_t>;

class Lively : public testing::Test {
protected:
    void SetUp() override { stage.scene->setMotion(MotionLevel::Full); }

    void listWithPlayingRow(int playing) {
        CUI_BtList& list = *stage.list(mediaList);
        stage.fill(list, 100);
        list.SetItemICon(playing, 143, 4, 2, 1);
        stage.scene->showWindow(mediaList, true);
        stage.scene->finishFades();
        stage.paint();
        standing = stage.pixels;
    }
    void plays(const char* state) { stage.scene->publish(discState, state, nullptr); }
    /** Runs for so long; gives the pictures that were seen. */
    std::set<Pixels> watch(int64_t ms) {
        std::set<Pixels> seen{stage.pixels};
        for (const int64_t end = now + ms; now < end;) {
            const int64_t next = stage.scene->nextTick();
            now = next < 0 ? end : std::max(now + 1, next);
            stage.scene->tick(now);
            stage.paint();
            seen.insert(stage.pixels);
        }
        return seen;
    }
    void showTitle(const wchar_t* text) {
        stage.ui->SetItemText(playPage, title, text);
        stage.scene->showWindow(playPage, true);
        stage.ui->drawItem(playPage, title);
        stage.scene->finishFades();
        stage.paint();
        standing = stage.pixels;
    }

    static constexpr const wchar_t* longTitle =
        L"A title that is so long that no place has ever been wide enough for it";
    Stage stage{resourceDir + "DISC.zmrc_device"};
    Pixels standing;
    int64_t now = 1000;
};

TEST_F(Lively, theBarsOfThePlayingRowMoveWhileItPlays) {
    listWithPlayingRow(2);
    EXPECT_EQ(stage.scene->nextTick(), -1) << "nobody has said that it plays";
    plays("2");
    EXPECT_GT(watch(1000).size(), 10u);
    plays("6");
    watch(100);
    EXPECT_TRUE(stage.pixels == standing) << "paused";
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(Lively, onlyTheMarkIsDrawnAnewForThem) {
    listWithPlayingRow(2);
    plays("2");
    watch(500);
    stage.scene->tick(now += 100);
    const auto areas = stage.paint();
    ASSERT_THAT(areas, SizeIs(1));
    EXPECT_LE(areas[0].w, 40);
    EXPECT_LE(areas[0].h, 40);
}

TEST_F(Lively, barsThatNobodySeesDoNotMove) {
    listWithPlayingRow(80);
    plays("2");
    EXPECT_EQ(stage.scene->nextTick(), -1);
    stage.list(mediaList)->SetTopIndex(78, 1, 0, 0, 0);
    stage.paint();
    EXPECT_GE(stage.scene->nextTick(), 0);
    stage.scene->showWindow(playPage, true);
    stage.scene->finishFades();
    stage.paint();
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(Lively, theyStandWhileTheCarDrivesAndWithoutMotion) {
    listWithPlayingRow(2);
    for (const MotionLevel level : {MotionLevel::Reduced, MotionLevel::Off}) {
        stage.scene->setMotion(MotionLevel::Full);
        plays("2");
        EXPECT_GT(watch(500).size(), 4u);
        stage.scene->setMotion(level);
        stage.paint();
        EXPECT_TRUE(stage.pixels == standing);
        EXPECT_EQ(stage.scene->nextTick(), -1);
    }
}

TEST_F(Lively, theyAreWhatThePagesSay) {
    stage.scene->setLanguage("ar");
    listWithPlayingRow(2);
    plays("2");
    watch(400);
    EXPECT_EQ(stage.scene->staleness(stage.pixels.data(), width * 4), "");
}

TEST_F(Lively, aLongTitleRunsThroughItsPlaceOnce) {
    for (const wchar_t* text :
         {longTitle, L"עברית היא שפה שמית שנכתבת מימין לשמאל ויש בה הרבה מאוד מילים ארוכות"}) {
        showTitle(text);
        EXPECT_GE(stage.scene->nextTick(), 0);
        EXPECT_THAT(watch(1400), SizeIs(1)) << "there is time to read how it begins";
        EXPECT_GT(watch(2000).size(), 50u);
        EXPECT_EQ(stage.scene->staleness(stage.pixels.data(), width * 4), "");
        watch(60000);
        EXPECT_TRUE(stage.pixels == standing);
        EXPECT_EQ(stage.scene->nextTick(), -1);
        stage.scene->showWindow(mediaList, true);
        showTitle(text);
        EXPECT_EQ(stage.scene->nextTick(), -1) << "it has run";
    }
    showTitle(L"Another title that is far longer than what there is room for on this page");
    EXPECT_GE(stage.scene->nextTick(), 0);
}

TEST_F(Lively, aTitleThatFitsStands) {
    showTitle(L"Short");
    EXPECT_EQ(stage.scene->nextTick(), -1);
}

TEST_F(Lively, aRunningTitleStopsWhenTheCarDrivesOffAndDoesNotRunMeanwhile) {
    showTitle(longTitle);
    watch(2500);
    EXPECT_TRUE(stage.pixels != standing);
    stage.scene->setMotion(MotionLevel::Reduced);
    stage.paint();
    EXPECT_TRUE(stage.pixels == standing);
    EXPECT_EQ(stage.scene->nextTick(), -1);
    stage.scene->setMotion(MotionLevel::Full);
    EXPECT_EQ(stage.scene->nextTick(), -1) << "it has had its turn";
}

} // namespace
