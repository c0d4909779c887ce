#pragma once

#include "base/Result.h"

#include <functional>

namespace zm::disc {

/**
 * Runs `task` on a thread of its own that nobody waits for, as a disc read can hang for ever. An error when
 * the system has no thread to give.
 */
Status runInBackground(std::function<void()> task);

} // namespace zm::disc
