#pragma once

#include "base/Result.h"
#include "services/disc/image/DiscSheet.h"

#include <string>
#include <string_view>

namespace zm::disc::image {

/**
 * Reads the description of an image in three files (.ccd, .img, .sub): sections of names and values. `image` is the
 * name of the file with the sectors, 2352 bytes each. The sub-channels are not looked at. The error names the line, or
 * the track, and what is wrong.
 */
Result<DiscSheet> parseCcdSheet(std::string_view text, const std::string& image);

} // namespace zm::disc::image
