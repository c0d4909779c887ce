#include "services/bench/display/Placement.h"

#include <algorithm>
#include <cmath>

namespace zm::bench::display {

Placement placeScreen(int windowWidth, int windowHeight, ScreenSize screen) {
    if (windowWidth <= 0 || windowHeight <= 0) {
        return {};
    }
    const double scale = std::min(static_cast<double>(windowWidth) / screen.width,
                                  static_cast<double>(windowHeight) / screen.height);
    const int width = std::max(1, static_cast<int>(std::lround(screen.width * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(screen.height * scale)));
    const int multiple = (width + screen.width - 1) / screen.width;
    return {{(windowWidth - width) / 2, (windowHeight - height) / 2, width, height},
            multiple,
            width == multiple * screen.width && height == multiple * screen.height,
            screen};
}

std::optional<std::pair<int, int>> screenPoint(const Placement& placement, float x, float y, bool outside) {
    const Rect& area = placement.area;
    if (area.empty()) {
        return std::nullopt;
    }
    const auto [width, height] = placement.screen;
    const int screenX = static_cast<int>(std::floor((x - static_cast<float>(area.x)) *
                                                    static_cast<float>(width) / static_cast<float>(area.w)));
    const int screenY = static_cast<int>(std::floor((y - static_cast<float>(area.y)) *
                                                    static_cast<float>(height) / static_cast<float>(area.h)));
    const bool inside = placement.screen.area().contains(screenX, screenY);
    if (!inside && !outside) {
        return std::nullopt;
    }
    return std::pair(std::clamp(screenX, 0, width - 1), std::clamp(screenY, 0, height - 1));
}

} // namespace zm::bench::display
