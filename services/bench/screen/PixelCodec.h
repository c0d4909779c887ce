#pragma once

#include "base/Rect.h"
#include "base/Result.h"

#include <cstdint>
#include <string>

namespace zm::bench::screen {

/** A part of a picture of 32-bit pixels (B, G, R, ignored), `stride` bytes a row. */
struct PixelView {
    const uint8_t* pixels;
    int stride;
    Rect area;
};

/** PNG of the area, without loss; `level` 0..9 trades time for size. */
Result<std::string> encodePng(const PixelView& view, int level = 1);
/** JPEG of the area for moving pictures; `quality` 1..100. */
Result<std::string> encodeJpeg(const PixelView& view, int quality = 80);

} // namespace zm::bench::screen
