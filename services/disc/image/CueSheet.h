#pragma once

#include "base/Result.h"
#include "services/disc/image/DiscSheet.h"

#include <string_view>

namespace zm::disc::image {

/**
 * Reads the text of a cue sheet, of any character set. A track lasts from its INDEX 01 to that of the next
 * track in the same file, as on a disc, and on through the silence that the next one's PREGAP asks for; it ends at
 * INDEX 00 already where the format of the sectors changes. The tracks of a file follow each other. The error names
 * the line and what is wrong in it.
 */
Result<DiscSheet> parseCueSheet(std::string_view text);

} // namespace zm::disc::image
