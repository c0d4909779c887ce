#pragma once

#include <string>

inline constexpr const char* APP_NAME = "Platen";
inline constexpr const char* APP_VERSION = "V1.0.0.1BUILD2015-09-09";

/** Prints the version and the usage text. */
void usage();
/**
 * Looks at the first argument: an option ends the process with status 0, "-v" after the version, any other
 * (unknown ones too) after the usage text. Returns if it is not an option.
 */
void get_options(int argc, char** argv);
/** Whether the long parameter for voice play was given; its text then stands in `song`. */
bool get_song(int argc, char** argv, std::string& song);
