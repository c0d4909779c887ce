#pragma once

#include "base/Result.h"
#include "services/disc/cover/Bitmap.h"

#include <functional>
#include <string>
#include <string_view>

namespace zm::disc::cover {

/** Sides of a cover as it is kept, in pixels: enough for the largest screen. */
inline constexpr uint32_t CoverSide = 320;

/** Whether nobody waits for the result any more. */
using Stop = std::function<bool()>;

/**
 * The picture in the bytes of a file, decoded and scaled by a program of its own that can do nothing else: the bytes are
 * a stranger's. Blocks, for seconds in the worst case. Any thread.
 */
Result<Bitmap> decodePicture(std::string_view file, const Stop& stop);
/** A tile with a few letters on it, drawn by the same program. `color` is "RRGGBB". */
Result<Bitmap> drawLetters(const std::string& letters, const std::string& color, const Stop& stop);

} // namespace zm::disc::cover
