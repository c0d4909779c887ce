#pragma once

#include "base/Result.h"
#include "base/UniqueFd.h"

#include <string>

namespace zm::bench {

/** Makes the runtime folder `dir` and takes it for as long as the result lives; an error if another bench has it. */
Result<UniqueFd> takeRuntime(const std::string& dir);

} // namespace zm::bench
