#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zm {

/**
 * The word of `known` that is most likely meant by `word`, which is none of them: the one with the fewest letters
 * to change, leave out or put in. Empty if none is near. Words of one or two letters resemble everything.
 */
std::string nearestWord(std::string_view word, const std::vector<std::string>& known);

} // namespace zm
