#pragma once

#include "services/disc/medium/DiscImage.h"
#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/** Whether a film stands in the sectors of `track`. Reads its beginning. */
bool isVideoTrack(const ImageTrack& track);

/** Opens the film of a VCD's track without the empty sectors in front of it; `name` stands in error texts. */
Result<std::unique_ptr<ByteReader>> openVideoTrack(const ImageTrack& track, const std::string& name);

} // namespace zm::disc::medium
