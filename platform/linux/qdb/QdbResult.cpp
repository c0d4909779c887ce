#include "platform/linux/qdb/QdbResult.h"

#include "platform/linux/qdb/HoldPoint.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <list>
#include <mutex>

namespace {

constexpr size_t NULL_CELL = SIZE_MAX;
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

void qdb_result::addNull() {
    m_cells.push_back(NULL_CELL);
}

void qdb_result::addNumber(const void* eightBytes) {
    uint64_t word = 0;
    std::memcpy(&word, eightBytes, sizeof word);
    m_cells.push_back(m_words.size());
    m_words.push_back(word);
    m_words.push_back(0);
}

void qdb_result::addText(std::string_view text) {
    size_t at = m_words.size();
    m_cells.push_back(at);
    m_words.resize(at + text.size() / 8 + 1);
    if (!text.empty()) {
        std::memcpy(&m_words[at], text.data(), text.size());
    }
}

void* qdb_result::cell(int row, int column) {
    if (row < 0 || row >= rows() || column < 0 || column >= columns) {
        return nullptr;
    }
    size_t at =
        m_cells[static_cast<size_t>(row) * static_cast<size_t>(columns) + static_cast<size_t>(column)];
    return at == NULL_CELL ? nullptr : &m_words[at];
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
