// Finds what the application has set and not drawn, and what was drawn and not painted.

#include "platform/linux/toolkit/SceneImpl.h"

#include <algorithm>
#include <cstdlib>

namespace zm {

namespace {

constexpr int bytesPerPixel = 4;
/** A curve that a clip cuts is rounded differently. */
constexpr int tolerance = 1;

/** Where a part of a picture differs, what differs most there, and by how much of 255. */
struct Difference {
    Rect area;
    int most = 0;
};

Difference difference(const uint8_t* one, int oneStride, const uint8_t* other, int otherStride,
                      const Rect& screen) {
    Difference found;
    for (int y = 0; y < screen.h; ++y) {
        const uint8_t* left = one + static_cast<ptrdiff_t>(y) * oneStride;
        const uint8_t* right = other + static_cast<ptrdiff_t>(y) * otherStride;
        const int bytes = screen.w * bytesPerPixel;
        if (std::equal(left, left + bytes, right)) {
            continue;
        }
        for (int i = 0; i < bytes; ++i) {
            if (const int off = std::abs(left[i] - right[i]); off > tolerance) {
                found.area = found.area.united({i / bytesPerPixel, y, 1, 1});
                found.most = std::max(found.most, off);
            }
        }
    }
    return found;
}

} // namespace

std::string Scene::staleness(const uint8_t* pixels, int stride) {
    const Rect& screen = m_impl->pages.screen();
    const int ownStride = screen.w * bytesPerPixel;
    std::vector<uint8_t> anew(static_cast<size_t>(ownStride) * static_cast<size_t>(screen.h));
    m_impl->paint(anew.data(), ownStride, {screen}, Contents::Set);
    const Fade& fade = m_impl->motion.fade();
    const uint8_t* seen = fade.running() ? fade.settled() : pixels;
    const auto [area, most] = difference(seen, stride, anew.data(), ownStride, screen);
    if (area.empty()) {
        return {};
    }
    std::string text = "differs at " + std::to_string(area.x) + "," + std::to_string(area.y) + " " +
                       std::to_string(area.w) + "x" + std::to_string(area.h) + " by up to " +
                       std::to_string(most);
    for (const Window* window : m_impl->pages.shown()) {
        for (const auto& item : window->items) {
            const bool changed = item->dirty || item->set != item->drawn;
            if (changed && !item->bounds().intersected(area).empty()) {
                text += ", item " + std::to_string(item->spec.id) + " of page " +
                        std::to_string(window->spec.id) + " was set and not drawn";
            }
        }
    }
    return text;
}

} // namespace zm
