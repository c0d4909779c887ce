#pragma once

#include "base/ByteNumbers.h"

#include <cstdint>
#include <string_view>

namespace zm::disc::medium {

inline constexpr uint32_t IsoBlockSize = 2048;

constexpr uint64_t isoBlock(uint32_t number) {
    return uint64_t{number} * IsoBlockSize;
}

/** The number at `place`; numbers stand there twice, the first is little-endian. */
constexpr uint32_t isoNumber32(std::string_view bytes, size_t place) {
    return static_cast<uint32_t>(littleEndian(bytes, place, 4));
}

} // namespace zm::disc::medium
