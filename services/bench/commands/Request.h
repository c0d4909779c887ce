#pragma once

#include "base/Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace zm::bench::commands {

/** A command as its callers send it: {"v":1,"argv":["word",...],"cwd":"/folder of the caller"}. */
struct Request {
    std::vector<std::string> words;
    std::string cwd; ///< empty if it was not sent
};

/** Without "v" it is version 1. The error names what that version does not have. */
Result<Request> parseRequest(std::string_view text);

} // namespace zm::bench::commands
