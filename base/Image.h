#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zm {

/** A picture of 32-bit pixels: B, G, R, A in memory, premultiplied; in a composed frame A means nothing. */
struct Image {
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    int stride = 0; ///< bytes a row
    std::vector<uint8_t> pixels;

    Image() = default;
    /** A transparent black picture. */
    Image(int pictureWidth, int pictureHeight)
        : width(pictureWidth), height(pictureHeight), stride(4 * pictureWidth),
          pixels(static_cast<size_t>(stride) * static_cast<size_t>(pictureHeight)) {}

    const uint8_t* at(int x, int y) const { return pixels.data() + offset(x, y); }
    uint8_t* at(int x, int y) { return pixels.data() + offset(x, y); }

private:
    size_t offset(int x, int y) const { return static_cast<size_t>(y) * stride + size_t{4} * x; }
};

} // namespace zm
