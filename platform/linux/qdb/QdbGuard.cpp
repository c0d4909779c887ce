#include "platform/linux/qdb/QdbGuard.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <iterator>
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
constexpr const char* NotHere = "refused: only the catalogue's tables can be read, with LIKE and count";
constexpr const char* TooLong = "refused: the statement takes too long";

// What one instruction may cost is bounded by the lengths below, so that few of them never take long.
constexpr int InstructionsBetweenChecks = 50;
constexpr int MostInstructions = 100'000'000;

struct Limit {
    int id;
    int value;
};

// Far above what the catalogue's clients ask, far below what would be felt.
constexpr Limit LIMITS[] = {
    {SQLITE_LIMIT_LENGTH, 64 * 1024},         {SQLITE_LIMIT_SQL_LENGTH, 4096},
    {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 1000}, {SQLITE_LIMIT_EXPR_DEPTH, 100},
    {SQLITE_LIMIT_VDBE_OP, 10'000},
};

struct Table {
    const char* name;
    std::initializer_list<const char*> columns; ///< the empty one stands for rows without their values
};
const Table TABLES[] = {
    {"files", {"", "rowid", "fid", "folderid", "ftype", "filename"}},
    {"folders", {"", "rowid", "folderid", "parentid", "foldername", "ftype", "foldercount", "filecount"}},
};
constexpr const char* FUNCTIONS[] = {"like", "count"};

auto named(const char* name) {
    return [name](const char* other) { return sqlite3_stricmp(name, other) == 0; };
}

bool isReadable(const char* table, const char* column) {
    const auto found = std::ranges::find_if(TABLES, named(table), &Table::name);
    return found != std::end(TABLES) && std::ranges::any_of(found->columns, named(column));
}

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
    for (const Limit& limit : LIMITS) {
        sqlite3_limit(db, limit.id, limit.value);
    }
    sqlite3_progress_handler(db, InstructionsBetweenChecks, progress, this);
}

void QdbGuard::begin(const std::string& statement) {
    m_insertTable = tableOfInsert(statement);
    m_objection = nullptr;
    m_checksLeft = MostInstructions / InstructionsBetweenChecks;
    m_deadline = std::chrono::steady_clock::now() + LongestStatement;
}

bool QdbGuard::accepts(sqlite3_stmt* statement) {
    // Readonly alone is not enough: a write that would change nothing counts as readonly, but has no columns.
    const bool reads = sqlite3_stmt_readonly(statement) && sqlite3_column_count(statement) > 0;
    if (!m_insertTable && !reads) {
        m_objection = REFUSED;
    }
    return !m_objection;
}

int QdbGuard::authorize(void* self, int action, const char* first, const char* second, const char* database,
                        const char* trigger) {
    auto& guard = *static_cast<QdbGuard*>(self);
    bool allowed = false;
    const char* objection = REFUSED;
    switch (action) {
    case SQLITE_SELECT:
        allowed = true;
        break;
    case SQLITE_READ:
        allowed = isReadable(first, second);
        objection = NotHere;
        break;
    case SQLITE_FUNCTION:
        allowed = std::ranges::any_of(FUNCTIONS, named(second));
        objection = NotHere;
        break;
    case SQLITE_INSERT:
        allowed = guard.m_insertTable && sqlite3_stricmp(first, guard.m_insertTable) == 0 && !trigger;
        break;
    default:
        break;
    }
    if (allowed) {
        return SQLITE_OK;
    }
    guard.m_objection = objection;
    return SQLITE_DENY;
}

int QdbGuard::progress(void* self) {
    auto& guard = *static_cast<QdbGuard*>(self);
    if (--guard.m_checksLeft > 0 && std::chrono::steady_clock::now() < guard.m_deadline) {
        return 0;
    }
    guard.m_objection = TooLong;
    return 1;
}

} // namespace zm
