#pragma once

#include "services/disc/medium/DiscImage.h"

namespace zm::disc::medium {

/** The mode, 1 or 2, of the data sector that begins at `place`; nothing if none does. */
std::optional<int> sectorModeAt(ByteReader& image, uint64_t place);

/** Whether the file at `path` is whole sectors of 2352 bytes of a data track, without anything that describes them. */
bool isRawImage(const std::string& path);
/** Such a file as a disc of one track. */
Result<DiscImage> readRawImage(const std::string& path);

} // namespace zm::disc::medium
