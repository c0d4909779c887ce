#pragma once

#include <string>
#include <string_view>

namespace zm {

/** The value of a set's attribute holds its items one behind the other, each with a comma behind it: "a,b,". */

/** One item or more, none empty, each with its comma. */
bool areItems(std::string_view items);
/** `set` and behind it those of `items` that it lacks. */
std::string itemsWith(std::string_view set, std::string_view items);
/** `set` without those of `items`. */
std::string itemsWithout(std::string_view set, std::string_view items);

} // namespace zm
