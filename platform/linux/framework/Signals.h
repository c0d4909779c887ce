#pragma once

#include "base/Result.h"

namespace zm {

/** Blocks the signals that ask the application to end, in the calling thread and those that it starts. */
Status blockEndSignals();
/** Waits until such a signal arrives or `fd` becomes readable. The signals must be blocked. */
Status waitForEndSignal(int fd);

} // namespace zm
