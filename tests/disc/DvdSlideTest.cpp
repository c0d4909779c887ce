#include "tests/disc/DvdFixture.h"
#include "tests/disc/LibraryComplaints.h"

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point time) {
    return std::chrono::duration<double>(Clock::now() - time).count();
}

constexpr double PictureSeconds = 4.8;

/** Pictures that stand while one sound goes on under them. */
class DvdSlides : public Dvd {
protected:
    void playSlides() {
        play(DvdKind::Slides);
        m_unit.next("playtime", [](const Published& each) { return each.json()["tracktime"] == 14; });
        ASSERT_TRUE(shows(red));
    }
    bool hears(int hertz) { return m_unit.sound().waitForTone(hertz); }
};

} // namespace

TEST_F(DvdSlides, PicturesChangeAtTheirTimesUnderASoundWithoutAGap) {
    playSlides();
    ASSERT_TRUE(hears(440));
    m_unit.sound().forget();
    ASSERT_TRUE(shows(green));
    const auto second = Clock::now();
    nextPlace(1, 2);
    EXPECT_LT(secondsSince(second), 0.5) << "number and picture change together";
    EXPECT_EQ(nextTime(4, 5).json()["tracktime"], 14);
    ASSERT_TRUE(shows(blue));
    EXPECT_NEAR(secondsSince(second), PictureSeconds, 0.4);
    EXPECT_EQ(m_unit.sound().tone(), 440);
    EXPECT_LT(m_unit.sound().longestPause(), 60ms);
    nextTime(13, 13);
    EXPECT_TRUE(shows(blue)) << "a picture stands to its end";
    EXPECT_LT(m_unit.sound().longestPause(), 60ms);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(yellow));
    EXPECT_TRUE(hears(660));
    nextPlace(1, 1);
    EXPECT_TRUE(shows(red)) << "it begins anew";
    EXPECT_TRUE(hears(440));
}

TEST_F(DvdSlides, ChaptersArePictures) {
    playSlides();
    m_unit.command(1, 0, 0);
    nextPlace(1, 2);
    EXPECT_TRUE(shows(green));
    m_unit.command(183, 3, 0);
    nextPlace(1, 3);
    EXPECT_TRUE(shows(blue));
    EXPECT_TRUE(hears(440));
    m_unit.command(2, 0, 0);
    nextPlace(1, 2);
    EXPECT_TRUE(shows(green));
    m_unit.command(5, 0, 0);
    m_unit.nextState(PlayState::Paused);
    std::this_thread::sleep_for(500ms);
    m_unit.sound().forget();
    std::this_thread::sleep_for(1s);
    EXPECT_EQ(m_unit.sound().tone(), 0);
    EXPECT_TRUE(shows(green));
    m_unit.command(5, 0, 0);
    m_unit.nextState(PlayState::Playing);
    EXPECT_TRUE(hears(440));
    EXPECT_TRUE(shows(blue));
}

TEST_F(DvdSlides, ASearchForATimeShowsThePictureOfThatTimeAndItsSound) {
    playSlides();
    m_unit.command(185, 7, 0);
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, green, 1500ms));
    const auto time = nextTime(6, 8).json();
    EXPECT_EQ(time["tracktime"], 14);
    EXPECT_TRUE(m_unit.sound().waitForTone(440, 1500ms));
    m_unit.command(185, 12, 0);
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, blue, 1500ms));
    m_unit.command(185, 2, 0);
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, red, 1500ms));
    nextTime(2, 3);
}

TEST_F(DvdSlides, AnotherSoundKeepsPictureAndPlace) {
    playSlides();
    m_unit.command(184, 2, 0);
    nextPlace(2, 1);
    ASSERT_TRUE(shows(yellow));
    nextTime(4, 5);
    m_unit.command(11, 0, 0);
    EXPECT_TRUE(m_unit.sound().waitForTone(880, 1500ms));
    EXPECT_TRUE(shows(yellow));
    nextTime(5, 7);
}

TEST_F(DvdSlides, FastModesShowThePictures) {
    playSlides();
    m_unit.command(3, 0, 0);
    m_unit.nextState(PlayState::Forward);
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, green, 4s));
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, blue, 4s));
    m_unit.command(4, 0, 0);
    m_unit.nextState(PlayState::Backward);
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, green, 4s));
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, red, 4s));
}

TEST_F(DvdSlides, AnotherSoundInTheLastSecondOfATitleIsThatTitles) {
    playSlides();
    m_unit.command(185, 13, 0);
    nextTime(13, 13);
    ASSERT_TRUE(shows(blue));
    m_unit.command(11, 0, 0);
    EXPECT_TRUE(m_unit.sound().waitForTone(550, 1500ms));
    EXPECT_TRUE(shows(blue));
    nextTime(13, 14);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(yellow));
}

TEST_F(DvdSlides, AnotherSoundAtAChaptersEndKeepsTheTime) {
    playSlides();
    m_unit.command(185, 4, 0);
    nextTime(4, 4);
    m_unit.command(11, 0, 0);
    watch();
    EXPECT_TRUE(m_unit.sound().waitForTone(550, 1500ms));
    nextPlace(1, 2);
    EXPECT_TRUE(shows(green));
    for (const auto& time : published("playtime")) {
        EXPECT_GE(nlohmann::json::parse(time)["time"], 4) << "it lay in the next chapter";
    }
}

TEST_F(DvdSlides, APauseAtAnyMomentAfterAJumpCanBeEnded) {
    playSlides();
    for (int i = 0; i < 24; ++i) {
        m_unit.command(183, 1 + i % 3, 0);
        std::this_thread::sleep_for(i * 4ms);
        m_unit.command(130, 0, 0);
        m_unit.nextState(PlayState::Paused);
        std::this_thread::sleep_for(250ms);
        m_unit.command(131, 0, 0);
        m_unit.nextState(PlayState::Playing);
        m_unit.sound().forget();
        ASSERT_TRUE(m_unit.sound().waitForTone(440, 4s)) << "pause " << i << " is not ended";
    }
}

TEST_F(DvdSlides, ManySearchesDoNotUpsetTheLibraries) {
    const LibraryComplaints complaints;
    playSlides();
    for (int i = 0; i < 120; ++i) {
        m_unit.command(185, i * 5 % 14, 0);
        std::this_thread::sleep_for(25ms);
    }
    m_unit.command(185, 7, 0);
    EXPECT_TRUE(shows(green));
    m_unit.stopService();
    EXPECT_EQ(complaints.count(), 0);
}
