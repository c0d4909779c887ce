#pragma once

#include "services/disc/medium/Medium.h"

#include <optional>

namespace zm::disc::medium {

/** What the descriptors of a UDF file system say of it. */
struct UdfVolume {
    int revision = 0;                       ///< 0x0102 for 1.02, 0 when unknown
    uint32_t blockSize = 0;                 ///< 0 when unknown
    std::optional<uint32_t> badRootBytes{}; ///< impossible length of what says where the root is
    bool isVirtual = false;  ///< blocks have moved, a table at the end of the disc says where to
    bool isSparable = false; ///< bad packets are replaced by others elsewhere

    /** "UDF 1.02". */
    std::string name() const;
};

/** Looks whether there is a UDF file system. Does not follow its folders; blocks as long as `image` does. */
std::optional<UdfVolume> findUdfVolume(ByteReader& image);

/**
 * Takes out of whole blocks of 2048 bytes what by its own sums is damaged: a file's description becomes zeros, a name in
 * a folder counts as deleted. Whether there was any; what reaches beyond its block is not looked at, nor are descriptors
 * of the disc, of which little is needed.
 */
bool hideDamage(std::span<char> blocks);

} // namespace zm::disc::medium
