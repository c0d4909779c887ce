#include "platform/linux/framework/ChangeOrder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zm {

void ChangeOrder::add(int object, PpsChanges read) {
    m_upTo[object] = read.upTo;
    const auto known = static_cast<std::ptrdiff_t>(m_waiting.size());
    for (auto& change : read.changes) {
        m_waiting.push_back({change.number, object, std::move(change.text)});
    }
    // Present states of the same moment stay in the order of reading.
    std::ranges::inplace_merge(m_waiting, m_waiting.begin() + known, {}, &Change::number);
}

std::vector<std::pair<int, std::string>> ChangeOrder::take(const std::vector<int>& unread) {
    uint64_t known = UINT64_MAX;
    for (int object : unread) {
        known = std::min(known, m_upTo[object]);
    }
    const auto end = std::ranges::upper_bound(m_waiting, known, {}, &Change::number);
    std::vector<std::pair<int, std::string>> result;
    for (auto change = m_waiting.begin(); change != end; ++change) {
        result.emplace_back(change->object, std::move(change->text));
    }
    m_waiting.erase(m_waiting.begin(), end);
    return result;
}

} // namespace zm
