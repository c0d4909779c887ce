#pragma once

#include "services/ctl/Client.h"

#include <string>
#include <vector>

namespace zm::ctl {

/** Whether the words may be a line of a script; those of the bench's commands are its business. */
Status checkScriptCommand(const std::vector<std::string>& words);

/** Carries out one command of a script, of the bench or of zmctl, until it ends; gives its exit status. */
int runScriptCommand(const Client& client, const std::vector<std::string>& words, const Client::Print& out,
                     const Client::Print& err);

} // namespace zm::ctl
