#include "services/disc/medium/WindowReader.h"

#include <algorithm>

namespace zm::disc::medium {

namespace {

constexpr uint64_t WindowBytes = 65536;

} // namespace

Result<size_t> WindowReader::readAt(uint64_t offset, std::span<char> buffer) {
    const uint64_t begin = offset / WindowBytes * WindowBytes;
    const uint64_t skipped = offset - begin;
    if (skipped + buffer.size() > WindowBytes) {
        return m_image.readAt(offset, buffer);
    }
    if (begin != m_begin) {
        m_window.resize(WindowBytes);
        const auto count = m_image.readAt(begin, m_window);
        m_begin = count ? begin : UINT64_MAX;
        m_window.resize(count ? *count : 0);
    }
    // What lies behind a short window is the end of the image, or a place that is worth a try of its own.
    if (m_begin != begin || skipped + buffer.size() > m_window.size()) {
        return m_image.readAt(offset, buffer);
    }
    std::copy_n(m_window.begin() + static_cast<std::ptrdiff_t>(skipped), buffer.size(), buffer.begin());
    return buffer.size();
}

} // namespace zm::disc::medium
