#pragma once

#include "fuzz/support/Format.h"

namespace zm::fuzz {

/** Blocks of an ISO 9660 image as the target iso takes them: descriptors, folders, Rock Ridge. */
const Format& isoImage();

} // namespace zm::fuzz
