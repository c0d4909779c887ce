#pragma once

#include "services/disc/medium/Medium.h"

#include <vector>

namespace zm::disc::medium {

/**
 * Another reader's bytes for whoever looks at many places near each other: read 64 KB at a time, as a drive takes as long for one
 * block as for thirty. Where that cannot be read, just what was asked for is.
 */
class WindowReader : public ByteReader {
public:
    /** The other one must outlive this. */
    explicit WindowReader(ByteReader& image) : m_image(image) {}
    uint64_t size() const override { return m_image.size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override;

private:
    ByteReader& m_image;
    uint64_t m_begin = UINT64_MAX; ///< of the window; none yet
    std::vector<char> m_window;
};

} // namespace zm::disc::medium
