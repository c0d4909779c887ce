#pragma once

#include "fuzz/support/Format.h"

namespace zm::fuzz {

/** PPS objects and their changes: lines, parted into writes by form feeds. */
const Format& ppsText();

} // namespace zm::fuzz
