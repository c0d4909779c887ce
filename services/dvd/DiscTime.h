#pragma once

#include <dvdread/ifo_types.h>

#include <cstdint>

namespace zm::dvd {

inline constexpr int64_t TicksPerSecond = 90000;

/** A time of the disc's tables in 90 kHz. */
inline int64_t ticks(const dvd_time_t& time) {
    const auto decimal = [](int coded) { return (coded >> 4) * 10 + (coded & 15); };
    const int seconds = (decimal(time.hour) * 60 + decimal(time.minute)) * 60 + decimal(time.second);
    const int frames = decimal(time.frame_u & 0x3f);
    const bool twentyFive = (time.frame_u >> 6) == 1;
    return seconds * TicksPerSecond + frames * TicksPerSecond / (twentyFive ? 25 : 30);
}

} // namespace zm::dvd
