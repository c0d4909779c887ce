#pragma once

#include "services/disc/medium/Medium.h"

#include <string>
#include <vector>

namespace zm::disc::library {

/**
 * The pictures in a music file's tags, the likeliest cover first: the front, then what has no other meaning, small icons
 * last. What they hold is as it stands there: nothing says that it is a picture. `name` tells the format. Blocks.
 */
std::vector<std::string> embeddedPictures(medium::ByteReader& reader, const std::string& name);

} // namespace zm::disc::library
