#include "tests/disc/DvdFixture.h"

#include <cstdlib>

using namespace zm::test;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

bool isLike(const Colour& one, const Colour& other) {
    const auto near = [](int a, int b) { return std::abs(a - b) < 60; };
    return near(one.red, other.red) && near(one.green, other.green) && near(one.blue, other.blue);
}

/** The disc whose angles lie in each other, so that one can be left for the other inside a scene. */
class DvdAngles : public Dvd {
protected:
    void begin(int title) {
        play(DvdKind::Angles);
        if (title > 1) {
            m_unit.command(184, title);
        }
        nextPlace(title, 1);
        m_unit.sound().waitForTone(440);
        m_unit.sound().forget();
        watch();
    }
    /** Whether the published times since `watch` go on from second to second up to `end`. */
    testing::AssertionResult timeGoesOn(int end) {
        int last = -1;
        for (const auto& value : published("playtime")) {
            const int time = nlohmann::json::parse(value)["time"];
            if (last >= 0 && (time < last || time > last + 1)) {
                return testing::AssertionFailure() << time << " follows " << last;
            }
            last = time;
        }
        return last >= end ? testing::AssertionSuccess()
                           : testing::AssertionFailure() << "the last time is " << last;
    }
    /** The angles told since `watch`, each once in a row. */
    std::vector<int> angles() {
        std::vector<int> told;
        for (const auto& value : published("dvdstate")) {
            if (const int angle = nlohmann::json::parse(value)["curangle"];
                told.empty() || told.back() != angle) {
                told.push_back(angle);
            }
        }
        return told;
    }
    void expectAngle(int angle, Colour colour) {
        m_unit.command(12);
        const auto asked = Clock::now();
        const auto detail =
            m_unit.next("dvdstate", [=](const Published& each) { return each.json()["curangle"] == angle; })
                .json();
        EXPECT_EQ(detail["totalangle"], 2);
        EXPECT_TRUE(shows(colour)) << "angle " << angle;
        // What was read ahead, and the rest of a unit.
        EXPECT_LT(Clock::now() - asked, 4s);
    }
};

/** Titles 1 and 2, whose angles change without and with a break. */
class DvdAngleTitle : public DvdAngles, public testing::WithParamInterface<int> {};

} // namespace

TEST_P(DvdAngleTitle, AnAngleIsChangedInsideASceneAndTheSoundGoesOn) {
    const int title = GetParam();
    begin(title);
    const auto scene = nextPlace(title, 2).when;
    EXPECT_TRUE(shows(yellow));
    expectAngle(2, magenta);
    nextTime(10, 11);
    expectAngle(1, yellow);
    const auto length = nextPlace(title, 3).when - scene;
    EXPECT_NEAR(std::chrono::duration<double>(length).count(), 14.4, 0.6)
        << "nothing is left out or comes twice";
    EXPECT_TRUE(shows(blue));
    EXPECT_LT(m_unit.sound().longestPause(), 60ms);
    EXPECT_TRUE(timeGoesOn(18));
    EXPECT_EQ(angles(), (std::vector{2, 1})) << "what is on its way does not bring the angle of before back";
}

INSTANTIATE_TEST_SUITE_P(Dvd, DvdAngleTitle, testing::Values(1, 2), [](const auto& title) {
    return std::string(title.param == 1 ? "WithoutABreak" : "WithABreak");
});

TEST_F(DvdAngles, AnAngleChosenBeforeTheSceneIsTheOneShown) {
    begin(1);
    m_unit.command(12);
    nextPlace(1, 2);
    EXPECT_TRUE(shows(magenta));
    nextTime(6, 7);
    EXPECT_TRUE(timeGoesOn(6));
    m_unit.command(183, 2);
    EXPECT_TRUE(shows(magenta));
    m_unit.command(185, 16);
    nextTime(16, 17);
    EXPECT_TRUE(shows(magenta));
}

TEST_F(DvdAngles, ATitleThatLeavesPiecesOutShowsNothingOfThemAndHasNoGap) {
    begin(4);
    m_unit.pictures().forgetTimes();
    const auto deadline = Clock::now() + 40s;
    int strange = 0;
    while (!isLike(m_unit.pictures().at(MiddleX, MiddleY), blue)) {
        ASSERT_LT(Clock::now(), deadline);
        const Colour now = m_unit.pictures().at(MiddleX, MiddleY);
        strange += !isLike(now, red) && !isLike(now, magenta);
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_EQ(strange, 0) << "pictures of the other way";
    nextTime(20, 21);
    EXPECT_LT(m_unit.sound().longestPause(), 60ms);
    EXPECT_TRUE(timeGoesOn(20));
    const auto times = m_unit.pictures().times();
    // Up to there at least 15 s of 25 pictures.
    EXPECT_GT(times.size(), 375u);
    size_t late = 0;
    for (size_t i = 1; i < times.size(); ++i) {
        late += times[i] - times[i - 1] > 120ms;
    }
    EXPECT_LE(late, times.size() / 100);
}
