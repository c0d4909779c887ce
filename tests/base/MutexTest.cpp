#include "base/Mutex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace zm::test {

using Clock = std::chrono::steady_clock;

TEST(MutexTest, WhatTwoThreadsCountUnderALockIsAllCounted) {
    constexpr int Each = 50000;
    struct Counter {
        Mutex mutex;
        int count ZM_GUARDED_BY(mutex) = 0;
    } counter;
    const auto work = [&counter] {
        for (int i = 0; i < Each; ++i) {
            MutexLock lock(counter.mutex);
            ++counter.count;
        }
    };
    std::thread other(work);
    work();
    other.join();
    MutexLock lock(counter.mutex);
    EXPECT_EQ(counter.count, 2 * Each);
}

TEST(MutexTest, AWaitEndsWithTheChange) {
    struct Door {
        Mutex mutex;
        Condition changed;
        bool open ZM_GUARDED_BY(mutex) = false;
    } door;
    std::thread other([&door] {
        MutexLock lock(door.mutex);
        door.open = true;
        door.changed.notifyAll();
    });
    MutexLock lock(door.mutex);
    while (!door.open) {
        door.changed.wait(lock);
    }
    lock.unlock();
    other.join();
}

TEST(MutexTest, AWaitEndsAtItsDeadline) {
    Mutex mutex;
    Condition changed;
    const auto deadline = Clock::now() + std::chrono::milliseconds(20);
    MutexLock lock(mutex);
    while (changed.waitUntil(lock, deadline)) {
    }
    EXPECT_GE(Clock::now(), deadline);
}

TEST(MutexTest, ALockThatWasLetGoCanBeTakenByAnother) {
    Mutex mutex;
    MutexLock lock(mutex);
    lock.unlock();
    std::thread([&mutex] { MutexLock other(mutex); }).join();
    lock.lock();
}

} // namespace zm::test
