#pragma once

#include "base/Result.h"

#include <string>
#include <vector>

namespace zm::ctl {

/**
 * The words of a line, split and quoted as a shell would; `#` before a word begins a comment. Nothing is
 * expanded. A line without words gives none; an open quote is an error.
 */
Result<std::vector<std::string>> shellWords(const std::string& line);
/** The line that shellWords splits into `words` again. */
std::string shellLine(const std::vector<std::string>& words);

} // namespace zm::ctl
