#include "services/disc/dvd/Timeline.h"

#include <algorithm>

namespace zm::disc::dvd {

namespace {

// A unit of film lasts 0.4 to 1 s, a still picture may have a longer one. What is outside is damaged.
constexpr int64_t Longest = 20 * 90000;
constexpr int64_t Usual = 90000 / 2;

} // namespace

void Timeline::restart() {
    *this = {};
}

Timeline::Span Timeline::place(int64_t begin, int64_t end, int64_t earliest) {
    if (end <= begin || end - begin > Longest) {
        end = begin + Usual;
    }
    const bool goesOn = !m_fresh && begin == m_discEnd && earliest <= m_end;
    if (!goesOn) {
        m_shift = (m_fresh ? 0 : std::max(m_end, earliest)) - begin;
        m_fresh = false;
    }
    m_discEnd = end;
    m_end = end + m_shift;
    return {begin + m_shift, m_end};
}

} // namespace zm::disc::dvd
