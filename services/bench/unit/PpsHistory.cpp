#include "services/bench/unit/PpsHistory.h"

namespace zm::bench::unit {

namespace {

constexpr size_t MostChanges = 20000;

} // namespace

void PpsHistory::add(const std::string& object, const std::string& text) {
    m_changes.push_back({++m_last, std::chrono::steady_clock::now(), object, text});
    if (m_changes.size() > MostChanges) {
        m_changes.pop_front();
    }
}

} // namespace zm::bench::unit
