// The decoder is a process that can reach nothing, may die or hang at any time, and is replaced.
#include "base/Paths.h"
#include "services/decoder/Jail.h"
#include "services/disc/Decoders.h"
#include "tests/disc/PictureFixture.h"

#include <fcntl.h>
#include <fontconfig/fontconfig.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <sstream>
#include <thread>

using namespace zm::test;
using namespace zm::disc;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

long long millisecondsSince(Clock::time_point begun) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun).count();
}

/** A line of a file in /proc, without its name. */
std::string procLine(int pid, const std::string& file, const std::string& name) {
    std::istringstream text(readFile("/proc/" + std::to_string(pid) + "/" + file));
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with(name)) {
            return line.substr(name.size());
        }
    }
    return "";
}

class DecoderInAProcess : public Pictures {
protected:
    /** The decoder of this process; 0 if there is none. */
    static int decoder() {
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            const int pid = std::atoi(entry.path().filename().c_str());
            if (pid > 0 && procLine(pid, "status", "Name:") == "\tzmdecode" &&
                procLine(pid, "status", "PPid:") == "\t" + std::to_string(::getpid())) {
                return pid;
            }
        }
        return 0;
    }
    /** Waits for a decoder other than `old` that is locked in, that is ready. */
    static int nextDecoder(int old) {
        const auto begun = Clock::now();
        while (millisecondsSince(begun) < 20000) {
            const int pid = decoder();
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
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs files and memory";
#endif
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const int pid = ::fork();
    if (pid == 0) {
        initDecoders();
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

TEST_F(DecoderInAProcess, ThatDiesIsReplacedAndTheNextItemPlays) {
    placeTones();
    play();
    const int before = nextDecoder(0);
    ASSERT_NE(before, 0);
    const auto begun = Clock::now();
    ::kill(before, SIGKILL);
    const int after = nextDecoder(before);
    const auto time = millisecondsSince(begun);
    ASSERT_NE(after, 0);
    std::cout << "a new decoder after " << time << " ms\n";
    m_unit.next("errorstatus", "32");
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
    EXPECT_NE(readFile(zm::logFile(m_unit.runtime())).find("the decoder was ended by: Killed"),
              std::string::npos);
}

TEST_F(DecoderInAProcess, ThatHangsIsReplacedAtTheUsersNextWish) {
    placeTones();
    play();
    const int before = nextDecoder(0);
    ASSERT_NE(before, 0);
    ::kill(before, SIGSTOP);
    std::this_thread::sleep_for(1600ms); // it is asked, and does not answer
    const auto begun = Clock::now();
    m_unit.command(1);
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
    std::cout << "playing after " << millisecondsSince(begun) << " ms\n";
    EXPECT_NE(decoder(), before);
}

TEST_F(DecoderInAProcess, ThatHangsByItselfIsReplacedAndTheNextItemPlays) {
    placeTones();
    play();
    const int before = nextDecoder(0);
    ASSERT_NE(before, 0);
    ::kill(before, SIGSTOP);
    m_unit.next("errorstatus", "32");
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
    EXPECT_NE(decoder(), before);
}

TEST_F(DecoderInAProcess, ThatDiesAgainAndAgainDoesNotEndTheService) {
    placeTones();
    play();
    for (int turn = 0; turn < 5; ++turn) {
        // What has played that long does not count among the items of a round that all fail.
        m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 1; });
        const int pid = nextDecoder(0);
        ASSERT_NE(pid, 0);
        ::kill(pid, SIGSEGV);
        m_unit.next("errorstatus", "32");
        m_unit.nextState(PlayState::Playing);
    }
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting);
    m_unit.next("disc", "0");
}

TEST_F(DecoderInAProcess, EndsWithTheService) {
    placeTones();
    play();
    const int pid = nextDecoder(0);
    ASSERT_NE(pid, 0);
    m_unit.stopService();
    EXPECT_EQ(decoder(), 0);
}
