// A song whose sound stands still while its decoder lives is given up.
#include "tests/disc/GaplessFixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

using namespace zm::test;

namespace {

/** The sound goes into a pipe that somebody listens to, or not. */
class StandStill : public Gapless {
protected:
    void SetUp() override {
        Gapless::SetUp();
        if (IsSkipped()) {
            return;
        }
        ASSERT_EQ(::mkfifo(heardFile().c_str(), 0600), 0);
        m_pipe = ::open(heardFile().c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        ASSERT_GE(m_pipe, 0);
        m_listener = std::thread([this] {
            std::string bytes(65536, '\0');
            while (!m_over) {
                if (m_listens) {
                    static_cast<void>(::read(m_pipe, bytes.data(), bytes.size()));
                }
                std::this_thread::sleep_for(20ms);
            }
        });
        writePieces(noise, {44100 * 12, 44100 * 12}, "flac", "");
    }
    void TearDown() override {
        m_over = true;
        if (m_listener.joinable()) {
            m_listener.join();
        }
        ::close(m_pipe);
        Gapless::TearDown();
    }

    int m_pipe = -1;
    std::thread m_listener;
    std::atomic<bool> m_over = false;
    std::atomic<bool> m_listens = true;
};

} // namespace

TEST_F(StandStill, ASongWhoseSoundStandsStillIsGivenUp) {
    m_decoderDies = true;
    playOnce(disc());
    nextTime(2, 12);
    m_listens = false;
    m_unit.next(
        "errorstatus", [](const Published& each) { return each.value == "32"; }, 60s);
    m_listens = true;
    nextTitle("2");
    nextTime(2, 12, 60s);
    const std::string log = readFile(zm::logFile(m_unit.runtime()));
    EXPECT_NE(log.find("the sound stands still"), std::string::npos) << log;
}

TEST_F(StandStill, APauseMayBeLong) {
    playOnce(disc());
    nextTime(1, 12);
    m_unit.command(130);
    m_unit.nextState(zm::disc::model::PlayState::Paused);
    std::this_thread::sleep_for(6s); // longer than a song may stand still
    m_unit.command(131);
    m_unit.nextState(zm::disc::model::PlayState::Playing);
    nextTime(3, 12);
}
