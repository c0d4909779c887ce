#pragma once

#include "fuzz/support/Format.h"

namespace zm::fuzz {

/** Names on a disc, the table by which a DVD is known, and its copy, as the target dvddisc takes them. */
const Format& dvdTables();

} // namespace zm::fuzz
