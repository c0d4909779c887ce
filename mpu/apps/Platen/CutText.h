#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

/** Copies as much of a UTF-8 text as fits with its final NUL, ending at a whole character. */
inline void CopyText(char* szTarget, size_t size, std::string_view text) {
    auto isInsideCharacter = [&](size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
    size_t length = text.size() < size ? text.size() : size - 1;
    // A character has four bytes at most; what goes on longer is no UTF-8 and may be cut anywhere.
    for (int i = 0; i < 3 && length < text.size() && length > 0 && isInsideCharacter(length); ++i) {
        --length;
    }
    std::memcpy(szTarget, text.data(), length);
    szTarget[length] = '\0';
}
