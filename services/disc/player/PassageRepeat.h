#pragma once

#include <chrono>
#include <optional>

namespace zm::disc::player {

/** A-B repeat: the first press marks A, the second B, the third ends it. */
class PassageRepeat {
public:
    using Time = std::chrono::milliseconds;
    enum class Change { Begun, On, Off };

    Change press(Time position) {
        if (!m_begin) {
            m_begin = position;
            return Change::Begun;
        }
        if (!m_end && position > *m_begin) {
            m_end = position;
            return Change::On;
        }
        clear();
        return Change::Off;
    }
    bool isOn() const { return m_end.has_value(); }
    void clear() {
        m_begin.reset();
        m_end.reset();
    }
    /** Where to go back to when `position` has been reached. */
    std::optional<Time> jumpFrom(Time position) const {
        return m_end && position >= *m_end ? m_begin : std::nullopt;
    }

private:
    std::optional<Time> m_begin;
    std::optional<Time> m_end;
};

} // namespace zm::disc::player
