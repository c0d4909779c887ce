#pragma once

#include <cstdint>
#include <limits>

namespace zm::disc {

/** Which of a file's decoded samples are its sound, counted without its channels. */
struct SoundRange {
    static constexpr int64_t ToTheEnd = std::numeric_limits<int64_t>::max();
    int64_t first = 0;
    int64_t count = ToTheEnd;
};

} // namespace zm::disc
