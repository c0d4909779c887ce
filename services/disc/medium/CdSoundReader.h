#pragma once

#include "base/UniqueFd.h"
#include "services/disc/medium/Medium.h"

#include <set>
#include <vector>

namespace zm::disc::medium {

/**
 * Sectors of sound of the CD in a drive, 2352 bytes each. The drive is asked for several at once; where that fails for those
 * that are wanted alone, twice each. A sector that the drive has refused twice is not asked for again.
 */
class CdSoundReader : public ByteReader {
public:
    /** `count` sectors from `first` on; `name` stands in error texts. */
    CdSoundReader(UniqueFd drive, uint64_t first, uint64_t count, std::string name);
    uint64_t size() const override;
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override;

private:
    Status find(uint64_t sector);
    Status read(uint64_t sector, uint64_t count);

    UniqueFd m_drive;
    uint64_t m_first;
    uint64_t m_count;
    std::string m_name;
    std::vector<char> m_window;  ///< read last
    uint64_t m_begin = 0;        ///< its first sector
    uint64_t m_carefulUntil = 0; ///< up to there sectors are read alone
    uint64_t m_carefulFrom = 0;
    std::set<uint64_t> m_bad;
};

/** Opens such sectors of the drive at `path`. */
Result<std::unique_ptr<ByteReader>> openCdSound(const std::string& path, uint64_t first, uint64_t count,
                                                const std::string& name);

} // namespace zm::disc::medium
