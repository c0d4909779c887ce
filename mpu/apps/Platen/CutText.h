#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

/** As much of a UTF-8 text as fits into `size` bytes with a final NUL, ending at a whole character. */
inline std::string_view CutText(std::string_view text, size_t size) {
    auto isInsideCharacter = [&](size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
    size_t length = text.size() < size ? text.size() : size - 1;
    // A character has four bytes at most; a longer run is not UTF-8 and may be cut anywhere.
    for (int i = 0; i < 3 && length < text.size() && length > 0 && isInsideCharacter(length); ++i) {
        --length;
    }
    return text.substr(0, length);
}

/** Copies what fits with its final NUL. */
inline void CopyText(char* szTarget, size_t size, std::string_view text) {
    const std::string_view cut = CutText(text, size);
    std::memcpy(szTarget, cut.data(), cut.size());
    szTarget[cut.size()] = '\0';
}
