#pragma once

#include <string>

namespace zm::disc::cover {

/**
 * What stands on the cover of a song without a picture: the first letters of two words of scripts that have capitals, one
 * character of all others, up to two digits of a number; a note for a title without letters.
 */
std::string initialsOf(const std::string& title);

/** The colour of such a cover, "RRGGBB": the same for the same text; white can be read on it. */
std::string tileColor(const std::string& text);

} // namespace zm::disc::cover
