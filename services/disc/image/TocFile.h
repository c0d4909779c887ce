#pragma once

#include "base/Result.h"
#include "services/disc/image/DiscSheet.h"

#include <string_view>

namespace zm::disc::image {

/**
 * Reads the text of a TOC file (.toc): what each track is made of, silence and parts of files. What stands before a
 * track's START belongs to the track before, as on a disc. The error names the line and what is wrong in it.
 */
Result<DiscSheet> parseTocFile(std::string_view text);

} // namespace zm::disc::image
