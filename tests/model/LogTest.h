#pragma once

namespace zm::test {

/** Logs from another source file. */
void logInOtherFile(const char* text);

} // namespace zm::test
