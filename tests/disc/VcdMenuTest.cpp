#include "services/disc/medium/OpenMedium.h"
#include "tests/disc/PictureFixture.h"
#include "tests/disc/VcdImage.h"

#include <gtest/gtest.h>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

constexpr Colour paper{255, 255, 255};

/** A VCD of an authoring program in the drive. */
class VcdMenu : public testing::Test {
protected:
#ifdef __SANITIZE_THREAD__
    void SetUp() override {
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
    }
#endif
    /** Inserts `menu` and waits for its menu. */
    void begin() {
        m_unit.play(vcdImage("menu"));
        EXPECT_TRUE(shows(red));
    }
    bool shows(Colour colour) {
        return m_unit.pictures().waitFor(MiddleX, MiddleY, colour);
    }
    Published nextTrack(int track, int of) {
        return m_unit.next("trackinfo", [=](const Published& each) {
            return each.json()["mediaid"] == track && each.json()["mediaids"] == of;
        });
    }
    void nextTip(int tip) {
        m_unit.next("msgtip", std::to_string(tip));
    }
    void refuses(int command, int first = 0) {
        m_unit.mark();
        m_unit.command(command, first);
        nextTip(1);
    }
    void nextTime(int from, int to) {
        m_unit.next("playtime", [=](const Published& each) {
            return each.json()["time"] >= from && each.json()["time"] <= to;
        });
    }
    /** The films have their places among the tracks, in whatever way they were reached. */
    void greenPlays() {
        nextTrack(1, 2);
        EXPECT_TRUE(shows(green));
    }
    void bluePlays() {
        nextTrack(2, 2);
        EXPECT_TRUE(shows(blue));
    }

    DiscUnit m_unit;
};

} // namespace

TEST_F(VcdMenu, StandsAfterInsertionAndCountsItsChoices) {
    m_unit.startService();
    m_unit.request({{"op", "insert"}, {"path", vcdImage("menu")}});
    m_unit.next("mediatype", "5");
    m_unit.command(187, 1);
    const auto track = nextTrack(0, 4).json();
    EXPECT_EQ(track["curmediaids"], 4);
    EXPECT_TRUE(shows(red));
    for (const auto& time : m_unit.since("playtime")) {
        EXPECT_EQ(nlohmann::json::parse(time)["tracktime"], 0);
    }
}

TEST_F(VcdMenu, ANumberPlaysItsChoice) {
    begin();
    m_unit.command(182, 2);
    bluePlays();
    m_unit.command(21);
    nextTrack(0, 4);
    EXPECT_TRUE(shows(red));
    m_unit.command(182, 1);
    greenPlays();
    nextTime(1, 3);
}

TEST_F(VcdMenu, AChoiceCanLeadIntoAFilm) {
    begin();
    m_unit.command(182, 3);
    greenPlays();
    const auto time = m_unit.next("playtime", [](const Published& each) { return each.json()["time"] > 0; });
    EXPECT_GE(time.json()["time"], 3);
    EXPECT_NEAR(time.json()["tracktime"].get<int>(), 8, 1);
    refuses(1); // that list has no next one
    m_unit.nextState(PlayState::Stopped);
    nextTrack(0, 4);
}

TEST_F(VcdMenu, NumbersThatAreNoChoiceAreNotAvailable) {
    begin();
    for (const int number : {0, 5, 99, -1, 65537}) {
        refuses(182, number);
    }
    EXPECT_TRUE(shows(red));
}

TEST_F(VcdMenu, WithoutANumberItGoesItsOwnWay) {
    begin();
    // The menu waits 6 s, then the green film follows, the blue one, a picture, and the end.
    greenPlays();
    m_unit.command(185, 6);
    bluePlays();
    m_unit.command(185, 6);
    nextTrack(0, 2);
    EXPECT_TRUE(shows(paper));
    m_unit.nextState(PlayState::Stopped);
    m_unit.mark();
    m_unit.command(131);
    nextTrack(0, 4);
    EXPECT_TRUE(shows(red));
}

