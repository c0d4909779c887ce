#pragma once

#include "CutText.h"

#include <qdb/qdb.h>

#include <cstdint>
#include <cstring>

/** The integer in a cell; a NULL cell leaves the value. */
inline void ReadCell(qdb_result_t* result, int nRow, int nColumn, int32_t& nValue) {
    if (const void* cell = qdb_cell(result, nRow, nColumn)) {
        std::memcpy(&nValue, cell, sizeof nValue);
    }
}
