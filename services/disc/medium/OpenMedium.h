#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc {

/**
 * The disc at `path`: a folder, an image of a data disc, or the cue sheet or sectors (with the cue sheet of
 * the same name beside them) of an audio CD, VCD or data disc. The error names the path and says what is
 * wrong.
 */
Result<std::shared_ptr<Medium>> openMedium(const std::string& path);

} // namespace zm::disc
