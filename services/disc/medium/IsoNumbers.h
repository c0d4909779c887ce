#pragma once

#include <cstdint>
#include <string_view>

namespace zm::disc::medium {

inline constexpr uint32_t IsoBlockSize = 2048;

constexpr uint64_t isoBlock(uint32_t number) {
    return uint64_t{number} * IsoBlockSize;
}

/** The number at `place`, which lies inside `bytes`; numbers stand there twice, the first is little-endian.
 */
constexpr uint32_t isoNumber32(std::string_view bytes, size_t place) {
    uint32_t number = 0;
    for (size_t i = 4; i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(bytes[place + i - 1]);
    }
    return number;
}

} // namespace zm::disc::medium
