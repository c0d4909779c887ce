#pragma once

#include "base/Rect.h"

#include <vector>

namespace zm {

/** The areas that are to be drawn anew: a few rectangles that do not grow much beyond what was added. */
class Damage {
public:
    void add(const Rect& area);
    bool empty() const { return m_areas.empty(); }
    /** Gives the areas, cut to `bounds`, and forgets them. */
    std::vector<Rect> take(const Rect& bounds);

private:
    std::vector<Rect> m_areas;
};

} // namespace zm
