#pragma once

#include "services/disc/engine/FrameSink.h"

namespace zm::disc::engine {

/** A part of the screen in pixels. */
struct ScreenPart {
    int x = 0;
    int y = 0;
    int width = PictureWidth;
    int height = PictureHeight;
};

/** Size and shape of a decoder's picture as it stands upright: a pixel is pixelWidth by pixelHeight. */
struct PictureSize {
    int width = 0;
    int height = 0;
    int pixelWidth = 1;
    int pixelHeight = 1;
};

/** Where a picture in its own shape, as large as the screen allows, lies: in the middle between black bars. */
ScreenPart placeOnScreen(const PictureSize& size);

/** What is seen of a picture that is enlarged `zoom` times around its middle, in the picture's own pixels. */
struct PictureMargins {
    int sides = 0;        ///< left out to the left and to the right
    int topAndBottom = 0; ///< left out above and below
};
PictureMargins marginsOf(const PictureSize& size, double zoom);

} // namespace zm::disc::engine
