#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zm {

/**
 * The word of `known` that an unknown `word` most likely means: the one with the fewest letters to change, leave
 * out or put in. Empty if none is near, and for words of one or two letters, which resemble everything.
 */
std::string nearestWord(std::string_view word, const std::vector<std::string>& known);

} // namespace zm
