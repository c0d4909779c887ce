// What the system holds up on its own holds nobody else up.
#include "tests/disc/DecoderProcesses.h"
#include "tests/disc/DvdFixture.h"
#include "tests/disc/ServiceFixture.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <optional>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

/** Whoever opens `file` waits until this is gone. */
class HeldFile {
public:
    explicit HeldFile(const std::string& file) : m_fd(::open(file.c_str(), O_RDWR | O_CLOEXEC)) {
        std::signal(SIGIO, SIG_IGN); // would tell that somebody waits
        m_held = ::fcntl(m_fd, F_SETLEASE, F_WRLCK) == 0;
    }
    ~HeldFile() {
        letGo();
        ::close(m_fd);
    }
    bool held() const { return m_held; }
    /** Somebody opens it. */
    bool isAwaited() const { return ::fcntl(m_fd, F_GETLEASE) != F_WRLCK; }
    void letGo() { ::fcntl(m_fd, F_SETLEASE, F_UNLCK); }

private:
    int m_fd;
    bool m_held = false;
};

/** A process that watches another one: that one does not go when it is killed before this is gone. */
class Watcher {
public:
    explicit Watcher(int watched) {
        int said[2];
        if (::pipe2(said, O_CLOEXEC) != 0) {
            return;
        }
        m_pid = ::fork();
        if (m_pid == 0) {
            const bool good = ::ptrace(PTRACE_SEIZE, watched, nullptr, nullptr) == 0;
            [[maybe_unused]] const auto written = ::write(said[1], good ? "y" : "n", 1);
            for (;;) {
                ::pause();
            }
        }
        char answer = 0;
        m_watches = ::read(said[0], &answer, 1) == 1 && answer == 'y';
        ::close(said[0]);
        ::close(said[1]);
    }
    ~Watcher() {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    bool watches() const { return m_watches; }

private:
    pid_t m_pid = 0;
    bool m_watches = false;
};

bool isThere(int pid) {
    return std::filesystem::exists("/proc/" + std::to_string(pid));
}

} // namespace

/** A disc plays, and one that does not answer yet has been put in over it. */
class SlowDisc : public DiscService {
protected:
    void SetUp() override {
        DiscService::SetUp();
        const std::string image = m_images / "disc.iso";
        const std::string words =
            "genisoimage -quiet -J -r -o '" + image + "' '" + m_disc.path().string() + "' 2>/dev/null";
        ASSERT_EQ(std::system(words.c_str()), 0);
        play();
        m_held.emplace(image);
        ASSERT_TRUE(m_held->held());
        m_unit.request({{"op", "insert"}, {"path", image}});
        ASSERT_TRUE(eventually([this] { return m_held->isAwaited(); }));
    }

    TempFolder m_images;
    std::optional<HeldFile> m_held;
};

TEST_F(SlowDisc, HoldsNobodyUp) {
    m_unit.mark();
    for (int i = 0; i < 3; ++i) {
        m_unit.command(22);
        m_unit.next("msgtip", "4", 5s);
        m_unit.command(131);
        m_unit.next("msgtip", "6", 5s);
    }
    EXPECT_TRUE(m_unit.since("disc").empty()) << "the disc inside stays until the other one is there";
    m_held->letGo();
    m_unit.next("disc", "0");
    m_unit.next("disc", "1");
    m_unit.nextState(PlayState::Playing);
}

TEST_F(SlowDisc, ThatIsNotWantedAnyMoreIsNotTaken) {
    m_unit.command(13);
    m_unit.next("disc", "0");
    m_unit.nextState(PlayState::Stopped);
    m_unit.mark();
    m_held->letGo();
    EXPECT_FALSE(m_unit.follows("disc", "1", 2s));
}

#ifndef __SANITIZE_THREAD__ // there nothing is decoded

TEST_F(Dvd, ADecoderThatDoesNotGoHoldsNobodyUp) {
    m_unit.startService();
    ASSERT_TRUE(eventually([] { return lockedInDecoder() != 0; }));
    const int decoder = lockedInDecoder();
    {
        const Watcher watcher(decoder);
        ASSERT_TRUE(watcher.watches());
        m_unit.request({{"op", "insert"}, {"path", dvdImage(DvdKind::Menus)}});
        m_unit.command(187, 1);
        m_unit.nextState(PlayState::Playing);
        EXPECT_TRUE(isThere(decoder));
    }
    EXPECT_TRUE(eventually([decoder] { return !isThere(decoder); }));
}

#endif
