#pragma once

#include "base/Result.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zm::disc::engine {

/** Bytes of one file for a decoder, fetched in blocks. `cancel` and `failure` from any thread; the rest from one
 * thread at a time. */
class ByteFeed {
public:
    virtual ~ByteFeed() = default;
    /** Waits for the file to be opened; its size. */
    virtual Result<uint64_t> open() = 0;
    /** At most `size` bytes from `offset` on; fewer at the end, after a failure and when cancelled. */
    std::vector<char> read(uint64_t offset, size_t size);
    virtual void cancel() = 0;
    /** Why reading ended early; empty if it did not. */
    virtual std::string failure() const = 0;

protected:
    /** Bytes of a block. */
    static constexpr size_t BlockBytes = 256 * 1024;
    /** The block that begins at `offset`; empty if there is none. */
    virtual std::vector<char> fetch(uint64_t offset) = 0;

private:
    std::vector<char> m_block; ///< the part of the file fetched last
    uint64_t m_blockStart = 0;
};

} // namespace zm::disc::engine
