#pragma once

#include "base/Result.h"
#include "services/disc/Medium.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zm::disc {

/**
 * Reads one file of a disc for a decoder. The drive is touched by a thread of its own only, so that nobody is
 * held by a read that hangs: every call here ends after the read's deadline at the latest, or at once when
 * `cancel` is called. A thread that hangs is left behind and ends with its read. `cancel` and `failure` from
 * any thread; the rest from one thread at a time.
 */
class Feed {
public:
    Feed(std::shared_ptr<Medium> medium, std::string path);
    ~Feed();
    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;

    /** Waits for the file to be opened; its size. */
    Result<uint64_t> open();
    /** At most `size` bytes from `offset` on; none at the end, after a failure and when cancelled. */
    std::vector<char> read(uint64_t offset, size_t size);
    void cancel();
    /** Why reading ended early; empty if it did not. */
    std::string failure() const;

private:
    struct Shared;
    /** Makes the block that begins at `offset` the present one; false if there is none. */
    bool fetch(uint64_t offset);

    std::shared_ptr<Shared> m_shared;
    std::vector<char> m_block; ///< the part of the file read last
    uint64_t m_blockStart = 0;
};

} // namespace zm::disc
