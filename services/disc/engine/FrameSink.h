#pragma once

#include <cstdint>

namespace zm::disc::engine {

/** Size of the decoder's picture in pixels. */
inline constexpr int PictureWidth = 800;
inline constexpr int PictureHeight = 480;

/** Where decoded pictures go. Any thread. */
class FrameSink {
public:
    virtual ~FrameSink() = default;
    /** Shows a picture of 32-bit pixels (B G R and one byte of no meaning); a row has `stride` bytes. */
    virtual void show(const uint8_t* pixels, int stride) = 0;
    /** Takes the last picture away: black, unless nothing was shown. */
    virtual void clear() = 0;
};

} // namespace zm::disc::engine
