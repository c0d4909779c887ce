#pragma once

#include "fuzz/support/Format.h"

namespace zm::fuzz {

/** Messages of a client to the compositor, with the memory that goes with them. */
const Format& screenMessages();

} // namespace zm::fuzz
