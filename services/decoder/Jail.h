#pragma once

#include "base/Result.h"

namespace zm::decoder {

/**
 * Limits this process for the rest of its life to what decoding needs: memory, no new sockets, no files but
 * the fonts that subtitles are drawn with (see openFonts), no programs. After everything else is set up.
 */
Status lockIn();

} // namespace zm::decoder
