#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc {

/**
 * The disc that the cue sheet at `path` describes: a VCD if a track behind the first holds a film, an audio
 * CD if a track holds sound, else a data disc, or one without contents. The error names the file and what is
 * wrong.
 */
Result<std::shared_ptr<Medium>> openCue(const std::string& path);

} // namespace zm::disc
