#pragma once

#include <string>
#include <vector>

namespace zm::ctl {

/** Whether a command of the bench, its name first, only asks: it changes nothing, so that no script need repeat it. */
bool isQuestion(const std::vector<std::string>& words);

} // namespace zm::ctl
