#pragma once

#include "services/disc/engine/PicturePlace.h"

#include <utility>

namespace zm::disc::dvd {

/** The point of the picture, 720 wide and `lines` high, that is seen at (x, y) of a screen that counts as 720 wide: the picture
 * lies there in its own shape, enlarged or not. */
inline std::pair<int, int> touchedPoint(int x, int y, int lines, bool wide, double zoom) {
    constexpr int Width = 720;
    const auto part = engine::placeOnScreen({Width, lines, (wide ? 16 : 4) * lines, (wide ? 9 : 3) * Width});
    const auto point = [zoom](double from, int screen, int shown, int whole) {
        return static_cast<int>(((from - screen / 2.0) / (shown * zoom) + 0.5) * whole);
    };
    return {point(double(x) * engine::PictureWidth / Width, engine::PictureWidth, part.width, Width),
            point(y, engine::PictureHeight, part.height, lines)};
}

} // namespace zm::disc::dvd
