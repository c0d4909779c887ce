#pragma once

#include <string>
#include <vector>

namespace zm {

/** The project's version, as "0.2.0". */
extern const char* const Version;

/**
 * Answers the one argument "--version" (as "zmbench 0.2.0"), "--help" or "-h" (the usage) on standard output.
 * False when the arguments ask for something else; nothing is printed then.
 */
bool answerAbout(const std::vector<std::string>& arguments, const char* program, const char* usage);

} // namespace zm
