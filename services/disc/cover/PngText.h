#pragma once

#include "base/Result.h"
#include "services/disc/cover/Bitmap.h"

#include <string>

namespace zm::disc::cover {

/** The picture as the bytes of a PNG. */
Result<std::string> pngOf(const Bitmap& picture);

} // namespace zm::disc::cover
