#include "SqlText.h"

#include <cstdarg>
#include <cstdio>

std::string SqlText(const char* format, ...) {
    // The longest statement has 113 characters and two numbers.
    constexpr std::size_t SIZE = 260;
    char text[SIZE] = {};
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}
