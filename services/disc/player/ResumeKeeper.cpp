#include "services/disc/player/ResumeKeeper.h"

namespace zm::disc::player {

namespace {

constexpr std::chrono::seconds KeepInterval{5};

} // namespace

ResumeKeeper::~ResumeKeeper() {
    flush();
}

void ResumeKeeper::moved(const ResumePoint& point) {
    m_told = point;
    auto kept = m_kept.value_or(ResumePoint{});
    kept.position = point.position;
    const bool onlyTime = m_kept && kept == point;
    if (!onlyTime || std::chrono::steady_clock::now() - m_keptAt >= KeepInterval) {
        flush();
    }
}

void ResumeKeeper::flush() {
    if (m_told && m_told != m_kept) {
        m_memory.keep(m_identity, *m_told);
        m_kept = m_told;
        m_keptAt = std::chrono::steady_clock::now();
    }
}

} // namespace zm::disc::player
