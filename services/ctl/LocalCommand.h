#pragma once

#include "services/ctl/Arguments.h"
#include "services/ctl/Client.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zm::ctl {

/** A command that zmctl carries out itself. */
struct LocalCommand {
    std::string_view name;
    /** Whether the words behind the name fit. */
    Status (*check)(const std::vector<std::string>& words);
    /** Gives the exit status; the words behind the name have been checked. */
    int (*run)(const Client& client, const std::vector<std::string>& words, const Client::Print& out,
               const Client::Print& err);
};

/** The one of that name; null if there is none. */
const LocalCommand* findLocalCommand(std::span<const LocalCommand> commands, const std::string& name);

/** Whether the words, the first of which is the command's name, fit it. */
Status checkLocalCommand(const LocalCommand& command, const std::vector<std::string>& words);

/** Carries the command out if its words fit; gives its exit status. */
int runLocalCommand(const LocalCommand& command, const Client& client, const std::vector<std::string>& words,
                    const Client::Print& out, const Client::Print& err);

/** How the command is written. */
Status wrongUsage(std::string_view command, std::vector<std::string> words);

/** Whether `take` understands the words completely. */
template <class Take>
Status fits(std::string_view command, const std::vector<std::string>& words, Take take) {
    Arguments arguments(words);
    take(arguments);
    return arguments.complete() ? ok() : wrongUsage(command, words);
}

} // namespace zm::ctl
