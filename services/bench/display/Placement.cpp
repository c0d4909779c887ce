#include "services/bench/display/Placement.h"

#include "services/bench/screen/Compositor.h"

#include <algorithm>
#include <cmath>

namespace zm::bench::display {

namespace {

constexpr int Width = screen::Compositor::Width;
constexpr int Height = screen::Compositor::Height;

} // namespace

Placement placeScreen(int windowWidth, int windowHeight) {
    if (windowWidth <= 0 || windowHeight <= 0) {
        return {};
    }
    const double scale =
        std::min(static_cast<double>(windowWidth) / Width, static_cast<double>(windowHeight) / Height);
    const int width = std::max(1, static_cast<int>(std::lround(Width * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(Height * scale)));
    const int multiple = (width + Width - 1) / Width;
    return {{(windowWidth - width) / 2, (windowHeight - height) / 2, width, height},
            multiple,
            width == multiple * Width && height == multiple * Height};
}

std::optional<std::pair<int, int>> screenPoint(const Placement& placement, float x, float y, bool outside) {
    const Rect& area = placement.area;
    if (area.empty()) {
        return std::nullopt;
    }
    const int screenX = static_cast<int>(std::floor((x - static_cast<float>(area.x)) * Width / area.w));
    const int screenY = static_cast<int>(std::floor((y - static_cast<float>(area.y)) * Height / area.h));
    const bool inside = screenX >= 0 && screenX < Width && screenY >= 0 && screenY < Height;
    if (!inside && !outside) {
        return std::nullopt;
    }
    return std::pair(std::clamp(screenX, 0, Width - 1), std::clamp(screenY, 0, Height - 1));
}

} // namespace zm::bench::display
