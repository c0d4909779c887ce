#pragma once

#include "platform/linux/qdb/QdbGuard.h"
#include "platform/linux/qdb/QdbResult.h"

#include <sqlite3.h>
#include <sys/types.h>

#include <memory>
#include <string>

/** One connection to a database file. One thread at a time. */
struct qdb_hdl {
public:
    qdb_hdl(std::string path, int busyTimeout) : m_path(std::move(path)), m_busyTimeout(busyTimeout) {}

    /** 0, or the errno of the failure (ENOENT: no such file). Never makes a file. */
    int open();
    /** Runs one statement; 0 or an errno. A file that was replaced since is opened anew. */
    int run(const std::string& statement);
    /** The latest statement's result; null when there is none or it was taken. */
    std::unique_ptr<qdb_result> takeResult() { return std::move(m_result); }

    std::string error; ///< of the latest call; empty if it succeeded

private:
    struct CloseDatabase {
        void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
    };
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

    bool isReplaced() const;
    int fail(int number, const std::string& text);
    int failSqlite();
    int compile(const std::string& text, Statement& statement);
    int readRows(sqlite3_stmt* statement);

    std::string m_path;
    int m_busyTimeout; ///< milliseconds
    zm::QdbGuard m_guard;
    std::unique_ptr<sqlite3, CloseDatabase> m_db;
    dev_t m_device = 0;
    ino_t m_inode = 0;
    std::unique_ptr<qdb_result> m_result;
};
