#pragma once

#include <chrono>

namespace zm::test {

/**
 * The application measures some intervals by the time of day, which no manual clock holds: this puts the time
 * that it is told forward (or, with a negative time, back).
 */
void passTimeOfDay(std::chrono::milliseconds time);

} // namespace zm::test
