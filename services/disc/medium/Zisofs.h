#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** How a file of an image is compressed. */
struct ZisofsHeader {
    uint32_t size = 0;        ///< of what it holds
    uint32_t headerBytes = 0; ///< in front of the table of its blocks
    uint32_t blockBits = 0;   ///< each block holds 2 to the power of that
};

/** What a compressed file holds. `file` is as it stands in the image; `name` stands in error texts, which say what is
 * wrong with it. */
Result<std::unique_ptr<ByteReader>> openZisofs(std::unique_ptr<ByteReader> file, const ZisofsHeader& header,
                                               const std::string& name);

} // namespace zm::disc::medium
