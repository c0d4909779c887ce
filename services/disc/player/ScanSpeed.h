#pragma once

#include <array>
#include <cstddef>

namespace zm::disc::player {

enum class ScanDirection { Forward, Backward };

/** The steps of fast forward and backward: each press is the next speed, after the last comes the first
 * again. */
class ScanSpeed {
public:
    static constexpr std::array<int, 4> speeds{2, 4, 8, 20};

    bool active() const { return m_active; }
    ScanDirection direction() const { return m_direction; }
    /** Place in `speeds`, also the offset of the tip that shows it. */
    size_t step() const { return m_step; }
    /** The factor, negative backwards; 1 when not active. */
    int factor() const {
        const int speed = m_active ? speeds[m_step] : 1;
        return m_active && m_direction == ScanDirection::Backward ? -speed : speed;
    }

    void press(ScanDirection direction) {
        m_step = m_active && direction == m_direction ? (m_step + 1) % speeds.size() : 0;
        m_direction = direction;
        m_active = true;
    }
    void end() { m_active = false; }

private:
    bool m_active = false;
    ScanDirection m_direction = ScanDirection::Forward;
    size_t m_step = 0;
};

} // namespace zm::disc::player
