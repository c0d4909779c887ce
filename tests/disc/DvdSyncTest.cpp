#include "tests/disc/DvdFixture.h"

#include <algorithm>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

int milliseconds(Clock::duration time) {
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

/** By how much each flash is seen before (negative: after) its beep is heard, in ms, in order of size. Those without
 * one near them, at the edge of a jump, are left out. */
std::vector<int> leads(const std::vector<Clock::time_point>& flashes,
                       const std::vector<Clock::time_point>& beeps) {
    std::vector<int> leads;
    for (const auto flash : flashes) {
        for (const auto beep : beeps) {
            if (const int lead = milliseconds(beep - flash); std::abs(lead) < 400) {
                leads.push_back(lead);
            }
        }
    }
    std::sort(leads.begin(), leads.end());
    return leads;
}

/** The disc of flashes and beeps. */
class DvdSync : public Dvd {
protected:
    /** From now on at least `count` flashes and beeps go together. */
    void expectTogether(const char* where, size_t count) {
        m_unit.pictures().forgetTimes();
        m_unit.sound().forget();
        const auto enough = [&] {
            return leads(m_unit.pictures().flashes(), m_unit.sound().beeps()).size() >= count;
        };
        const auto deadline = Clock::now() + 15s;
        while (!enough() && Clock::now() < deadline) {
            std::this_thread::sleep_for(20ms);
        }
        const auto found = leads(m_unit.pictures().flashes(), m_unit.sound().beeps());
        ASSERT_GE(found.size(), count) << where;
        const int median = found[found.size() / 2];
        EXPECT_LE(std::abs(median), 40) << where;
        std::cout << where << ": the sound is " << median << " ms behind, " << found.front() << " to "
                  << found.back() << "\n";
    }
};

} // namespace

TEST_F(DvdSync, SoundAndPictureGoTogetherInMenusTitlesAndAfterJumps) {
    play(DvdKind::Sync);
    m_unit.next("rootmenu", "true");
    expectTogether("a menu that comes again", 5);
    m_unit.command(188, 360, 240);
    nextPlace(1, 1);
    expectTogether("a title and over its chapters", 5);
    m_unit.command(183, 3);
    nextPlace(1, 3);
    expectTogether("a chapter", 2);
    m_unit.command(184, 2);
    nextPlace(2, 1);
    expectTogether("a title by its number", 2);
    m_unit.command(185, 5);
    nextPlace(2, 2);
    expectTogether("a time", 2);
    m_unit.command(21);
    m_unit.next("rootmenu", "true");
    expectTogether("the menu called", 2);
    m_unit.command(21);
    nextPlace(2, 2);
    expectTogether("back in the title", 2);
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.command(131);
    expectTogether("after a pause", 2);
}

TEST_F(DvdSync, NeitherPictureNorSoundStopsWhereTheDiscsClockJumps) {
    play(DvdKind::Sync);
    m_unit.next("rootmenu", "true");
    m_unit.command(188, 360, 240);
    nextPlace(1, 1);
    m_unit.pictures().forgetTimes();
    m_unit.sound().forget();
    nextPlace(1, 3);
    nextPlace(2, 1);
    nextPlace(2, 3);
    nextTime(11, 11);
    const auto times = m_unit.pictures().times();
    const auto beeps = m_unit.sound().beeps();
    // 23 s of 25 pictures, in six pieces.
    EXPECT_NEAR(double(times.size()), 575.0, 40.0);
    int late = 0;
    for (size_t i = 1; i < times.size(); ++i) {
        late += milliseconds(times[i] - times[i - 1]) > 80;
    }
    EXPECT_LE(late, 10) << "steps longer than two pictures";
    ASSERT_GE(beeps.size(), 22u);
    std::vector<int> steps;
    for (size_t i = 1; i < beeps.size(); ++i) {
        steps.push_back(milliseconds(beeps[i] - beeps[i - 1]));
    }
    std::sort(steps.begin(), steps.end());
    EXPECT_GE(steps.front(), 900);
    EXPECT_LE(steps.back(), 1100);
    std::cout << times.size() << " pictures, " << late << " late ones; beeps " << steps.front() << " to "
              << steps.back() << " ms apart\n";
}
