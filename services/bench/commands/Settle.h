#pragma once

#include "services/bench/unit/HeadUnit.h"

#include <chrono>
#include <functional>

namespace zm::bench::commands {

/**
 * Waits until nothing moves any more: an application that is on its way is ready, a whole round of it was
 * quiet, its frames are composed and followers of PPS objects have everything. `done` is called once, never
 * inside the call, with what was still moving when `timeout` passed. Must not outlive `unit`.
 */
void settle(unit::HeadUnit& unit, std::chrono::milliseconds timeout, std::function<void(Status)> done);

} // namespace zm::bench::commands
