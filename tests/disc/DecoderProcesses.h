#pragma once

#include <string>
#include <vector>

namespace zm::test {

/** A line of a file in /proc, without its name; empty, too, when the process ends while it is read. */
std::string procLine(int pid, const std::string& file, const std::string& name);

/** The decoders of this process. */
std::vector<int> decoders();

/** The one that plays, that is locked in; 0 if there is none. */
int lockedInDecoder();

} // namespace zm::test
