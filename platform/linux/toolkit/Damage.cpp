#include "platform/linux/toolkit/Damage.h"

namespace zm {

namespace {

constexpr size_t mostAreas = 8;
/** Two areas become one when the one costs at most this part more to draw. */
constexpr double toleratedGrowth = 1.2;

double size(const Rect& area) {
    return static_cast<double>(area.w) * area.h;
}

} // namespace

void Damage::add(const Rect& area) {
    if (area.empty()) {
        return;
    }
    Rect whole = area;
    for (size_t i = 0; i < m_areas.size();) {
        const Rect both = whole.united(m_areas[i]);
        if (size(both) <= (size(whole) + size(m_areas[i])) * toleratedGrowth) {
            whole = both;
            m_areas.erase(m_areas.begin() + static_cast<std::ptrdiff_t>(i));
            i = 0;
        } else {
            ++i;
        }
    }
    m_areas.push_back(whole);
    if (m_areas.size() > mostAreas) {
        Rect all;
        for (const Rect& one : m_areas) {
            all = all.united(one);
        }
        m_areas = {all};
    }
}

std::vector<Rect> Damage::take(const Rect& bounds) {
    std::vector<Rect> taken;
    for (const Rect& area : m_areas) {
        if (const Rect inside = area.intersected(bounds); !inside.empty()) {
            taken.push_back(inside);
        }
    }
    m_areas.clear();
    return taken;
}

} // namespace zm
