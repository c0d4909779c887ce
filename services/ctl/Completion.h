#pragma once

#include "services/ctl/Client.h"

#include <string>
#include <vector>

namespace zm::ctl {

/**
 * What may be written at the end of a line: `words` are those behind "zmctl", the last one (it may be empty) being
 * the one that is written. Objects are asked of the bench `client` talks to, unless the line names another one.
 */
std::vector<std::string> completions(const Client& client, std::vector<std::string> words);

/** The script that a shell ("bash", "zsh", "fish") sources; null for another one. It asks "zmctl complete". */
const char* completionScript(const std::string& shell);

} // namespace zm::ctl
