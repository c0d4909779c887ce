#include "services/disc/library/TagStream.h"

#include <algorithm>
#include <cstring>

namespace zm::disc::library {

namespace {
constexpr size_t BlockBytes = 4096;
} // namespace

TagStream::TagStream(medium::ByteReader& reader, std::string name)
    : m_reader(reader), m_name(std::move(name)), m_block(BlockBytes) {}

bool TagStream::fill(uint64_t offset) {
    m_blockStart = offset - offset % BlockBytes;
    const auto count = m_reader.readAt(m_blockStart, m_block);
    m_blockSize = count ? *count : 0;
    return offset < m_blockStart + m_blockSize;
}

TagLib::ByteVector TagStream::readBlock(unsigned long length) {
    const auto start = static_cast<uint64_t>(std::max(0L, m_position));
    const uint64_t size = m_reader.size();
    // A broken tag may claim any length; no more than the file holds is ever set aside.
    const auto wanted = static_cast<size_t>(std::min<uint64_t>(length, start < size ? size - start : 0));
    TagLib::ByteVector result(static_cast<unsigned>(wanted), 0);
    size_t done = 0;
    if (wanted > BlockBytes) {
        const auto count = m_reader.readAt(start, {result.data(), wanted});
        done = count ? *count : 0;
    }
    while (wanted <= BlockBytes && done < wanted) {
        const uint64_t at = start + done;
        const bool held = at >= m_blockStart && at < m_blockStart + m_blockSize;
        if (!held && !fill(at)) {
            break;
        }
        const auto inside = static_cast<size_t>(at - m_blockStart);
        const size_t count = std::min(wanted - done, m_blockSize - inside);
        std::memcpy(result.data() + done, m_block.data() + inside, count);
        done += count;
    }
    result.resize(static_cast<unsigned>(done));
    m_position = static_cast<long>(start + done);
    return result;
}

void TagStream::seek(long offset, Position from) {
    const long base = from == Current ? m_position : from == End ? length() : 0;
    m_position = base + offset;
}

} // namespace zm::disc::library
