#pragma once

#include "base/Result.h"
#include "services/bench/HeadUnitOptions.h"

#include <string>
#include <vector>

namespace zm {

/** The command line of zmbench. */
struct BenchOptions {
    HeadUnitOptions unit;
    int port = 0; ///< 0: any free one
    bool web = true;
};

/** Reads the arguments behind the program's name; paths become absolute. An error says what is wrong. */
Result<BenchOptions> parseBenchOptions(const std::vector<std::string>& arguments);

extern const char* const BenchUsage;

} // namespace zm
