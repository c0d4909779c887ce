#pragma once

#include "services/ctl/Client.h"

#include <string>
#include <vector>

namespace zm::ctl {

/** Carries out one command, zmctl's own or one of the bench, until it ends; gives its exit status. */
int runCommand(const Client& client, const std::vector<std::string>& words, const Client::Print& out,
               const Client::Print& err);

} // namespace zm::ctl
