#pragma once

#include "services/ctl/CtlClient.h"

#include <string>
#include <vector>

namespace zm {

/** Carries out one command, zmctl's own or one of the bench, until it ends; gives its exit status. */
int runCommand(const CtlClient& client, const std::vector<std::string>& words, const CtlClient::Print& out,
               const CtlClient::Print& err);
/** Whether the words of one of zmctl's own commands fit it; those of the bench are its business. */
Status checkLocalCommand(const std::vector<std::string>& words);

} // namespace zm
