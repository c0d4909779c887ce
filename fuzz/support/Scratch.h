#pragma once

#include <string>

namespace zm::fuzz {

/**
 * A folder of this process's own, empty at first, taken away when the process ends in order. It is the
 * process's runtime folder too.
 */
const std::string& scratchFolder();

} // namespace zm::fuzz
