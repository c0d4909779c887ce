#include "tests/disc/DvdFixture.h"

#include <signal.h>
#include <unistd.h>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

TEST_F(Dvd, ADriveThatIsGoneTakesItsDiscWithIt) {
    playTitle(1);
    m_unit.request({{"op", "fault"}, {"kind", "gone"}});
    m_unit.nextState(PlayState::Ejecting);
    m_unit.next("disc", "2");
    EXPECT_TRUE(m_unit.pictures().waitCleared());
    EXPECT_TRUE(eventually([] { return dvdReaderOf(::getpid()) == 0; }));
    m_unit.request({{"op", "fault"}, {"kind", "none"}});
    m_unit.next("disc", "0");
    // Put in again it goes on where it was left.
    m_unit.request({{"op", "insert"}, {"path", dvdImage(DvdKind::Menus)}});
    nextPlace(1, 1);
    nextTime(0, 9);
    EXPECT_TRUE(shows(red));
}

TEST_F(Dvd, AWarmDriveAndABadSurfaceAreToldAndThenTakenBack) {
    playTitle(1);
    for (const auto& [kind, number] : {std::pair{"temperature", "48"}, std::pair{"surface", "34"}}) {
        m_unit.request({{"op", "fault"}, {"kind", kind}});
        m_unit.next("errorstatus", number);
    }
    m_unit.request({{"op", "fault"}, {"kind", "none"}});
    m_unit.next("errorstatus", "0");
    nextTime(1, 17);
}

TEST_F(Dvd, ASlowDriveIsWaitedFor) {
    playTitle(1);
    nextTime(1, 5);
    // Whatever it is asked, two thirds of the time it says nothing.
    const pid_t reader = dvdReaderOf(::getpid());
    ASSERT_GT(reader, 0);
    m_unit.command(183, 2);
    for (int i = 0; i < 10; ++i) {
        ::kill(reader, SIGSTOP);
        std::this_thread::sleep_for(400ms);
        ::kill(reader, SIGCONT);
        std::this_thread::sleep_for(200ms);
    }
    nextPlace(1, 2);
    EXPECT_TRUE(shows(green));
    nextTime(9, 12);
    for (const auto& each : m_unit.recorder().all()) {
        EXPECT_FALSE(each.name == "errorstatus" && each.value != "0");
    }
    m_unit.command(184, 2);
    nextPlace(2, 1);
}
