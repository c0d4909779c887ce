#include "services/disc/engine/PicturePlace.h"

#include <algorithm>
#include <cmath>

namespace zm::disc::engine {

namespace {

bool isKnown(const PictureSize& size) {
    return size.width > 0 && size.height > 0 && size.pixelWidth > 0 && size.pixelHeight > 0;
}

// The margin on either side so that, enlarged `zoom` times, no more of `shown` remains than the screen holds.
int margin(int pixels, int shown, double zoom, int screen) {
    const double seen = std::min(1.0, screen / (shown * zoom));
    return static_cast<int>(pixels * (1.0 - seen) / 2.0);
}

} // namespace

ScreenPart placeOnScreen(const PictureSize& size) {
    if (!isKnown(size)) {
        return {};
    }
    const double width = double(size.width) * size.pixelWidth / size.pixelHeight;
    const double scale = std::min(PictureWidth / width, double(PictureHeight) / size.height);
    ScreenPart part;
    part.width = std::max(1, static_cast<int>(std::lround(width * scale)));
    part.height = std::max(1, static_cast<int>(std::lround(size.height * scale)));
    part.x = (PictureWidth - part.width) / 2;
    part.y = (PictureHeight - part.height) / 2;
    return part;
}

PictureMargins marginsOf(const PictureSize& size, double zoom) {
    if (!isKnown(size)) {
        return {};
    }
    const ScreenPart part = placeOnScreen(size);
    return {margin(size.width, part.width, zoom, PictureWidth),
            margin(size.height, part.height, zoom, PictureHeight)};
}

} // namespace zm::disc::engine
