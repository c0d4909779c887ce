#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <string>

namespace zm::bench::unit {

/** The latest changes of all PPS objects. */
class PpsHistory {
public:
    struct Change {
        uint64_t number; ///< from 1, without a gap
        std::chrono::steady_clock::time_point moment;
        std::string object; ///< without "/pps/"
        std::string text;   ///< PPS text
    };

    void add(const std::string& object, const std::string& text);
    const std::deque<Change>& changes() const { return m_changes; }

private:
    std::deque<Change> m_changes;
    uint64_t m_last = 0;
};

} // namespace zm::bench::unit
