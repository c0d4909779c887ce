#pragma once

#include "fuzz/support/Format.h"

namespace zm::fuzz {

/** A pack of a DVD: its packets with their lengths, and the tables of a navigation pack. */
const Format& dvdPack();

} // namespace zm::fuzz
