// The clocks: the time of day jumps forward and back, the time since the machine's start forward, as after a
// program that stood still. What waits until a time of the shifted clock waits as long as it should.
#include "tests/anomaly/preload/Control.h"
#include "tests/anomaly/preload/Real.h"

#include <pthread.h>
#include <sys/time.h>
#include <time.h>

#include <atomic>

namespace {

using namespace zm::faults;

constexpr int64_t Second = 1'000'000'000;
constexpr int64_t Millisecond = 1'000'000;
constexpr int64_t Day = 86400;
/** Where the time of day may be beside the true one, in seconds. */
constexpr int64_t Places[] = {0, 60, -60, 3600, -3600, 400 * Day, -400 * Day};
/** How far the machine's time jumps at once, in milliseconds: what a program misses that others keep from running. */
constexpr int64_t Jumps[] = {50, 1000};

// In nanoseconds.
std::atomic<int64_t> dayShift = 0;
std::atomic<int64_t> machineShift = 0;

std::atomic<int64_t>* shiftOf(clockid_t clock) {
    switch (clock) {
    case CLOCK_REALTIME:
    case CLOCK_REALTIME_COARSE:
        return &dayShift;
    case CLOCK_MONOTONIC:
    case CLOCK_MONOTONIC_COARSE:
    case CLOCK_BOOTTIME:
        return &machineShift;
    default:
        return nullptr;
    }
}

void shift(clockid_t clock) {
    if (!armed(Kind::Clock) || !isPicked()) {
        return;
    }
    if (shiftOf(clock) == &dayShift) {
        dayShift = Places[drawn(std::size(Places))] * Second;
    } else {
        machineShift += Jumps[drawn(std::size(Jumps))] * Millisecond;
    }
}

timespec moved(const timespec& time, int64_t by) {
    const int64_t all = time.tv_sec * Second + time.tv_nsec + by;
    return {all / Second, all % Second};
}

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) {
    const int status = REAL(clock_gettime)(clock, time);
    if (const auto* by = shiftOf(clock); by && status == 0 && control()) {
        shift(clock);
        *time = moved(*time, *by);
    }
    return status;
}

extern "C" int gettimeofday(timeval* time, void* zone) noexcept {
    static_cast<void>(zone);
    timespec now{};
    const int status = ::clock_gettime(CLOCK_REALTIME, &now);
    *time = {now.tv_sec, now.tv_nsec / 1000};
    return status;
}

extern "C" time_t time(time_t* result) noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    if (result) {
        *result = now.tv_sec;
    }
    return now.tv_sec;
}

extern "C" int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock,
                                      const timespec* until) {
    const auto* by = shiftOf(clock);
    const timespec real = moved(*until, by ? -*by : 0);
    return REAL(pthread_cond_clockwait)(condition, mutex, clock, &real);
}
