#include "tests/schedules/Schedules.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace zm::test {

namespace {

constexpr unsigned LongestStorySeconds = 60;

std::array<char, 80> hanging; ///< what the signal's handler writes

uint64_t number(const char* name, uint64_t otherwise) {
    const char* text = std::getenv(name);
    return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

void onAlarm(int) {
    [[maybe_unused]] const auto written =
        ::write(STDERR_FILENO, hanging.data(), std::char_traits<char>::length(hanging.data()));
    ::_exit(1);
}

/** Says at the end how much was tried. */
class Total : public testing::Environment {
public:
    void TearDown() override {
        const auto* all = testing::UnitTest::GetInstance();
        std::printf("schedules: %llu orders of %d stories, threads gave way %llu times, %d failed\n",
                    static_cast<unsigned long long>(number("ZM_SCHEDULE_SEEDS", 100)),
                    all->test_to_run_count(), static_cast<unsigned long long>(yields()),
                    all->failed_test_count());
    }
};

[[maybe_unused]] const auto* const total = testing::AddGlobalTestEnvironment(new Total);

} // namespace

Schedules::Watch::Watch(uint64_t seed) {
    std::snprintf(hanging.data(), hanging.size(), "ZM_SCHEDULE_SEED=%llu: hangs\n",
                  static_cast<unsigned long long>(seed));
    ::signal(SIGALRM, onAlarm);
    ::alarm(LongestStorySeconds);
}

Schedules::Watch::~Watch() {
    ::alarm(0);
}

uint64_t Schedules::firstSeed() {
    return number("ZM_SCHEDULE_SEED", 1);
}

uint64_t Schedules::lastSeed() {
    return number("ZM_SCHEDULE_SEED", number("ZM_SCHEDULE_SEEDS", 100));
}

} // namespace zm::test
