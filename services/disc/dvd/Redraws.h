#pragma once

#include <chrono>
#include <utility>

namespace zm::disc::dvd {

/** When a button is drawn once more: one that was drawn while the first pictures of a still menu were on their way is
 * lost at times. */
class Redraws {
public:
    bool isDue(int button) {
        const auto now = std::chrono::steady_clock::now();
        if (std::exchange(m_button, button) != button) {
            m_left = 3;
            m_next = now + Interval;
        }
        if (button == 0 || m_left == 0 || now < m_next) {
            return false;
        }
        --m_left;
        m_next = now + Interval;
        return true;
    }

private:
    static constexpr std::chrono::milliseconds Interval{200};
    int m_button = 0;
    int m_left = 0;
    std::chrono::steady_clock::time_point m_next;
};

} // namespace zm::disc::dvd
