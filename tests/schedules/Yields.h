#pragma once

#include <cstdint>

namespace zm::test {

/**
 * The order in which threads come: at each lock, condition and message some give way and some rest, as a seed says. The linker
 * leads those calls through here, the programs know nothing of it.
 */
void beginSchedule(uint64_t seed);
/** From here on nobody gives way. */
void endSchedule();
/** How often somebody has so far. */
uint64_t yields();

} // namespace zm::test
