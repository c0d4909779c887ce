#pragma once

#include <chrono>

namespace zm::test {

/**
 * The application measures some intervals by the time of day, which no manual clock holds: this puts the time
 * that it is told forward (or, with a negative time, back).
 */
void passTimeOfDay(std::chrono::milliseconds time);

/** From now on the time of day stands still there, since 1970; zero: it goes on. */
void holdTimeOfDay(std::chrono::microseconds time);

} // namespace zm::test
