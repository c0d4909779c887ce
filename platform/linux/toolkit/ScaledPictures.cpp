#include "platform/linux/toolkit/ScaledPictures.h"

#include <algorithm>
#include <cmath>

namespace zm {

namespace {

constexpr size_t mostKept = 4;

SurfacePtr scaledTo(const PictureFile& picture, int width, int height) {
    SurfacePtr scaled(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    // The library reads the pixels only.
    const SurfacePtr whole(cairo_image_surface_create_for_data(const_cast<uint8_t*>(picture.pixels.data()),
                                                               CAIRO_FORMAT_ARGB32, picture.width,
                                                               picture.height, picture.stride));
    cairo_t* cairo = cairo_create(scaled.get());
    cairo_scale(cairo, static_cast<double>(width) / picture.width,
                static_cast<double>(height) / picture.height);
    cairo_set_source_surface(cairo, whole.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_GOOD);
    cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
    cairo_paint(cairo);
    cairo_destroy(cairo);
    cairo_surface_flush(scaled.get());
    return scaled;
}

} // namespace

ScaledPictures::Fitted ScaledPictures::fitted(const PictureFilePtr& picture, const Rect& place) {
    const double scale = std::min(static_cast<double>(place.w) / picture->width,
                                  static_cast<double>(place.h) / picture->height);
    const int width = std::max(1, static_cast<int>(std::lround(picture->width * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(picture->height * scale)));
    const Rect box{place.x + (place.w - width) / 2, place.y + (place.h - height) / 2, width, height};
    const auto kept = std::find_if(m_kept.begin(), m_kept.end(), [&](const Kept& each) {
        return each.picture == picture && each.width == width && each.height == height;
    });
    if (kept != m_kept.end()) {
        return {kept->surface.get(), box};
    }
    if (m_kept.size() == mostKept) {
        m_kept.erase(m_kept.begin());
    }
    m_kept.push_back({picture, width, height, scaledTo(*picture, width, height)});
    return {m_kept.back().surface.get(), box};
}

} // namespace zm
