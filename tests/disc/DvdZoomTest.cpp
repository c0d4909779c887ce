#include "tests/disc/DvdFixture.h"

using namespace zm::disc::model;
using namespace zm::test;

namespace {

// In the bar beside a picture of 4:3, where an enlarged one is seen.
constexpr int BarX = 40;

} // namespace

TEST_F(Dvd, IsEnlargedInStepsWhilePlaying) {
    playTitle(1);
    EXPECT_TRUE(shows(red));
    EXPECT_TRUE(shows(black, BarX));
    for (int step = 0; step < 3; ++step) {
        m_unit.command(20);
        EXPECT_TRUE(shows(red, BarX)) << step;
    }
    m_unit.command(20);
    EXPECT_TRUE(shows(black, BarX));
}

TEST_F(Dvd, StaysEnlargedInTheNextChapterAndAfterAStop) {
    playTitle(1);
    m_unit.command(20);
    EXPECT_TRUE(shows(red, BarX));
    m_unit.command(183, 3);
    EXPECT_TRUE(shows(blue, BarX));
    m_unit.command(22);
    EXPECT_TRUE(m_unit.pictures().waitCleared());
    m_unit.mark();
    m_unit.command(20);
    nextTip(1); // there is nothing to enlarge
    m_unit.command(131);
    EXPECT_TRUE(shows(blue, BarX));
}

TEST_F(Dvd, IsEnlargedAtOnceWhilePaused) {
    playTitle(1);
    EXPECT_TRUE(shows(red));
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.command(20);
    EXPECT_TRUE(shows(red, BarX));
    for (int step = 1; step < 4; ++step) {
        m_unit.command(20);
    }
    EXPECT_TRUE(shows(black, BarX));
    EXPECT_TRUE(shows(red));
}

TEST_F(Dvd, AnEnlargedStillMenuIsSeenAtOnceAndPressedWhereItIsSeen) {
    play(DvdKind::Menus);
    nextMenu();
    EXPECT_TRUE(shows(yellow, 177, 133));
    m_unit.command(20);
    // The chosen button's left line, one and a half times as far from the middle.
    EXPECT_TRUE(shows(yellow, 65, 80));
    m_unit.command(188, 58, 80);
    nextPlace(1, 1);
    EXPECT_TRUE(shows(red, BarX));
}
