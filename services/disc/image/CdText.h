#pragma once

#include "base/Result.h"
#include "services/disc/image/DiscSheet.h"

#include <string_view>

namespace zm::disc::image {

/** Bytes of a pack of CD-TEXT with its check sum. */
inline constexpr size_t CdTextPackBytes = 18;
/** Bytes of a pack without it. */
inline constexpr size_t CdTextBareBytes = 16;

/**
 * Puts the texts of a disc's CD-TEXT, in the first language that it has, into `sheet` where that has none yet.
 * `bytes`: packs with their check sums, as a drive gives them, with or without the drive's own header. The error names
 * the pack and what is wrong; then `sheet` is as before.
 */
Status addCdText(DiscSheet& sheet, std::string_view bytes);

/** The check sum of a pack's first 16 bytes. */
uint16_t cdTextSum(std::string_view pack);

} // namespace zm::disc::image
