#pragma once

#include "base/Result.h"

namespace zm::cover {

/**
 * Decodes the picture on standard input (JPEG, PNG, GIF or BMP by its first bytes), behind locked doors, and writes it,
 * upright and `side` pixels wide or high, to standard output. One that is nearly square is cut to a square.
 */
Status decode(int side);

} // namespace zm::cover
