#include "platform/linux/qdb/QdbResult.h"

#include "base/Mutex.h"
#include "platform/linux/qdb/HoldPoint.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <list>

namespace {

constexpr int KeptPerThread = 16;
constexpr size_t KeptBytesPerThread = 16 * 1024 * 1024;

struct HandedOut {
    zm::Mutex mutex;
    std::list<std::unique_ptr<qdb_result>> results ZM_GUARDED_BY(mutex); ///< oldest first
};

/** Never destroyed: results that nobody frees are usual, and threads may read them until the process has
 * ended. */
HandedOut& handedOut() {
    static auto& instance = *new HandedOut;
    return instance;
}

} // namespace

void qdb_result::addBlock(size_t words) {
    const size_t size = std::max(words, blockWords);
    m_block = m_blocks.emplace_back(std::make_unique_for_overwrite<uint64_t[]>(size)).get();
    m_bytes += size * sizeof(uint64_t);
    m_usedWords = 0;
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
    if (at >= m_cells.size() || m_cells[at] == nullCell) {
        return nullptr;
    }
    return &m_blocks[m_cells[at] >> wordBits][m_cells[at] % blockWords];
}

qdb_result_t* zm::qdbHandOut(std::unique_ptr<qdb_result> result) {
    result->reader = std::this_thread::get_id();
    auto& kept = handedOut();
    zm::MutexLock guard(kept.mutex);
    int count = 1; // the new one; the latest before it stays in any case
    size_t bytes = result->bytes();
    for (auto other = kept.results.end(); other != kept.results.begin();) {
        --other;
        if ((*other)->reader != result->reader) {
            continue;
        }
        ++count;
        bytes += (*other)->bytes();
        if (count > KeptPerThread || (count > 2 && bytes > KeptBytesPerThread)) {
            other = kept.results.erase(other);
        }
    }
    return kept.results.emplace_back(std::move(result)).get();
}

size_t zm::qdbResultCount() {
    auto& kept = handedOut();
    zm::MutexLock guard(kept.mutex);
    return kept.results.size();
}

extern "C" int qdb_freeresult(qdb_result_t* result) {
    auto& kept = handedOut();
    zm::MutexLock guard(kept.mutex);
    auto found = std::find_if(kept.results.begin(), kept.results.end(),
                              [&](const auto& other) { return other.get() == result; });
    if (found == kept.results.end()) {
        errno = EINVAL;
        return -1;
    }
    kept.results.erase(found);
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
    if (result->holdRow != qdb_result::NotHeld && row >= result->holdRow) {
        zm::HoldPoint::instance().wait(result->holdTicket);
    }
    return result->cell(row, col);
}
