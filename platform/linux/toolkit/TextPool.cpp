#include "platform/linux/toolkit/TextPool.h"

#include "platform/linux/toolkit/FontBook.h"

namespace zm {

namespace {

/** So many unused bytes are never worth packing. */
constexpr size_t smallWaste = 64 * 1024;

} // namespace

TextPool::Place TextPool::add(const wchar_t* text) {
    const size_t start = m_bytes.size();
    appendWide(m_bytes, text);
    return {static_cast<uint32_t>(start), static_cast<uint32_t>(m_bytes.size() - start)};
}

void TextPool::clear() {
    m_bytes.clear();
    m_unused = 0;
}

bool TextPool::wasteful() const {
    return m_unused > smallWaste && m_unused > m_bytes.size() / 2;
}

TextPool::Place TextPool::take(const TextPool& from, Place place) {
    const size_t start = m_bytes.size();
    m_bytes += from.at(place);
    return {static_cast<uint32_t>(start), place.size};
}

} // namespace zm
