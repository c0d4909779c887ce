#include "tests/schedules/Yields.h"

#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace zm::test {

namespace {

// One place in so many.
constexpr uint64_t Resting = 48;
constexpr uint64_t Yielding = 4;
constexpr uint64_t LongestRestMicroseconds = 150;

std::atomic<uint64_t> schedule{0}; ///< 0: none
std::atomic<uint64_t> threadsSeen{0};
std::atomic<uint64_t> yieldsSeen{0};

/** A thread's own numbers: they follow from the seed and from its place among the threads that have come by. */
struct Numbers {
    uint64_t next() {
        const uint64_t seed = schedule;
        if (seed != m_seed) {
            m_seed = seed;
            m_state = seed * 0x9E3779B97F4A7C15 + ++threadsSeen * 0xBF58476D1CE4E5B9 + 1;
        }
        m_state ^= m_state << 13;
        m_state ^= m_state >> 7;
        m_state ^= m_state << 17;
        return m_state >> 16;
    }

private:
    uint64_t m_seed = 0;
    uint64_t m_state = 0;
};

void giveWay() {
    static thread_local Numbers numbers;
    if (schedule == 0) {
        return;
    }
    const int error = errno;
    const uint64_t number = numbers.next();
    if (number % Resting == 0) {
        ++yieldsSeen;
        ::usleep(static_cast<useconds_t>(number / Resting % LongestRestMicroseconds));
    } else if (number % Yielding == 1) {
        ++yieldsSeen;
        ::sched_yield();
    }
    errno = error;
}

} // namespace

void beginSchedule(uint64_t seed) {
    threadsSeen = 0;
    schedule = seed;
}

void endSchedule() {
    schedule = 0;
}

uint64_t yields() {
    return yieldsSeen;
}

} // namespace zm::test

using zm::test::giveWay;

// The functions of base/Mutex.h and the system's, as the compiler names them.
#define PLACE_BEFORE(symbol, result, parameters, arguments)                                                  \
    extern "C" result __real_##symbol parameters;                                                            \
    extern "C" result __wrap_##symbol parameters {                                                           \
        giveWay();                                                                                           \
        return __real_##symbol arguments;                                                                    \
    }
#define PLACE_BEHIND(symbol, parameters, arguments)                                                          \
    extern "C" void __real_##symbol parameters;                                                              \
    extern "C" void __wrap_##symbol parameters {                                                             \
        __real_##symbol arguments;                                                                           \
        giveWay();                                                                                           \
    }

PLACE_BEFORE(_ZN2zm9MutexLockC1ERNS_5MutexE, void, (void* lock, void* mutex), (lock, mutex))
PLACE_BEFORE(_ZN2zm9MutexLock4lockEv, void, (void* lock), (lock))
PLACE_BEHIND(_ZN2zm9MutexLock6unlockEv, (void* lock), (lock))
PLACE_BEHIND(_ZN2zm9MutexLockD1Ev, (void* lock), (lock))
PLACE_BEHIND(_ZN2zm9Condition4waitERNS_9MutexLockE, (void* condition, void* lock), (condition, lock))
PLACE_BEFORE(_ZN2zm9Condition9notifyOneEv, void, (void* condition), (condition))
PLACE_BEFORE(_ZN2zm9Condition9notifyAllEv, void, (void* condition), (condition))
PLACE_BEFORE(sendmsg, ssize_t, (int fd, const msghdr* message, int flags), (fd, message, flags))
PLACE_BEFORE(recvmsg, ssize_t, (int fd, msghdr* message, int flags), (fd, message, flags))
PLACE_BEFORE(poll, int, (pollfd * fds, nfds_t count, int timeout), (fds, count, timeout))
