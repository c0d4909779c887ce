#pragma once

#include <algorithm>

namespace zm {

/** A rectangle in pixels; empty when width or height is not positive. */
struct Rect {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;

    bool empty() const { return w <= 0 || h <= 0; }
    bool contains(int px, int py) const { return px >= x && py >= y && px < x + w && py < y + h; }
    bool operator==(const Rect&) const = default;

    Rect intersected(const Rect& other) const {
        const int left = std::max(x, other.x);
        const int top = std::max(y, other.y);
        return {left, top, std::min(x + w, other.x + other.w) - left,
                std::min(y + h, other.y + other.h) - top};
    }
    /** The smallest rectangle around both; an empty one counts as nothing. */
    Rect united(const Rect& other) const {
        if (empty()) {
            return other;
        }
        if (other.empty()) {
            return *this;
        }
        const int left = std::min(x, other.x);
        const int top = std::min(y, other.y);
        return {left, top, std::max(x + w, other.x + other.w) - left,
                std::max(y + h, other.y + other.h) - top};
    }
};

} // namespace zm
