#pragma once

#include <cstddef>
#include <string>

/** Copies a UTF-8 text with its end mark into `size` bytes; what does not fit is cut before a whole
 * character. */
void CopyText(char* buffer, std::size_t size, const std::string& text);

template <std::size_t Size>
void CopyText(char (&buffer)[Size], const std::string& text) {
    CopyText(buffer, Size, text);
}
