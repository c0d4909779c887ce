#pragma once

#include "services/disc/medium/DiscImage.h"

namespace zm::disc::medium {

/** Whether the file at `path` is whole sectors of 2352 bytes of a data track, without anything that describes them. */
bool isRawImage(const std::string& path);
/** Such a file as a disc of one track. */
Result<DiscImage> readRawImage(const std::string& path);

} // namespace zm::disc::medium
