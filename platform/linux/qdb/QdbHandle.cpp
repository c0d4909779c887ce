#include "platform/linux/qdb/QdbHandle.h"

#include "platform/linux/qdb/HoldPoint.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

namespace {

int errnoOf(int sqliteCode) {
    switch (sqliteCode & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return EBUSY;
    case SQLITE_NOMEM:
        return ENOMEM;
    case SQLITE_CANTOPEN:
        return ENOENT;
    case SQLITE_READONLY:
        return EROFS;
    case SQLITE_IOERR:
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return EIO;
    default:
        return EINVAL;
    }
}

void addCell(qdb_result& result, sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
        result.addNull();
        break;
    case SQLITE_INTEGER: {
        sqlite3_int64 number = sqlite3_column_int64(statement, column);
        result.addNumber(&number);
        break;
    }
    case SQLITE_FLOAT: {
        double number = sqlite3_column_double(statement, column);
        result.addNumber(&number);
        break;
    }
    default: {
        auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        result.addText({bytes, static_cast<size_t>(sqlite3_column_bytes(statement, column))});
    }
    }
}

} // namespace

int qdb_hdl::fail(int number, const std::string& text) {
    error = text;
    return number;
}

int qdb_hdl::failSqlite() {
    const char* objection = m_guard.objection();
    return fail(objection ? EPERM : errnoOf(sqlite3_extended_errcode(m_db.get())),
                objection ? objection : sqlite3_errmsg(m_db.get()));
}

bool qdb_hdl::isReplaced() const {
    struct stat info {};
    return !m_db || stat(m_path.c_str(), &info) != 0 || info.st_dev != m_device || info.st_ino != m_inode;
}

int qdb_hdl::open() {
    m_db.reset();
    struct stat info {};
    if (stat(m_path.c_str(), &info) != 0) {
        int number = errno;
        return fail(number, std::strerror(number));
    }
    if (!S_ISREG(info.st_mode)) {
        return fail(ENOENT, "not a database file");
    }
    sqlite3* db = nullptr;
    // Without the flag that creates: a missing file stays missing. Threads take turns, so the connection
    // needs no lock of its own, which would be taken several times for each cell.
    int code = sqlite3_open_v2(m_path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    m_db.reset(db);
    if (code != SQLITE_OK) {
        int number = failSqlite();
        m_db.reset();
        return number;
    }
    m_device = info.st_dev;
    m_inode = info.st_ino;
    sqlite3_busy_timeout(db, m_busyTimeout);
    // The catalogue of a full disc stays in memory from one look at its lists to the next.
    sqlite3_exec(db, "PRAGMA cache_size = -8192;", nullptr, nullptr, nullptr);
    sqlite3_db_config(db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    m_guard.attach(db);
    return 0;
}

int qdb_hdl::compile(const std::string& text, Statement& statement) {
    const char* rest = text.c_str();
    // Empty statements (a semicolon, a comment) are passed over, before the statement and behind it.
    while (*rest) {
        sqlite3_stmt* next = nullptr;
        bool compiled = sqlite3_prepare_v2(m_db.get(), rest, -1, &next, &rest) == SQLITE_OK;
        Statement holder(next);
        if (statement && (!compiled || next)) {
            return fail(EINVAL, "refused: more than one statement");
        }
        if (!compiled || (next && !m_guard.accepts(next))) {
            return failSqlite();
        }
        if (next) {
            statement = std::move(holder);
        }
    }
    return 0;
}

int qdb_hdl::readRows(sqlite3_stmt* statement) {
    auto result = std::make_unique<qdb_result>(sqlite3_column_count(statement));
    int code = SQLITE_OK;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
        for (int column = 0; column < result->columns; ++column) {
            addCell(*result, statement, column);
        }
        if (result->tooLarge()) {
            return fail(E2BIG, "the result is too large");
        }
    }
    if (code != SQLITE_DONE) {
        return failSqlite();
    }
    if (auto held = zm::HoldPoint::instance().take()) {
        result->holdRow = held->row;
        result->holdTicket = held->ticket;
    }
    m_result = std::move(result);
    return 0;
}

int qdb_hdl::run(const std::string& text) {
    error.clear();
    m_guard.begin(text);
    if (isReplaced()) {
        if (int number = open()) {
            return number;
        }
    }
    Statement statement;
    if (int number = compile(text, statement)) {
        return number;
    }
    if (!statement) {
        m_result = std::make_unique<qdb_result>(0);
        return 0;
    }
    return readRows(statement.get());
}
