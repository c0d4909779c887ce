#pragma once

#include <cstdarg>
#include <string>

namespace zm {

/**
 * Formats a statement: the printf conversions (without %n), %q (text with single quotes doubled), %Q (the
 * same within single quotes, or the word NULL for a null pointer) and %z (text that is freed). Whatever else
 * follows a per-cent sign stays as it is and takes no argument.
 */
std::string qdbFormat(const char* format, va_list args);

} // namespace zm
