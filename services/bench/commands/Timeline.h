#pragma once

#include "services/bench/commands/Recording.h"
#include "services/bench/unit/HeadUnit.h"

#include <chrono>
#include <string>

namespace zm::bench::commands {

/**
 * What has happened in the last `time`, on one clock, in the trace format that Chrome and Perfetto open: a lane for
 * commands, one for composed frames, one for each PPS object, one for each program's log.
 */
std::string timelineText(unit::HeadUnit& unit, const Recording& recording, std::chrono::milliseconds time);

} // namespace zm::bench::commands
