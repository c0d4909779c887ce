#pragma once

namespace zm::test {

/**
 * The application's state store as it is in a process that has just started. The store lives as long as its
 * process; a test begins with this, so that it does not depend on those before it.
 */
void resetStateStore();

} // namespace zm::test
