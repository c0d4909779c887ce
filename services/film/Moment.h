#pragma once

#include <chrono>
#include <cstdint>

namespace zm::film {

/** Nanoseconds of the clock that all processes of a machine share and that is never set. */
using Moment = int64_t;

inline constexpr Moment Second = 1'000'000'000;
inline constexpr Moment Millisecond = 1'000'000;

inline Moment now() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace zm::film
