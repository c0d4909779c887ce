#include "platform/linux/qdb/QdbGuard.h"

#include <cctype>
#include <string_view>

namespace zm {

namespace {

struct InsertForm {
    std::string_view beginning; ///< in lower case, without blanks but single ones between words
    const char* table;
};

constexpr InsertForm INSERTS[] = {
    {"insert into files (fid,folderid,ftype) select", "files"},
    {"insert into folders (folderid) select", "folders"},
};

constexpr const char* REFUSED = "refused: only SELECT and the catalogue's own inserts are permitted";
constexpr const char* TOO_LONG = "refused: the statement takes too long";
constexpr int INSTRUCTIONS_BETWEEN_CHECKS = 10'000;

/** The first `count` characters of the statement, white space as single blanks, in lower case. */
std::string beginningOf(const std::string& statement, size_t count) {
    std::string result;
    for (unsigned char c : statement) {
        if (!std::isspace(c)) {
            result += static_cast<char>(std::tolower(c));
        } else if (!result.empty() && result.back() != ' ') {
            result += ' ';
        }
        if (result.size() == count) {
            break;
        }
    }
    return result;
}

const char* tableOfInsert(const std::string& statement) {
    for (const InsertForm& form : INSERTS) {
        if (beginningOf(statement, form.beginning.size()) == form.beginning) {
            return form.table;
        }
    }
    return nullptr;
}

} // namespace

void QdbGuard::attach(sqlite3* db) {
    sqlite3_set_authorizer(db, authorize, this);
    sqlite3_progress_handler(db, INSTRUCTIONS_BETWEEN_CHECKS, progress, this);
}

void QdbGuard::begin(const std::string& statement) {
    m_insertTable = tableOfInsert(statement);
    m_objection = nullptr;
    m_deadline = std::chrono::steady_clock::now() + LONGEST_STATEMENT;
}

bool QdbGuard::accepts(sqlite3_stmt* statement) {
    // What gives no columns reads nothing, though it may find nothing to write either.
    const bool reads = sqlite3_stmt_readonly(statement) && sqlite3_column_count(statement) > 0;
    if (!m_insertTable && !reads) {
        m_objection = REFUSED;
    }
    return !m_objection;
}

int QdbGuard::authorize(void* self, int action, const char* first, const char* second, const char* database,
                        const char* trigger) {
    auto& guard = *static_cast<QdbGuard*>(self);
    const bool allowed = action == SQLITE_SELECT || action == SQLITE_READ ||
                         (action == SQLITE_FUNCTION && sqlite3_stricmp(second, "load_extension") != 0) ||
                         (action == SQLITE_INSERT && guard.m_insertTable &&
                          sqlite3_stricmp(first, guard.m_insertTable) == 0 && !trigger);
    if (!allowed) {
        guard.m_objection = REFUSED;
    }
    return allowed ? SQLITE_OK : SQLITE_DENY;
}

int QdbGuard::progress(void* self) {
    auto& guard = *static_cast<QdbGuard*>(self);
    if (std::chrono::steady_clock::now() < guard.m_deadline) {
        return 0;
    }
    guard.m_objection = TOO_LONG;
    return 1;
}

} // namespace zm
