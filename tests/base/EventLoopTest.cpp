#include "base/EventLoop.h"

#include "base/UniqueFd.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <thread>
#include <vector>

namespace zm::test {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// Runs the loop until `condition` holds; false when that takes too long.
template <class Condition>
bool runUntil(EventLoop& loop, Condition condition) {
    const auto deadline = Clock::now() + 5s;
    auto tick = everyInterval(loop, 1ms, [] {});
    while (!condition()) {
        if (Clock::now() > deadline) {
            return false;
        }
        loop.iterate(true);
    }
    return true;
}

} // namespace

TEST(EventLoopTest, PostedTasksRunInOrderAndNeverInsideTheCall) {
    EventLoop loop;
    std::string order;
    loop.post([&] {
        order += "a";
        loop.post([&] {
            order += "c";
            loop.quit();
        });
        order += "b";
    });
    EXPECT_EQ(order, "");
    loop.run();
    EXPECT_EQ(order, "abc");
}

TEST(EventLoopTest, TasksFromManyThreadsAllRunOnTheLoopsThread) {
    EventLoop loop;
    constexpr int Threads = 4;
    constexpr int Tasks = 1000;
    int ran = 0;
    std::vector<int> last(Threads, -1);
    const auto loopThread = std::this_thread::get_id();
    std::vector<std::thread> threads;
    for (int t = 0; t < Threads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < Tasks; ++i) {
                loop.post([&, t, i] {
                    EXPECT_EQ(std::this_thread::get_id(), loopThread);
                    EXPECT_EQ(last[static_cast<size_t>(t)], i - 1);
                    last[static_cast<size_t>(t)] = i;
                    if (++ran == Threads * Tasks) {
                        loop.quit();
                    }
                });
            }
        });
    }
    loop.run();
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(ran, Threads * Tasks);
}

TEST(EventLoopTest, QuittingFromAnotherThreadWakesALoopThatWaits) {
    EventLoop loop;
    std::thread other([&] { loop.quit(); });
    loop.run();
    other.join();
    loop.post([&] { loop.quit(); });
    loop.run(); // may be run again
}

TEST(EventLoopTest, IteratingTellsWhetherAnythingRan) {
    EventLoop loop;
    EXPECT_FALSE(loop.iterate(false));
    loop.post([] {});
    EXPECT_TRUE(loop.iterate(false));
    EXPECT_FALSE(loop.iterate(false));
}

TEST(EventLoopTest, ATaskThatPostsItselfDoesNotStarveDescriptors) {
    EventLoop loop;
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    UniqueFd reading(pipe[0]);
    UniqueFd writing(pipe[1]);
    ASSERT_EQ(::write(writing.get(), "x", 1), 1);
    bool readable = false;
    std::function<void()> again = [&] { loop.post(again); };
    loop.post(again);
    SourceHandle watch;
    watch = watchFd(loop, reading.get(), IoEvent::Readable, [&] {
        readable = true;
        watch.reset();
    });
    const auto deadline = Clock::now() + 5s;
    while (!readable && Clock::now() < deadline) {
        loop.iterate(false);
    }
    EXPECT_TRUE(readable);
}

TEST(EventLoopTest, ASlowCallbackDoesNotMakeAnIntervalDrift) {
    // Twenty intervals of 5 ms with 3 ms of work in each: 100 ms in all, 160 ms if the work were added. On a
    // busy machine one try may come late.
    Clock::duration shortest = Clock::duration::max();
    for (int tries = 0; tries < 5 && shortest >= 130ms; ++tries) {
        EventLoop loop;
        int ticks = 0;
        const auto begin = Clock::now();
        auto timer = everyInterval(loop, 5ms, [&] {
            ++ticks;
            std::this_thread::sleep_for(3ms);
        });
        while (ticks < 20) {
            loop.iterate(true);
        }
        EXPECT_GE(Clock::now() - begin, 100ms);
        shortest = std::min(shortest, Clock::now() - begin);
    }
    EXPECT_LT(shortest, 130ms);
}

TEST(EventLoopTest, AnIntervalEndsWithItsHandle) {
    EventLoop loop;
    int ticks = 0;
    auto timer = everyInterval(loop, 1ms, [&] { ++ticks; });
    ASSERT_TRUE(runUntil(loop, [&] { return ticks >= 3; }));
    timer.reset();
    EXPECT_FALSE(timer.active());
    const int before = ticks;
    bool passed = false;
    auto end = afterDelay(loop, 10ms, [&] { passed = true; });
    ASSERT_TRUE(runUntil(loop, [&] { return passed; }));
    EXPECT_EQ(ticks, before);
}

TEST(EventLoopTest, ADelayFiresOnceAndMayReplaceItsOwnHandle) {
    EventLoop loop;
    int fired = 0;
    SourceHandle timer;
    timer = afterDelay(loop, 1ms, [&] {
        ++fired;
        timer = afterDelay(loop, 1ms, [&] { ++fired; });
    });
    ASSERT_TRUE(runUntil(loop, [&] { return fired == 2; }));
    bool passed = false;
    auto end = afterDelay(loop, 10ms, [&] { passed = true; });
    ASSERT_TRUE(runUntil(loop, [&] { return passed; }));
    EXPECT_EQ(fired, 2);
}

TEST(EventLoopTest, AHandleMayBeMovedAndResetInsideItsCallback) {
    EventLoop loop;
    int fired = 0;
    SourceHandle moved;
    SourceHandle timer = everyInterval(loop, 1ms, [&] {
        ++fired;
        moved.reset();
    });
    moved = std::move(timer);
    ASSERT_TRUE(runUntil(loop, [&] { return fired == 1; }));
    bool passed = false;
    auto end = afterDelay(loop, 10ms, [&] { passed = true; });
    ASSERT_TRUE(runUntil(loop, [&] { return passed; }));
    EXPECT_EQ(fired, 1);
}

TEST(EventLoopTest, ABrokenDescriptorIsReportedToo) {
    EventLoop loop;
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    UniqueFd reading(pipe[0]);
    ::close(pipe[1]);
    int reported = 0;
    auto watch = watchFd(loop, reading.get(), IoEvent::Readable, [&] { ++reported; });
    EXPECT_TRUE(runUntil(loop, [&] { return reported > 0; }));
}

TEST(EventLoopTest, AnEndedChildIsReportedWithItsStatus) {
    EventLoop loop;
    const pid_t child = fork();
    if (child == 0) {
        _exit(7);
    }
    int status = -1;
    auto watch = watchChild(loop, child, [&](int value) { status = value; });
    ASSERT_TRUE(runUntil(loop, [&] { return status != -1; }));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST(EventLoopTest, ASignalIsReportedForEachArrival) {
    EventLoop loop;
    int arrived = 0;
    auto watch = watchSignal(loop, SIGUSR1, [&] { ++arrived; });
    ::kill(getpid(), SIGUSR1);
    ASSERT_TRUE(runUntil(loop, [&] { return arrived == 1; }));
    ::kill(getpid(), SIGUSR1);
    ASSERT_TRUE(runUntil(loop, [&] { return arrived == 2; }));
}

} // namespace zm::test
