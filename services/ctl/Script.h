#pragma once

#include "services/ctl/Client.h"

#include <string>
#include <vector>

namespace zm::ctl {

/** A command of a script. */
struct ScriptLine {
    std::string place; ///< "FILE:LINE"
    std::string text;  ///< as it was written
    std::vector<std::string> words;
    bool mayFail = false; ///< "try" stood before it
};

/**
 * The commands of `text`, one a line; `name` is the file's. The error names the first line that cannot be a
 * command. Whether the bench understands the words of its commands shows when they run.
 */
Result<std::vector<ScriptLine>> parseScript(const std::string& name, const std::string& text);

/** Takes those of a file into `lines`; "-" is standard input. Gives an exit status, having said what is wrong. */
int readScript(const std::string& file, std::vector<ScriptLine>& lines, const Client::Print& err);

/**
 * Carries the commands out one after the other until one fails; gives its exit status, having named its line
 * and what it said.
 */
int runScript(const Client& client, const std::vector<ScriptLine>& lines, const Client::Print& out,
              const Client::Print& err);

} // namespace zm::ctl
