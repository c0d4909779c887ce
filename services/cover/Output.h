#pragma once

#include "base/Result.h"

#include <cstdint>

namespace zm::cover {

/** Hands a picture of 32-bit pixels (red, green, blue, anything) to the disc service: its sides, then its rows. */
Status writePicture(uint32_t width, uint32_t height, const uint8_t* pixels);

} // namespace zm::cover
