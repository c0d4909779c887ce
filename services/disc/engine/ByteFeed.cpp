#include "services/disc/engine/ByteFeed.h"

#include <algorithm>

namespace zm::disc::engine {

std::vector<char> ByteFeed::read(uint64_t offset, size_t size) {
    std::vector<char> bytes;
    while (bytes.size() < size) {
        const uint64_t at = offset + bytes.size();
        if (at < m_blockStart || at >= m_blockStart + m_block.size()) {
            m_block = fetch(at);
            m_blockStart = at;
        }
        if (m_block.empty()) {
            break;
        }
        const auto first = static_cast<std::ptrdiff_t>(at - m_blockStart);
        const size_t count = std::min(size - bytes.size(), m_block.size() - static_cast<size_t>(first));
        bytes.insert(bytes.end(), m_block.begin() + first,
                     m_block.begin() + first + static_cast<std::ptrdiff_t>(count));
    }
    return bytes;
}

} // namespace zm::disc::engine
