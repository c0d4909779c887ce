#pragma once

#include "base/ScreenSize.h"

#include <cstdint>
#include <functional>

namespace zm::disc::engine {

/** Size of the decoder's picture in pixels: that of the unit's screen. */
inline const int PictureWidth = screenSize().width;
inline const int PictureHeight = screenSize().height;

/** Writes each pixel of a picture: 32 bits (B G R and one byte of no meaning); a row has `stride` bytes. */
using DrawPicture = std::function<void(uint8_t* pixels, int stride)>;

/** Copies a picture that lies in such pixels. */
DrawPicture copyOf(const uint8_t* pixels, int stride);

/** Where decoded pictures go. Any thread. */
class FrameSink {
public:
    virtual ~FrameSink() = default;
    /** Shows what `draw`, which is called at most once and before this returns, draws. */
    virtual void show(const DrawPicture& draw) = 0;
    /** Takes the last picture away: black, unless nothing was shown. */
    virtual void clear() = 0;
};

} // namespace zm::disc::engine
