#pragma once

#include "services/disc/medium/Medium.h"

namespace zm::disc::medium {

/**
 * The disc at `path`: a folder, the disc in a drive, an image of a data disc, or the description of an image or its sectors (with a
 * description of the same name beside them) of an audio CD, VCD or data disc. The error names the path and says what
 * is wrong. What is looked for, and in which order, stands in one table.
 */
Result<std::shared_ptr<Medium>> openMedium(const std::string& path);

} // namespace zm::disc::medium
