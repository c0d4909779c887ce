#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** Where in an image the file system to be read is. */
struct IsoSession {
    uint64_t firstBlock = 0; ///< number that the disc gives to the image's first block
    uint64_t begin = 0;      ///< of the newest session, as the disc counts blocks
};

/**
 * Looks for the newest session of an ISO 9660 disc, and, as its addresses count from the disc's beginning, for the
 * block that the image begins with: a data track behind others begins in the middle of the disc.
 */
IsoSession findNewestSession(ByteReader& image);

/** An image that begins in the middle of a disc, read at the disc's addresses. */
class ShiftedReader : public ByteReader {
public:
    ShiftedReader(std::unique_ptr<ByteReader> image, uint64_t shift)
        : m_image(std::move(image)), m_shift(shift) {}
    uint64_t size() const override { return m_image->size() + m_shift; }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        // What lies before the image cannot be read.
        return offset < m_shift ? Result<size_t>(size_t{0}) : m_image->readAt(offset - m_shift, buffer);
    }

private:
    std::unique_ptr<ByteReader> m_image;
    uint64_t m_shift;
};

} // namespace zm::disc::medium
