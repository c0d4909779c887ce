#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"
#include "sys/slog.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

class SlogSignalTest : public testing::Test {
protected:
    zm::test::RuntimeFolder m_folder;
    const std::string m_path = zm::logFile(m_folder.path());
};

constexpr int Turns = 2000;
volatile std::sig_atomic_t handled = 0;

void logFromHandler(int) {
    const int number = handled;
    slogf(0, 6, "handler %d %s", number, "0123456789");
    handled = number + 1;
}

// What a handler may interrupt: a message, the heap, the time zone, a change of the log's file.
void logWhileInterrupted() {
    const itimerval often{{0, 150}, {0, 150}};
    std::signal(SIGALRM, logFromHandler);
    setitimer(ITIMER_REAL, &often, nullptr);
    for (int i = 0; i < Turns || handled < Turns; ++i) {
        if (i < Turns) {
            slogf(0, 6, "main %d %s", i, "abcdefghij");
        }
        const auto memory = std::make_unique<std::string>(3000, 'x');
        const time_t now = static_cast<time_t>(memory->size());
        tm local{};
        localtime_r(&now, &local);
    }
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
}

int statusWithin(pid_t child, std::chrono::seconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return -1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return status;
}

TEST_F(SlogSignalTest, AHandlerLogsWhateverItInterrupts) {
    const pid_t child = fork();
    if (child == 0) {
        logWhileInterrupted();
        _exit(0);
    }
    ASSERT_EQ(statusWithin(child, std::chrono::seconds(60)), 0) << "-1: it hangs";
    int fromMain = 0;
    int fromHandler = 0;
    for (const auto& entry : zm::LogReader(m_path).last(1'000'000)) {
        if (entry.text == "main " + std::to_string(fromMain) + " abcdefghij") {
            ++fromMain;
        } else {
            ASSERT_EQ(entry.text, "handler " + std::to_string(fromHandler) + " 0123456789");
            ++fromHandler;
        }
    }
    EXPECT_EQ(fromMain, Turns);
    EXPECT_GE(fromHandler, Turns);
}

TEST_F(SlogSignalTest, AHandlersMessageLeavesErrnoAndTheMaskOfSignalsAlone) {
    sigset_t before;
    pthread_sigmask(SIG_SETMASK, nullptr, &before);
    errno = ENODATA;
    slogf(0, 6, "text");
    EXPECT_EQ(errno, ENODATA);
    sigset_t after;
    pthread_sigmask(SIG_SETMASK, nullptr, &after);
    for (int signal = 1; signal < SIGRTMAX; ++signal) {
        EXPECT_EQ(sigismember(&after, signal), sigismember(&before, signal)) << signal;
    }
}

TEST_F(SlogSignalTest, TheReaderGivesLocalTime) {
    const auto hour = [&] { return std::stoi(zm::LogReader(m_path).last(1).at(0).time.substr(11, 2)); };
    setenv("TZ", "UTC0", 1);
    tzset();
    slogf(0, 6, "text");
    const int universal = hour();
    const time_t now = time(nullptr);
    EXPECT_THAT((now - now % 3600) / 3600 % 24, testing::AnyOf(universal, (universal + 1) % 24));
    setenv("TZ", "EAST-3", 1);
    tzset();
    EXPECT_EQ(hour(), (universal + 3) % 24);
}

TEST_F(SlogSignalTest, AFolderWhoseNameIsTooLongIsRefused) {
    setenv("ZM_RUNTIME", ("/" + std::string(600, 'x')).c_str(), 1);
    errno = 0;
    EXPECT_EQ(slogf(0, 6, "text"), -1);
    EXPECT_EQ(errno, ENAMETOOLONG);
}

} // namespace
