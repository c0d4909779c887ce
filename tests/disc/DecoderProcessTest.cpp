// The decoder is a process that can reach nothing, may die or hang at any time, and is replaced.
#include "base/Paths.h"
#include "services/decoder/Fonts.h"
#include "services/decoder/Jail.h"
#include "services/disc/engine/Decoders.h"
#include "tests/disc/DecoderProcesses.h"
#include "tests/disc/PictureFixture.h"

#include <fcntl.h>
#include <fontconfig/fontconfig.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <thread>

using namespace zm::test;
using namespace zm::disc::engine;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

long long millisecondsSince(Clock::time_point begun) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun).count();
}

class DecoderInAProcess : public Pictures {
protected:
    /** Waits until as many decoders have been in reserve, each with all loaded that it needs. */
    bool waitSpares(int count) const {
        const auto begun = Clock::now();
        while (millisecondsSince(begun) < 20000) {
            int found = 0;
            const std::string text = log();
            for (size_t at = 0; (at = text.find("a spare decoder is ready", at)) != std::string::npos; ++at) {
                ++found;
            }
            if (found >= count) {
                return true;
            }
            std::this_thread::sleep_for(20ms);
        }
        return false;
    }
    std::string log() const { return readFile(zm::logFile(m_unit.runtime())); }
    Published nextTime(int from) {
        return m_unit.next("playtime", [=](const Published& each) { return each.json()["time"] >= from; });
    }
    /** Waits for a decoder other than `old` that is locked in, that is ready. */
    static int nextDecoder(int old) {
        const auto begun = Clock::now();
        while (millisecondsSince(begun) < 20000) {
            const int pid = lockedInDecoder();
            if (pid != 0 && pid != old && procLine(pid, "status", "Seccomp:") == "\t2") {
                return pid;
            }
            std::this_thread::sleep_for(2ms);
        }
        return 0;
    }
    void placeTones() {
        for (const char* name : {"1.mp3", "2.mp3", "3.mp3"}) {
            place(toneFile("mp3", 30), m_disc / name);
        }
    }
};

// What a process that is locked in finds: one letter each that is not as it should be.
std::string attempts() {
    std::string wrong;
    const auto check = [&wrong](bool good, char letter) {
        if (!good) {
            wrong += letter;
        }
    };
    check(::socket(AF_INET, SOCK_STREAM, 0) < 0, 'i');
    check(::socket(AF_UNIX, SOCK_STREAM, 0) < 0, 'u');
    check(::open("/etc/passwd", O_RDONLY) < 0 && errno == EACCES, 'r');
    check(::open("/proc/self/mem", O_RDWR) < 0, 'm');
    check(::open("/tmp/zm-test-made-by-the-decoder", O_WRONLY | O_CREAT, 0600) < 0, 'w');
    check(::unlink("/tmp/zm-test-nothing") < 0 && errno == EPERM, 'd');
    check(::execl("/bin/true", "true", nullptr) < 0 && errno == EPERM, 'e');
    check(::fork() < 0, 'f');
    check(::kill(::getppid(), 0) < 0 && errno == EPERM, 'k');
    check(std::malloc(size_t{2} << 30) == nullptr, 'g');
    bool ran = false;
    std::thread([&ran] { ran = true; }).join();
    check(ran, 't');
    return wrong;
}

} // namespace

TEST(DecoderJail, HoldsSocketsFilesProgramsAndMemoryBack) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer needs files and memory";
#endif
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const int pid = ::fork();
    if (pid == 0) {
        initDecoders();
        zm::decoder::openFonts();
        const auto status = zm::decoder::lockIn();
        const std::string wrong = status ? attempts() + "." : status.error();
        ::_exit(::write(ends[1], wrong.data(), wrong.size()) < 0 ? 1 : 0);
    }
    ::close(ends[1]);
    std::string wrong(1000, '\0');
    wrong.resize(static_cast<size_t>(std::max<ssize_t>(0, ::read(ends[0], wrong.data(), wrong.size()))));
    EXPECT_EQ(wrong, ".");
    ::waitpid(pid, nullptr, 0);
    ::close(ends[0]);
}

TEST_F(DecoderInAProcess, IsLockedInAndHoldsNoFileOfTheDiscOrTheService) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs files and memory: the decoder is not locked in";
#endif
    placeTones();
    play();
    const int pid = nextDecoder(0);
    ASSERT_NE(pid, 0);
    EXPECT_EQ(procLine(pid, "status", "NoNewPrivs:"), "\t1");
    EXPECT_NE(procLine(pid, "limits", "Max data size"), "");
    EXPECT_EQ(procLine(pid, "limits", "Max data size").find("unlimited"), std::string::npos);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd")) {
        std::error_code gone;
        const std::string file = std::filesystem::read_symlink(entry, gone).string();
        EXPECT_FALSE(file.starts_with(m_disc.path().string()) || file.starts_with(m_unit.runtime())) << file;
    }
}

