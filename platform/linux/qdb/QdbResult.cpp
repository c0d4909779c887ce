#include "platform/linux/qdb/QdbResult.h"

#include "platform/linux/qdb/HoldPoint.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <list>
#include <mutex>

namespace {

constexpr size_t BLOCK_WORDS = 8192;
constexpr uint64_t LAST_BYTE = uint64_t{0xff} << 56;
constexpr int KEPT_PER_THREAD = 16;

struct HandedOut {
    std::mutex mutex;
    std::list<std::unique_ptr<qdb_result>> results; ///< oldest first
};

/** Never destroyed: results that nobody frees are usual, and threads may read them until the process has
 * ended. */
HandedOut& handedOut() {
    static auto& instance = *new HandedOut;
    return instance;
}

} // namespace

uint64_t* qdb_result::take(size_t words) {
    if (words > m_freeWords) {
        m_freeWords = std::max(words, BLOCK_WORDS);
        m_bytes += m_freeWords * sizeof(uint64_t);
        m_free = m_blocks.emplace_back(std::make_unique_for_overwrite<uint64_t[]>(m_freeWords)).get();
    }
    uint64_t* taken = m_free;
    m_free += words;
    m_freeWords -= words;
    m_cells.push_back(taken);
    return taken;
}

void qdb_result::addNumber(const void* eightBytes) {
    uint64_t word = 0;
    std::memcpy(&word, eightBytes, sizeof word);
    // Nearly every number has its zero byte within itself, as the last one.
    const bool endsItself = (word & LAST_BYTE) == 0;
    uint64_t* at = take(endsItself ? 1 : 2);
    at[0] = word;
    if (!endsItself) {
        at[1] = 0;
    }
}

void qdb_result::addText(std::string_view text) {
    const size_t words = text.size() / sizeof(uint64_t) + 1;
    uint64_t* at = take(words);
    at[words - 1] = 0;
    if (!text.empty()) {
        std::memcpy(at, text.data(), text.size());
    }
}

void* qdb_result::cell(int row, int column) {
    if (row < 0 || column < 0 || column >= columns) {
        return nullptr;
    }
    const size_t at = static_cast<size_t>(row) * static_cast<size_t>(columns) + static_cast<size_t>(column);
    return at < m_cells.size() ? m_cells[at] : nullptr;
}

qdb_result_t* zm::qdbHandOut(std::unique_ptr<qdb_result> result) {
    result->reader = std::this_thread::get_id();
    auto sameReader = [reader = result->reader](const auto& other) { return other->reader == reader; };
    auto& [mutex, results] = handedOut();
    std::lock_guard guard(mutex);
    if (std::count_if(results.begin(), results.end(), sameReader) >= KEPT_PER_THREAD) {
        results.erase(std::find_if(results.begin(), results.end(), sameReader));
    }
    return results.emplace_back(std::move(result)).get();
}

size_t zm::qdbResultCount() {
    auto& [mutex, results] = handedOut();
    std::lock_guard guard(mutex);
    return results.size();
}

extern "C" int qdb_freeresult(qdb_result_t* result) {
    auto& [mutex, results] = handedOut();
    std::lock_guard guard(mutex);
    auto found = std::find_if(results.begin(), results.end(),
                              [&](const auto& other) { return other.get() == result; });
    if (found == results.end()) {
        errno = EINVAL;
        return -1;
    }
    results.erase(found);
    return 0;
}

extern "C" int qdb_rows(qdb_result_t* result) {
    return result ? result->rows() : -1;
}

extern "C" int qdb_columns(qdb_result_t* result) {
    return result ? result->columns : -1;
}

extern "C" void* qdb_cell(qdb_result_t* result, int row, int col) {
    if (!result) {
        return nullptr;
    }
    if (result->holdRow != qdb_result::NOT_HELD && row >= result->holdRow) {
        zm::HoldPoint::instance().wait(result->holdTicket);
    }
    return result->cell(row, col);
}
