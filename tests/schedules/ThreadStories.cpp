#include "base/EventLoop.h"
#include "base/Mailbox.h"
#include "platform/linux/framework/AppClock.h"
#include "platform/linux/framework/EventThread.h"
#include "platform/linux/framework/Worker.h"
#include "tests/schedules/Schedules.h"

#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace zm::test {

namespace {

constexpr int Posters = 3;
constexpr int Posts = 12;

/** Runs `work` on some threads at once, which it tells apart. */
template <class Work>
void together(Work work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < Posters; ++i) {
        threads.emplace_back([&work, i] { work(i); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace

TEST_F(Schedules, EventsOfEachPosterRunInItsOrder) {
    tell([](uint64_t) {
        EventThread events;
        std::array<int, Posters> latest{}; // on the thread until it has been drained
        ASSERT_TRUE(events.start([] {}, [] {}));
        together([&](int poster) {
            for (int i = 1; i <= Posts; ++i) {
                events.post([&latest, poster, i] {
                    auto& last = latest[static_cast<size_t>(poster)];
                    EXPECT_EQ(last + 1, i);
                    last = i;
                });
            }
        });
        EXPECT_TRUE(events.drain(deadline()));
        for (const int each : latest) {
            EXPECT_EQ(each, Posts);
        }
        events.stop();
    });
}

TEST_F(Schedules, NoEventRunsOnceTheThreadHasBeenStopped) {
    tell([](uint64_t) {
        EventThread events;
        std::atomic<bool> over = false;
        ASSERT_TRUE(events.start([] {}, [] {}));
        std::thread stopper([&] {
            events.stop();
            over = true;
        });
        together([&](int) {
            for (int i = 0; i < Posts; ++i) {
                events.post([&over] { EXPECT_FALSE(over); });
            }
        });
        // What waits for an event that is dropped is let go.
        EXPECT_TRUE(events.runAndWait([&over] { EXPECT_FALSE(over); }, deadline()));
        stopper.join();
    });
}

TEST_F(Schedules, AClosedMailboxDropsWhatWasPosted) {
    tell([](uint64_t) {
        EventLoop loop;
        auto mailbox = std::make_shared<Mailbox>(loop);
        bool closed = false; // on the loop
        int ran = 0;
        std::thread thread([&loop] { loop.run(); });
        loop.post([&] {
            mailbox->close();
            closed = true;
        });
        together([&](int) {
            for (int i = 0; i < Posts; ++i) {
                mailbox->post([&] {
                    EXPECT_FALSE(closed);
                    ++ran;
                });
            }
        });
        loop.post([&loop] { loop.quit(); });
        thread.join();
        EXPECT_TRUE(closed);
        EXPECT_LE(ran, Posters * Posts);
    });
}

TEST_F(Schedules, AnOpenMailboxDeliversAll) {
    tell([](uint64_t) {
        EventLoop loop;
        auto mailbox = std::make_shared<Mailbox>(loop);
        int ran = 0; // on the loop
        std::thread thread([&loop] { loop.run(); });
        together([&](int) {
            for (int i = 0; i < Posts; ++i) {
                mailbox->post([&ran] { ++ran; });
            }
        });
        loop.post([&loop] { loop.quit(); });
        thread.join();
        EXPECT_EQ(ran, Posters * Posts);
    });
}

TEST_F(Schedules, ARequestIsFollowedByARunOfTheWorker) {
    tell([](uint64_t) {
        std::atomic<int> wanted = 0;
        std::atomic<int> seen = 0;
        std::atomic<int> begun = 0;
        std::atomic<int> ended = 0;
        Worker worker;
        ASSERT_TRUE(worker.start({[&] { ++begun; }, [&] { seen = wanted.load(); }, [&] { ++ended; }}));
        together([&](int) {
            for (int i = 0; i < Posts; ++i) {
                ++wanted;
                worker.request();
            }
        });
        EXPECT_TRUE(worker.drain(deadline()));
        EXPECT_EQ(seen, Posters * Posts);
        worker.stop();
        EXPECT_EQ(begun, 1);
        EXPECT_EQ(ended, 1);
    });
}

TEST_F(Schedules, AnAlarmRingsOnceOrWasCancelled) {
    tell([](uint64_t) {
        EventThread events;
        AppClock clock(events);
        std::array<std::atomic<int>, Posters> rung{};
        std::array<bool, Posters> cancelled{};
        ASSERT_TRUE(events.start([] {}, [&clock] { clock.disarm(); }));
        together([&](int poster) {
            const auto place = static_cast<size_t>(poster);
            const AppClock::Key key{&clock, static_cast<unsigned>(poster)};
            clock.set(key, {clock.nowMs(), 0, AlarmKind::Handler, [&rung, place] { ++rung[place]; }, 0});
            cancelled[place] = poster == 0 && clock.cancel(key);
        });
        const auto late = deadline();
        const auto rings = [&](size_t place) { return rung[place] + cancelled[place]; };
        while ((rings(0) == 0 || rings(1) == 0 || rings(2) == 0) && std::chrono::steady_clock::now() < late) {
            std::this_thread::yield();
        }
        events.stop();
        for (size_t place = 0; place < Posters; ++place) {
            EXPECT_EQ(rings(place), 1) << place;
        }
    });
}

} // namespace zm::test
