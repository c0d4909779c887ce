#pragma once

#include <cstdint>
#include <vector>

namespace zm::disc::cover {

/** A picture of 32-bit pixels: red, green, blue and a byte that says nothing. */
struct Bitmap {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint8_t> pixels;
};

} // namespace zm::disc::cover
