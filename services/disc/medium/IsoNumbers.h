#pragma once

#include "base/ByteNumbers.h"

#include <cstdint>
#include <string_view>

namespace zm::disc::medium {

inline constexpr uint32_t IsoBlockSize = 2048;

/** Where the root folder's record stands in a volume descriptor. */
inline constexpr size_t IsoRootPlace = 156;

constexpr uint64_t isoBlock(uint32_t number) {
    return uint64_t{number} * IsoBlockSize;
}

/** The number at `place`; numbers stand there twice, the first is little-endian. */
constexpr uint32_t isoNumber32(std::string_view bytes, size_t place) {
    return static_cast<uint32_t>(littleEndian(bytes, place, 4));
}

constexpr unsigned char isoByte(std::string_view bytes, size_t place) {
    return static_cast<unsigned char>(bytes[place]);
}

} // namespace zm::disc::medium
