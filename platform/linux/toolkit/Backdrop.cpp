#include "platform/linux/toolkit/Backdrop.h"

#include <algorithm>

namespace zm {

namespace {

constexpr double topPart = 0.25;

// How soon a pixel of the pattern takes the brighter one of two colours, of 64: neighbours as differently as can be.
int threshold(int x, int y) {
    int value = 0;
    for (int bit = 0; bit < 3; ++bit) {
        const int across = (x >> bit) & 1;
        const int down = (y >> bit) & 1;
        value = value << 2 | ((across ^ down) << 1) | down;
    }
    return value;
}

} // namespace

SurfacePtr backdrop(const Color& top, const Color& bottom, int height) {
    SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, backdropWidth, height));
    cairo_surface_flush(surface.get());
    uint8_t* rows = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; y < height; ++y) {
        const double down = std::clamp((static_cast<double>(y) / height - topPart) / (1 - topPart), 0.0, 1.0);
        const double alpha = top.alpha + (bottom.alpha - top.alpha) * down;
        for (int x = 0; x < backdropWidth; ++x) {
            const double rounding = (threshold(x, y % backdropWidth) + 0.5) / 64;
            const auto part = [&](double from, double to) {
                return static_cast<uint8_t>((from + (to - from) * down) * alpha * 255 + rounding);
            };
            uint8_t* pixel = rows + static_cast<ptrdiff_t>(y) * stride + x * 4;
            pixel[0] = part(top.blue, bottom.blue);
            pixel[1] = part(top.green, bottom.green);
            pixel[2] = part(top.red, bottom.red);
            pixel[3] = static_cast<uint8_t>(alpha * 255 + 0.5);
        }
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

} // namespace zm
