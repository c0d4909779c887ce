#include "tests/disc/DvdFixture.h"

using namespace zm::test;
using namespace std::chrono_literals;

// On the screen a picture of 4:3 lies at 80,0 and is 640 by 480, one of 16:9 at 0,15 and 800 by 450.

namespace {

constexpr Colour navy{0, 0, 128};
constexpr PixelBox middleOfNarrow{240, 120, 320, 240};
constexpr PixelBox middleOfWide{200, 127, 400, 225};

} // namespace

TEST_F(Dvd, AWideStillMenuIsPressedWhereItIsSeen) {
    play(DvdKind::Shapes);
    m_unit.next("rootmenu", "true");
    EXPECT_TRUE(shows(menuBlue, 780, 240));
    EXPECT_TRUE(shows(yellow, 121, 140)) << "the left line of the first button";
    m_unit.command(188, 109, 187); // between the first and the second
    EXPECT_FALSE(m_unit.follows("rootmenu", "false", 500ms));
    m_unit.command(188, 109, 202);
    nextPlace(2, 1);
}

TEST_F(Dvd, AWideFilmThatNarrowScreensCutIsSeenWhole) {
    play(DvdKind::Shapes);
    m_unit.next("rootmenu", "true");
    m_unit.command(188, 200, 234);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(blue, 20));
    EXPECT_TRUE(m_unit.pictures().waitForBox(green, middleOfWide)) << m_unit.pictures().boxOf(green);
}

TEST_F(Dvd, AMenusChoiceOfSoundAndSubtitleHoldsInAFilmOfFewPoints) {
    play(DvdKind::Shapes);
    m_unit.next("rootmenu", "true");
    m_unit.command(188, 200, 140);
    nextPlace(1, 1);
    const auto detail =
        m_unit.next("dvdstate", [](const Published& each) { return each.json()["curaudiomode"] == 2; })
            .json();
    EXPECT_EQ(detail["curaudiolan"], "de");
    EXPECT_EQ(detail["cursubtitlenum"], 81);
    EXPECT_EQ(detail["cursubtitlelan"], "fr");
    EXPECT_TRUE(m_unit.sound().waitForTone(880));
    EXPECT_TRUE(shows(red, 100));
    EXPECT_TRUE(m_unit.pictures().waitForBox(green, middleOfNarrow)) << m_unit.pictures().boxOf(green);
    EXPECT_TRUE(m_unit.pictures().waitForBox(white, {258, 400, 284, 33})) << m_unit.pictures().boxOf(white);
}

TEST_F(Dvd, ASubtitleThatTheFilmInsistsOnIsSeenUnchosen) {
    play(DvdKind::Shapes);
    m_unit.next("rootmenu", "true");
    watch();
    m_unit.command(188, 200, 328);
    nextPlace(3, 1);
    m_unit.next("dvdstate", [](const Published& each) { return each.json()["totalsubtitle"] == 1; });
    EXPECT_TRUE(shows(cyan, 100));
    EXPECT_TRUE(m_unit.pictures().waitForBox(white, {258, 400, 284, 33})) << m_unit.pictures().boxOf(white);
    for (const auto& each : published("dvdstate")) {
        EXPECT_EQ(nlohmann::json::parse(each)["cursubtitlenum"], 0);
    }
}

TEST_F(Dvd, AMenuThatStandsForAWhileGoesOnByItself) {
    play(DvdKind::Stills);
    const auto begin = m_unit.next("rootmenu", "true").when;
    EXPECT_TRUE(shows(navy, 700, 400));
    EXPECT_TRUE(shows(yellow, 177, 160));
    EXPECT_GT(nextPlace(2, 1).when - begin, 2500ms);
    EXPECT_TRUE(shows(yellow, 100));
    EXPECT_TRUE(m_unit.pictures().waitForBox(green, middleOfNarrow)) << m_unit.pictures().boxOf(green);
}

TEST_F(Dvd, AMenuThatStandsForAWhileCanBePressedMeanwhile) {
    play(DvdKind::Stills);
    m_unit.next("rootmenu", "true");
    EXPECT_TRUE(shows(yellow, 177, 160));
    m_unit.command(188, 248, 160);
    nextPlace(1, 1);
    EXPECT_TRUE(shows(red, 100));
    EXPECT_TRUE(m_unit.pictures().waitForBox(green, middleOfNarrow)) << m_unit.pictures().boxOf(green);
}

TEST_F(Dvd, AnInterlacedFilmShowsBothHalvesOfEachPicture) {
    play(DvdKind::Film);
    nextTime(1, 2);
    m_unit.pictures().forgetTimes();
    nextTime(6, 7);
    // Woven there would be 25 in a second.
    EXPECT_GT(m_unit.pictures().times().size(), 4 * 35u);
}
