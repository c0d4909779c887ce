#pragma once

#include <string>
#include <vector>

namespace zm {

/** The runtime folders of the benches of this user that run now, sorted. */
std::vector<std::string> runningBenches();

} // namespace zm
