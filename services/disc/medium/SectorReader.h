#pragma once

#include "services/disc/medium/DiscImage.h"
#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** Bytes of its own that a data sector has: of a file system, and of a film. */
inline constexpr uint32_t FileSectorBytes = 2048;
inline constexpr uint32_t FilmSectorBytes = 2324;

/** Part of what the sectors of a data track hold, without their headers and check sums. */
class SectorReader : public ByteReader {
public:
    /** `size` bytes from `offset` on, or as many as there are. `sectors`: the whole track as it stands in the
     * image, `bytes` of each sector being its own. */
    SectorReader(std::unique_ptr<ByteReader> sectors, const image::TrackFormat& format, uint32_t bytes,
                 uint64_t offset = 0, uint64_t size = UINT64_MAX);
    uint64_t size() const override { return m_size; }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override;

private:
    std::unique_ptr<ByteReader> m_sectors;
    image::TrackFormat m_format;
    uint32_t m_bytes;
    uint64_t m_offset;
    uint64_t m_size;
};

/** Opens such a part of `track`; `name` stands in error texts. */
Result<std::unique_ptr<ByteReader>> openSectors(const ImageTrack& track, const std::string& name,
                                                uint32_t bytes, uint64_t offset = 0,
                                                uint64_t size = UINT64_MAX);

} // namespace zm::disc::medium
