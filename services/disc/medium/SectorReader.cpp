#include "services/disc/medium/SectorReader.h"

#include <algorithm>

namespace zm::disc::medium {

namespace {

// Read at once: about a second of a film.
constexpr uint64_t MostSectors = 75;

} // namespace

SectorReader::SectorReader(std::unique_ptr<ByteReader> sectors, const image::TrackFormat& format,
                           uint32_t bytes, uint64_t offset, uint64_t size)
    : m_sectors(std::move(sectors)), m_format(format), m_bytes(bytes) {
    const uint64_t all = m_sectors->size() / m_format.sectorSize * m_bytes;
    m_offset = std::min(offset, all);
    m_size = std::min(size, all - m_offset);
}

Result<size_t> SectorReader::readAt(uint64_t offset, std::span<char> buffer) {
    const size_t wanted =
        offset < m_size ? static_cast<size_t>(std::min<uint64_t>(buffer.size(), m_size - offset)) : 0;
    size_t done = 0;
    std::vector<char> raw;
    while (done < wanted) {
        const uint64_t at = m_offset + offset + done;
        const uint64_t first = at / m_bytes;
        const uint64_t last = (at + (wanted - done) - 1) / m_bytes;
        raw.resize(static_cast<size_t>(std::min(last - first + 1, MostSectors)) * m_format.sectorSize);
        const auto count = m_sectors->readAt(first * m_format.sectorSize, raw);
        if (!count) {
            return count;
        }
        if (*count < m_format.sectorSize) {
            break; // shorter than it was when it was opened
        }
        auto skip = static_cast<size_t>(at % m_bytes);
        for (size_t sector = 0; sector + m_format.sectorSize <= *count && done < wanted;
             sector += m_format.sectorSize, skip = 0) {
            const size_t part = std::min(m_bytes - skip, wanted - done);
            std::copy_n(raw.begin() + static_cast<std::ptrdiff_t>(sector + m_format.headerSize + skip), part,
                        buffer.begin() + static_cast<std::ptrdiff_t>(done));
            done += part;
        }
    }
    return done;
}

Result<std::unique_ptr<ByteReader>> openSectors(const ImageTrack& track, const std::string& name,
                                                uint32_t bytes, uint64_t offset, uint64_t size) {
    auto sectors = openTrack(track, name);
    if (!sectors) {
        return sectors;
    }
    return std::unique_ptr<ByteReader>(
        std::make_unique<SectorReader>(std::move(*sectors), track.format, bytes, offset, size));
}

} // namespace zm::disc::medium
