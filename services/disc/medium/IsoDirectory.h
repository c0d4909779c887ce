#pragma once

#include "services/disc/medium/Medium.h"
#include "services/disc/medium/Zisofs.h"

#include <optional>
#include <vector>

namespace zm::disc::medium {

/** A run of bytes in a disc image. */
struct IsoExtent {
    uint64_t offset = 0;
    uint64_t size = 0;
};

/** One record of a folder. */
struct IsoRecord {
    std::string name; ///< as the image spells it best: Rock Ridge, Joliet (as UTF-8) or the bare name
    Entry::Type type = Entry::Type::File;
    IsoExtent extent;
    std::string link;                       ///< the path that it stands for; empty when it stands for itself
    std::optional<ZisofsHeader> compressed; ///< what its bytes really are
};

/** The file system of a disc image (ISO 9660). */
struct IsoVolume {
    enum class Names { Plain, Long, Joliet, RockRidge };
    std::string label;
    IsoExtent root;
    Names names = Names::Plain;
    size_t skip = 0; ///< bytes before the Rock Ridge part of each record
};

/** Finds the file system of the session that begins with block `session`; the error says that there is none. */
Result<IsoVolume> readIsoVolume(ByteReader& image, uint64_t session = 0);

/**
 * The records of the folder at `extent`, without those of itself and its parent. Records that point out of
 * the image are left out. Blocks as long as `image` does.
 */
Result<std::vector<IsoRecord>> readIsoDirectory(ByteReader& image, const IsoVolume& volume,
                                                const IsoExtent& extent);

} // namespace zm::disc::medium
