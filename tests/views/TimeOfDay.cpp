#include "tests/views/TimeOfDay.h"

#include <atomic>
#include <sys/time.h>

namespace zm::test {

namespace {

std::atomic<std::chrono::microseconds::rep> ahead{0};

} // namespace

void passTimeOfDay(std::chrono::milliseconds time) {
    ahead += std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

} // namespace zm::test

// The linker leads the application's calls here first.
extern "C" int __real_gettimeofday(timeval* time, void* zone);
extern "C" int __wrap_gettimeofday(timeval* time, void* zone) {
    const int result = __real_gettimeofday(time, zone);
    const auto micros = time->tv_sec * 1'000'000 + time->tv_usec + zm::test::ahead;
    *time = {micros / 1'000'000, micros % 1'000'000};
    return result;
}
