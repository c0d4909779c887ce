#include "services/bench/display/SharedFrame.h"

#include <cstring>
#include <utility>

namespace zm::bench::display {

bool SharedFrame::put(const Image& frame, Rect damage) {
    MutexLock lock(m_mutex);
    const Rect area = damage.intersected({0, 0, m_frame.width, m_frame.height});
    if (area.empty()) {
        return false;
    }
    for (int y = area.y; y < area.y + area.h; ++y) {
        std::memcpy(m_frame.at(area.x, y), frame.at(area.x, y), size_t{4} * area.w);
    }
    const bool first = m_damage.empty();
    m_damage = m_damage.united(area);
    return first;
}

void SharedFrame::take(const std::function<void(const Image& frame, Rect damage)>& show) {
    MutexLock lock(m_mutex);
    show(m_frame, std::exchange(m_damage, {}));
}

} // namespace zm::bench::display
