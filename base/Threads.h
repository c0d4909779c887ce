#pragma once

#include "base/Result.h"

#include <functional>
#include <string>
#include <thread>

namespace zm {

/** Starts a thread; `name` begins the error when the system has none to give. */
Result<std::thread> startThread(const std::string& name, std::function<void()> task);

/**
 * Runs `task` on a thread of its own that nobody waits for, as a disc read can hang for ever. An error when
 * the system has no thread to give.
 */
Status runInBackground(std::function<void()> task);

} // namespace zm
