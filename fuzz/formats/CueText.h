#pragma once

#include "fuzz/support/Format.h"

namespace zm::fuzz {

/** Cue sheets, with tracks and times that grow. */
const Format& cueText();

} // namespace zm::fuzz
