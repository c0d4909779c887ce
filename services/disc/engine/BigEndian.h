#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zm::disc::engine {

/** The number in `count` bytes from `at` on, the highest first; missing bytes count as 0. */
inline uint64_t bigEndian(std::string_view bytes, size_t at, size_t count) {
    uint64_t value = 0;
    for (size_t i = at; i < at + count; ++i) {
        value = value << 8 | (i < bytes.size() ? static_cast<uint8_t>(bytes[i]) : 0);
    }
    return value;
}

} // namespace zm::disc::engine
