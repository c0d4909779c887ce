#pragma once

#include <string>
#include <vector>

namespace zm::ctl {

/** The runtime folders of the benches of this user that run now, sorted. */
std::vector<std::string> runningBenches();

} // namespace zm::ctl
