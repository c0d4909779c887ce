#include "tests/views/TimeOfDay.h"

#include <atomic>
#include <sys/time.h>

namespace zm::test {

namespace {

std::atomic<std::chrono::microseconds::rep> ahead{0};
std::atomic<std::chrono::microseconds::rep> held{0};

} // namespace

void passTimeOfDay(std::chrono::milliseconds time) {
    ahead += std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

void holdTimeOfDay(std::chrono::microseconds time) {
    held = time.count();
}

} // namespace zm::test

// The linker leads the application's calls here first.
extern "C" int __real_gettimeofday(timeval* time, void* zone);
extern "C" int __wrap_gettimeofday(timeval* time, void* zone) {
    const int result = __real_gettimeofday(time, zone);
    const auto standing = zm::test::held.load();
    const auto micros = standing ? standing : time->tv_sec * 1'000'000 + time->tv_usec + zm::test::ahead;
    *time = {micros / 1'000'000, micros % 1'000'000};
    return result;
}
