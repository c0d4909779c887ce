#pragma once

#include <string>

namespace zm {

/** Seconds of "mm:ss" or "hh:mm:ss"; 0 for anything else. */
int secondsOf(const std::string& text);
/** "mm:ss", or "hh:mm:ss" from one hour on. */
std::string timeText(int seconds);

} // namespace zm
