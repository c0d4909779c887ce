#pragma once

namespace zm::ctl {

/** What zmctl ends with when it did not succeed: a command that failed, and words that are none. */
inline constexpr int Failed = 1;
inline constexpr int WrongUsage = 2;

} // namespace zm::ctl
