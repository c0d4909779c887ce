#pragma once

#include "platform/linux/toolkit/Pictures.h"

namespace zm {

/** Columns of a backdrop; the next ones are the same. */
inline constexpr int backdropWidth = 8;

/**
 * A background that passes from `top`, which a quarter of it has, to `bottom`. Neighbouring pixels differ by one where the
 * colour lies between two that a screen has: on dark pages such steps would be seen as bands.
 */
SurfacePtr backdrop(const Color& top, const Color& bottom, int height);

} // namespace zm
