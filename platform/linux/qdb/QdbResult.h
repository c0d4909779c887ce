#pragma once

#include "qdb/qdb.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

/**
 * The rows of one statement, as a copy of their own. Every cell is aligned to eight bytes and has as many at
 * least, and a zero byte follows at the latest behind them. So reading a cell as something else than it is
 * stays inside it.
 */
struct qdb_result {
    /** More than this is not a catalogue: a statement whose result grows beyond it fails. */
    static constexpr size_t LARGEST = 64 * 1024 * 1024;
    static constexpr int NOT_HELD = -1;

    explicit qdb_result(int columnCount) : columns(columnCount) {}

    void addNull() { m_cells.push_back(nullptr); }
    void addNumber(const void* eightBytes);
    void addText(std::string_view text);
    int rows() const { return columns > 0 ? static_cast<int>(m_cells.size()) / columns : 0; }
    bool tooLarge() const { return m_bytes + m_cells.size() * sizeof(void*) > LARGEST; }
    void* cell(int row, int column);

    const int columns;
    int holdRow = NOT_HELD; ///< cells from this row on wait, see QdbHold.h
    uint64_t holdTicket = 0;
    std::thread::id reader; ///< the thread that fetched it

private:
    uint64_t* take(size_t words);

    std::vector<uint64_t*> m_cells; ///< row after row, into the blocks
    /** The values, one behind the other: blocks stay where they are, so that nothing is copied twice. */
    std::vector<std::unique_ptr<uint64_t[]>> m_blocks;
    uint64_t* m_free = nullptr; ///< in the latest block
    size_t m_freeWords = 0;
    size_t m_bytes = 0; ///< of all blocks
};

namespace zm {

/** Hands a result out: it belongs to the caller until qdb_freeresult, or until the same thread has fetched 16
 * more. */
qdb_result_t* qdbHandOut(std::unique_ptr<qdb_result> result);
/** Results that are handed out at this moment. */
size_t qdbResultCount();

} // namespace zm
