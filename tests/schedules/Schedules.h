#pragma once

#include "tests/schedules/Yields.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

namespace zm::test {

/**
 * Stories of a few threads, each told once for every seed: ZM_SCHEDULE_SEEDS of them (100), or ZM_SCHEDULE_SEED alone. A story that
 * does not come to its end names its seed, too.
 */
class Schedules : public testing::Test {
protected:
    using TimePoint = std::chrono::steady_clock::time_point;

    template <class Story>
    void tell(Story story) {
        for (uint64_t seed = firstSeed(); seed <= lastSeed() && !HasFailure(); ++seed) {
            SCOPED_TRACE("ZM_SCHEDULE_SEED=" + std::to_string(seed));
            const Watch watch(seed);
            beginSchedule(seed);
            story(seed);
            endSchedule();
        }
    }
    /** Late enough that only a story that hangs comes to it. */
    static TimePoint deadline() { return std::chrono::steady_clock::now() + std::chrono::seconds(20); }

private:
    /** Ends the program with the seed's number when a story hangs. */
    class Watch {
    public:
        explicit Watch(uint64_t seed);
        ~Watch();
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;
    };
    static uint64_t firstSeed();
    static uint64_t lastSeed();
};

} // namespace zm::test
