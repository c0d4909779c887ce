#pragma once

#include <cstddef>
#include <cstdint>

namespace zm {

// Numbers of several bytes as files and discs hold them, in a text or a span of bytes. What is missing counts as 0.

/** The number in `count` bytes from `at` on, the highest first. */
template <class Bytes>
constexpr uint64_t bigEndian(const Bytes& bytes, size_t at, size_t count) {
    uint64_t number = 0;
    for (size_t i = at; i < at + count; ++i) {
        number = number << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0);
    }
    return number;
}

/** The same, the lowest first. */
template <class Bytes>
constexpr uint64_t littleEndian(const Bytes& bytes, size_t at, size_t count) {
    uint64_t number = 0;
    for (size_t i = at + count; i > at; --i) {
        number = number << 8 | (i - 1 < bytes.size() ? static_cast<unsigned char>(bytes[i - 1]) : 0);
    }
    return number;
}

} // namespace zm
