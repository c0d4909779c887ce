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

} // namespace zm::disc::medium
