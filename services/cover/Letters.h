#pragma once

#include "base/Result.h"

#include <string>

namespace zm::cover {

/** Draws a square of `side` pixels in `color` ("RRGGBB") with `letters` on it, and writes it to standard output. */
Status drawLetters(int side, const std::string& color, const std::string& letters);

} // namespace zm::cover
