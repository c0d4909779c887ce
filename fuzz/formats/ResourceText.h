#pragma once

#include "fuzz/support/Format.h"

namespace zm::fuzz {

/** Resource files, as the target resource takes several in one input. */
const Format& resourceText();

} // namespace zm::fuzz
