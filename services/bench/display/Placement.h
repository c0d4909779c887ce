#pragma once

#include "base/Rect.h"
#include "base/ScreenSize.h"

#include <optional>
#include <utility>

namespace zm::bench::display {

/** Where the head unit's screen lies inside a window, both in pixels: as large as fits with its shape kept, in the middle. */
struct Placement {
    Rect area;         ///< of the window
    int multiple = 1;  ///< the smallest whole multiple of the screen that is not smaller than `area`
    bool exact = true; ///< `area` is that multiple: every pixel of the screen is as large as the next one
    ScreenSize screen = {}; ///< the head unit's

    bool operator==(const Placement&) const = default;
};

/** An empty area for a window without one. */
Placement placeScreen(int windowWidth, int windowHeight, ScreenSize screen = {});

/**
 * The screen's pixel under a place of the window; none beside the screen. With `outside` the nearest pixel instead:
 * a finger that is down may leave the screen.
 */
std::optional<std::pair<int, int>> screenPoint(const Placement& placement, float x, float y, bool outside);

} // namespace zm::bench::display
