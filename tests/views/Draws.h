#pragma once

#include <string>
#include <vector>

namespace zm::test {

/** What any view has drawn since the start or the last call: "20/527" is item 527 of page 20, "all"
 * everything. */
std::vector<std::string> takeDraws();

} // namespace zm::test
