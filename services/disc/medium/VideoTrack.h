#pragma once

#include "services/disc/medium/DiscImage.h"
#include "services/disc/medium/Medium.h"

#include <string_view>

namespace zm::disc::medium {

/** What each pack of an MPEG film begins with. */
inline constexpr std::string_view PackStart("\0\0\x01\xBA", 4);

/** Whether a film stands in the sectors of `track`. Reads its beginning. */
bool isVideoTrack(const ImageTrack& track);

/** Opens the film of a VCD's track without the empty sectors in front of it; `name` stands in error texts. */
Result<std::unique_ptr<ByteReader>> openVideoTrack(const ImageTrack& track, const std::string& name);

} // namespace zm::disc::medium
