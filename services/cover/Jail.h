#pragma once

#include "base/Result.h"

namespace zm::cover {

/**
 * From now on this process can compute, read and write what is open, and nothing else, for as much memory and time as a
 * picture may take. Builds with the address sanitizer are not locked in.
 */
Status lockIn();

} // namespace zm::cover