TEST_F(DecoderInAProcess, ThatDiesIsReplacedAndTheItemGoesOnSoon) {
    for (const char* name : {"1.mpg", "2.mpg", "3.mpg"}) {
        place(
            sample({"film.mpg", "-f lavfi -i testsrc=size=320x240:rate=25:duration=30 -f lavfi -i "
                                "sine=frequency=440:duration=30 -c:v mpeg2video -b:v 800k -c:a mp2 -f vob"}),
            m_disc / name);
    }
    play();
    long long best = 1000000;
    for (int turn = 1; turn <= 3; ++turn) {
        nextTime(2);
        ASSERT_TRUE(waitSpares(turn));
        m_unit.mark();
        const int before = lockedInDecoder();
        const auto begun = Clock::now();
        ::kill(before, SIGKILL);
        ASSERT_NE(nextDecoder(before), 0);
        const int frames = m_unit.pictures().frames();
        ASSERT_TRUE(m_unit.pictures().waitFrames(frames, 1));
        const auto time = millisecondsSince(begun);
        std::cout << "its picture goes on after " << time << " ms\n";
        best = std::min(best, time);
        nextTime(3);
        EXPECT_TRUE(m_unit.since("errorstatus").empty());
        EXPECT_TRUE(m_unit.since("discstate").empty());
        EXPECT_TRUE(m_unit.since("trackinfo").empty());
        m_unit.command(1);
        m_unit.nextState(PlayState::Playing);
    }
    EXPECT_NE(log().find("the decoder was ended by: Killed"), std::string::npos);
    double load = 0;
    ::getloadavg(&load, 1);
    EXPECT_LT(best, load < 1.5 ? 300 : 3000) << "at a load of " << load;
}

TEST_F(DecoderInAProcess, ThatDiesTwiceAtAnItemHasFailedAtIt) {
    placeTones();
    play();
    nextTime(1);
    const int before = nextDecoder(0);
    ::kill(before, SIGSEGV);
    const int after = nextDecoder(before);
    ASSERT_NE(after, 0);
    nextTime(2);
    ::kill(after, SIGSEGV);
    m_unit.next("errorstatus", "32");
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DecoderInAProcess, ThatDiesInAPauseIsReplacedByOneThatPauses) {
    placeTones();
    play();
    nextTime(3);
    ASSERT_TRUE(waitSpares(1));
    m_unit.command(185, 20);
    nextTime(21);
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.mark();
    const int before = lockedInDecoder();
    ::kill(before, SIGKILL);
    ASSERT_NE(nextDecoder(before), 0);
    EXPECT_FALSE(m_unit.follows("discstate", std::to_string(static_cast<int>(PlayState::Playing)), 1500ms));
    EXPECT_TRUE(m_unit.since("errorstatus").empty());
    m_unit.command(131);
    m_unit.nextState(PlayState::Playing);
    const auto time = nextTime(1).json()["time"].get<int>();
    EXPECT_GE(time, 21);
    EXPECT_LE(time, 23);
}

TEST_F(DecoderInAProcess, ThatDiesIsReplacedByOneThatShowsThePhotoAsItWasTurned) {
    place(sample({"halves.png", "-f lavfi -i color=red:size=200x240 -f lavfi -i color=blue:size=200x240 "
                                "-filter_complex hstack -frames:v 1"}),
          m_disc / "1.png");
    play();
    m_unit.command(163);
    ASSERT_TRUE(m_unit.pictures().waitFor(MiddleX, 100, red));
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    const int frames = m_unit.pictures().frames();
    ::kill(nextDecoder(0), SIGKILL);
    ASSERT_TRUE(m_unit.pictures().waitFrames(frames, 1));
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, 100, red));
}

// As one whose taking down of a failed item waits for itself.
TEST_F(DecoderInAProcess, ThatHangsIsReplacedAtTheUsersNextWish) {
    placeTones();
    play();
    nextTime(1);
    ASSERT_TRUE(waitSpares(1));
    const int before = lockedInDecoder();
    ASSERT_NE(before, 0);
    ::kill(before, SIGSTOP);
    const auto begun = Clock::now();
    m_unit.mark();
    m_unit.command(1);
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
    std::cout << "playing after " << millisecondsSince(begun) << " ms\n";
    EXPECT_TRUE(m_unit.since("errorstatus").empty());
    EXPECT_NE(lockedInDecoder(), before);
    EXPECT_NE(log().find("the decoder hangs and is replaced"), std::string::npos);
}

TEST_F(DecoderInAProcess, ThatHangsByItselfIsReplacedAndTheItemGoesOn) {
    placeTones();
    play();
    nextTime(2);
    const int before = nextDecoder(0);
    ASSERT_NE(before, 0);
    ::kill(before, SIGSTOP);
    nextTime(4);
    EXPECT_TRUE(m_unit.since("errorstatus").empty());
    EXPECT_NE(lockedInDecoder(), before);
}

TEST_F(DecoderInAProcess, ThatDiesAgainAndAgainDoesNotEndTheService) {
    placeTones();
    play();
    for (int turn = 0; turn < 3; ++turn) {
        // What has played that long does not count among the items of a round that all fail.
        nextTime(1);
        const int first = nextDecoder(0);
        ASSERT_NE(first, 0);
        ::kill(first, SIGSEGV);
        const int second = nextDecoder(first);
        ASSERT_NE(second, 0);
        ::kill(second, SIGSEGV);
        m_unit.next("errorstatus", "32");
        m_unit.nextState(PlayState::Playing);
    }
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting);
    m_unit.next("disc", "0");
}

TEST_F(DecoderInAProcess, InReserveThatDiesIsReplacedToo) {
    placeTones();
    play();
    ASSERT_TRUE(waitSpares(1));
    for (const int pid : decoders()) {
        if (pid != lockedInDecoder()) {
            ::kill(pid, SIGKILL);
        }
    }
    EXPECT_TRUE(waitSpares(2));
    EXPECT_EQ(decoders().size(), 2U);
}

TEST_F(DecoderInAProcess, EndsWithTheService) {
    placeTones();
    play();
    const int pid = nextDecoder(0);
    ASSERT_NE(pid, 0);
    m_unit.stopService();
    EXPECT_TRUE(decoders().empty());
}
