#pragma once

#include <qdb/qdb.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/** The integer in a cell; a NULL cell leaves the value. */
inline void ReadCell(qdb_result_t* result, int nRow, int nColumn, int32_t& nValue) {
    if (const void* cell = qdb_cell(result, nRow, nColumn)) {
        std::memcpy(&nValue, cell, sizeof nValue);
    }
}

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
