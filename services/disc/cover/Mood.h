#pragma once

#include "services/disc/cover/Bitmap.h"

#include <string>

namespace zm::disc::cover {

/** The colour that a picture is remembered by, "#RRGGBB": the mean, in which what is colourful counts most. */
std::string moodOf(const Bitmap& picture);

} // namespace zm::disc::cover
