#pragma once

#include "services/disc/engine/SoundRange.h"

namespace zm::disc::engine {

/** The sound of an MP4 file with one track: by its edit list, or by the tag "iTunSMPB". */
std::optional<SoundRange> readMp4Range(const ReadBytes& read);

} // namespace zm::disc::engine
