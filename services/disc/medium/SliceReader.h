#pragma once

#include "base/UniqueFd.h"
#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** `size` bytes of an open file from `base` on: a whole file, or a file's extent inside a disc image. */
class SliceReader : public ByteReader {
public:
    /** `name` stands in error texts. */
    SliceReader(UniqueFd fd, uint64_t base, uint64_t size, std::string name)
        : m_fd(std::move(fd)), m_base(base), m_size(size), m_name(std::move(name)) {}
    uint64_t size() const override { return m_size; }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override;

private:
    UniqueFd m_fd;
    uint64_t m_base;
    uint64_t m_size;
    std::string m_name;
};

/** Opens `size` bytes of the file `path` from `offset` on; `name` stands in error texts. */
Result<std::unique_ptr<ByteReader>> openSlice(const std::string& path, uint64_t offset, uint64_t size,
                                              const std::string& name);

} // namespace zm::disc::medium
