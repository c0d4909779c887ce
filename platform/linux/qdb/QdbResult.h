#pragma once

#include "qdb/qdb.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

/**
 * A copy of one statement's rows. Every cell is aligned to eight bytes, has at least eight of them, and a zero
 * byte among them or right behind them. So a cell can be read as any type, number or text, without leaving
 * it.
 */
struct qdb_result {
    /** More than this is not a catalogue: a statement whose result grows beyond it fails. */
    static constexpr size_t LARGEST = 64 * 1024 * 1024;
    static constexpr int NotHeld = -1;

    explicit qdb_result(int columnCount) : columns(columnCount) {}

    void addNull() { m_cells.push_back(nullCell); }
    void addNumber(const void* eightBytes) {
        constexpr uint64_t lastByte = uint64_t{0xff} << 56;
        uint64_t word = 0;
        std::memcpy(&word, eightBytes, sizeof word);
        // The highest byte of nearly every number is zero and serves as the one that ends the cell.
        const bool endsItself = (word & lastByte) == 0;
        uint64_t* at = take(endsItself ? 1 : 2);
        at[0] = word;
        if (!endsItself) {
            at[1] = 0;
        }
    }
    void addText(std::string_view text);
    int rows() const { return columns > 0 ? static_cast<int>(m_cells.size()) / columns : 0; }
    size_t bytes() const { return m_bytes + m_cells.size() * sizeof(uint32_t); }
    bool tooLarge() const { return bytes() > LARGEST; }
    void* cell(int row, int column);

    const int columns;
    int holdRow = NotHeld; ///< cells from this row on wait, see QdbHold.h
    uint64_t holdTicket = 0;
    std::thread::id reader; ///< the thread that fetched it

private:
    static constexpr uint32_t nullCell = UINT32_MAX;
    static constexpr size_t wordBits = 13;
    static constexpr size_t blockWords = size_t{1} << wordBits;

    /** Room for one more cell. */
    uint64_t* take(size_t words) {
        if (m_usedWords + words > blockWords) {
            addBlock(words);
        }
        m_cells.push_back(static_cast<uint32_t>((m_blocks.size() - 1) << wordBits | m_usedWords));
        uint64_t* taken = m_block + m_usedWords;
        m_usedWords += words;
        return taken;
    }
    void addBlock(size_t words);

    std::vector<uint32_t> m_cells; ///< row after row: the number of a block, and the word in it
    /** The values, one behind the other. Blocks stay where they are, so that nothing is copied twice; one
     * that is larger than the others holds a single long text. */
    std::vector<std::unique_ptr<uint64_t[]>> m_blocks;
    uint64_t* m_block = nullptr; ///< the latest one
    size_t m_usedWords = blockWords;
    size_t m_bytes = 0; ///< of all blocks
};

namespace zm {

/** Hands a result out: it belongs to the caller until qdb_freeresult, or until the same thread has fetched 16
 * more; sooner when they are large, but never the next to last. */
qdb_result_t* qdbHandOut(std::unique_ptr<qdb_result> result);
/** Results that are handed out at this moment. */
size_t qdbResultCount();

} // namespace zm
