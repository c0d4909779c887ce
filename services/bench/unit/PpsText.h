#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zm::bench::unit {

/** The attribute lines of each delta in `text` ("@name", "a::1", "-b"), one group a delta; notices are left
 * out. */
std::vector<std::vector<std::string>> ppsDeltas(std::string_view text);

/** The value of the line "name:encoding:value" if it belongs to attribute `name`, else nothing. */
bool ppsValue(std::string_view line, std::string_view name, std::string& value);

} // namespace zm::bench::unit