TEST_F(VcdMenu, PlayTakesTheStandardChoice) {
    begin();
    m_unit.mark();
    m_unit.command(131);
    bluePlays();
}

TEST_F(VcdMenu, NextPreviousAndReturnAreTheLists) {
    begin();
    refuses(2);
    refuses(21);
    m_unit.command(1);
    bluePlays(); // the menu has no next list, so the standard one
    nextTip(3);
    m_unit.command(2);
    greenPlays();
    nextTip(2);
    refuses(2);
    m_unit.command(1);
    bluePlays();
    m_unit.command(21);
    nextTrack(0, 4);
    m_unit.command(182, 1);
    greenPlays();
    m_unit.command(145);
    nextTrack(0, 4);
    EXPECT_TRUE(shows(red));
}

TEST_F(VcdMenu, AMovingMenuGoesOnUntilANumberComes) {
    begin();
    m_unit.command(182, 4);
    nextTrack(0, 5);
    EXPECT_TRUE(shows(yellow));
    std::this_thread::sleep_for(5s); // its film lasts 2 s
    const int before = m_unit.pictures().frames();
    EXPECT_TRUE(m_unit.pictures().waitFrames(before, 10));
    refuses(182, 1);
    m_unit.command(182, 5);
    bluePlays();
}

TEST_F(VcdMenu, AFilmCanBePausedScannedAndStopped) {
    begin();
    refuses(3);
    refuses(185, 2);
    m_unit.command(182, 1);
    greenPlays();
    m_unit.nextState(PlayState::Playing);
    m_unit.command(5);
    m_unit.nextState(PlayState::Paused);
    m_unit.command(5);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(3);
    m_unit.next("playspeed", "2");
    m_unit.command(131);
    m_unit.next("playspeed", "1");
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    m_unit.command(131);
    nextTrack(0, 4);
    for (const int command : {7, 9, 10, 12, 18, 183, 184, 188, 189}) {
        refuses(command, 1);
    }
}

TEST_F(VcdMenu, PlaybackControlIsSwitchedOffAndOn) {
    begin();
    m_unit.command(182, 2);
    bluePlays();
    m_unit.command(19);
    nextTip(30);
    bluePlays(); // goes on
    m_unit.command(182, 1);
    greenPlays();
    m_unit.command(2);
    bluePlays(); // as on any disc, round it
    m_unit.command(19);
    nextTip(29);
    nextTrack(0, 4);
    EXPECT_TRUE(shows(red));
}

TEST_F(VcdMenu, ADiscGoesOnWhereItWasLeft) {
    begin();
    m_unit.command(182, 2);
    bluePlays();
    nextTime(3, 5);
    m_unit.command(13);
    m_unit.next("disc", "0");
    m_unit.mark();
    m_unit.request({{"op", "insert"}, {"path", vcdImage("menu")}});
    bluePlays();
    nextTime(2, 6);
    m_unit.command(21);
    nextTrack(0, 4);
}

TEST_F(VcdMenu, ADiscWithoutTablesHasNoMenu) {
    m_unit.play(vcdImage("plain"));
    EXPECT_TRUE(shows(green));
    m_unit.command(1);
    bluePlays();
    refuses(21);
    m_unit.command(1);
    greenPlays();
}

TEST_F(VcdMenu, ASuperVideoCdHasOneToo) {
    m_unit.play(vcdImage("super"));
    EXPECT_TRUE(shows(red));
    m_unit.command(182, 2);
    bluePlays();
    const auto time = m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 1; });
    EXPECT_NEAR(time.json()["tracktime"].get<int>(), 8, 1);
    m_unit.command(2);
    greenPlays();
    m_unit.command(21);
    nextTrack(0, 2);
    EXPECT_TRUE(shows(red));
}
