#include "services/disc/player/ResumeFile.h"

#include "services/disc/log/Log.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace zm::disc::player {

namespace {

constexpr int BusyMilliseconds = 2000;
constexpr int FirstKind = static_cast<int>(model::MediaKind::Music);
constexpr int LastKind = static_cast<int>(model::MediaKind::Photo);

constexpr const char* makeTable =
    "CREATE TABLE IF NOT EXISTS discs (used INTEGER PRIMARY KEY, identity TEXT, kind INTEGER,"
    " folderid INTEGER, fid INTEGER, milliseconds INTEGER, repeat INTEGER, shuffle INTEGER,"
    " sound INTEGER DEFAULT -1, subtitle INTEGER DEFAULT -1);";
// A file that was written before there were DVDs has no such columns.
constexpr const char* addColumns[] = {"ALTER TABLE discs ADD COLUMN sound INTEGER DEFAULT -1",
                                      "ALTER TABLE discs ADD COLUMN subtitle INTEGER DEFAULT -1"};
constexpr const char* selectRows =
    "SELECT identity, kind, folderid, fid, milliseconds, repeat, shuffle, sound, subtitle FROM discs"
    " ORDER BY used";
constexpr const char* insertRow = "INSERT INTO discs VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";
constexpr const char* countColumns = "SELECT count(*) FROM pragma_table_info('discs')";
constexpr int OldColumns = 8;

using Database = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

Database openDatabase(const std::string& path, int flags) {
    sqlite3* raw = nullptr;
    sqlite3_open_v2(path.c_str(), &raw, flags, nullptr);
    sqlite3_busy_timeout(raw, BusyMilliseconds);
    return {raw, sqlite3_close};
}

Statement prepare(sqlite3* database, const char* sql) {
    sqlite3_stmt* raw = nullptr;
    sqlite3_prepare_v2(database, sql, -1, &raw, nullptr);
    return {raw, sqlite3_finalize};
}

bool run(sqlite3* database, const char* sql) {
    return sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

void addNewColumns(sqlite3* database) {
    const auto count = prepare(database, countColumns);
    if (sqlite3_step(count.get()) == SQLITE_ROW && sqlite3_column_int(count.get(), 0) == OldColumns) {
        for (const char* each : addColumns) {
            run(database, each);
        }
    }
}

// What a failure may come from while the file itself is good.
constexpr int passing[] = {SQLITE_BUSY, SQLITE_LOCKED, SQLITE_CANTOPEN, SQLITE_IOERR,
                           SQLITE_PERM, SQLITE_FULL,   SQLITE_READONLY, SQLITE_NOMEM};

// Whether the last failure is the file's own fault: damaged, none of SQLite's, or with other tables.
bool isDamaged(sqlite3* database) {
    return std::find(std::begin(passing), std::end(passing), sqlite3_errcode(database)) == std::end(passing);
}

bool isSound(sqlite3* database) {
    const auto check = prepare(database, "PRAGMA quick_check");
    return sqlite3_step(check.get()) == SQLITE_ROW &&
           std::string(reinterpret_cast<const char*>(sqlite3_column_text(check.get(), 0))) == "ok";
}

bool makesSense(const RememberedDisc& disc) {
    const auto& point = disc.point;
    const int kind = static_cast<int>(point.kind);
    return !disc.identity.empty() && kind >= FirstKind && kind <= LastKind && point.position.count() >= 0;
}

RememberedDisc discOf(sqlite3_stmt* row) {
    const auto* identity = reinterpret_cast<const char*>(sqlite3_column_text(row, 0));
    return {identity ? identity : "",
            {static_cast<model::MediaKind>(sqlite3_column_int(row, 1)), sqlite3_column_int(row, 2),
             sqlite3_column_int(row, 3), std::chrono::milliseconds(sqlite3_column_int64(row, 4)),
             sqlite3_column_int(row, 5), sqlite3_column_int(row, 6), sqlite3_column_int(row, 7),
             sqlite3_column_int(row, 8)}};
}

bool insertAll(sqlite3* database, const std::vector<RememberedDisc>& discs) {
    const auto statement = prepare(database, insertRow);
    int used = 0;
    for (const auto& [identity, point] : discs) {
        ++used;
        sqlite3_bind_int(statement.get(), 1, used);
        sqlite3_bind_text(statement.get(), 2, identity.c_str(), -1, SQLITE_STATIC);
        int column = 2;
        for (const int number : {static_cast<int>(point.kind), point.folderId, point.fileId,
                                 static_cast<int>(point.position.count()), point.repeat, point.shuffle,
                                 point.sound, point.subtitle}) {
            sqlite3_bind_int(statement.get(), ++column, number);
        }
        if (sqlite3_step(statement.get()) != SQLITE_DONE) {
            return false;
        }
        sqlite3_reset(statement.get());
    }
    return true;
}

bool writeAll(sqlite3* database, const std::vector<RememberedDisc>& discs) {
    if (!run(database, "BEGIN IMMEDIATE") || !run(database, makeTable)) {
        return false;
    }
    addNewColumns(database);
    return run(database, "DELETE FROM discs") && insertAll(database, discs) && run(database, "COMMIT");
}

} // namespace

std::vector<RememberedDisc> ResumeFile::read() {
    std::vector<RememberedDisc> discs;
    if (::access(m_path.c_str(), F_OK) != 0) {
        return discs;
    }
    // Not read-only: what a power-off interrupted is taken back first.
    auto database = openDatabase(m_path, SQLITE_OPEN_READWRITE);
    bool good = isSound(database.get());
    if (good) {
        addNewColumns(database.get());
        const auto statement = prepare(database.get(), selectRows);
        int result = sqlite3_step(statement.get());
        for (; result == SQLITE_ROW; result = sqlite3_step(statement.get())) {
            auto disc = discOf(statement.get());
            if (makesSense(disc)) {
                discs.push_back(std::move(disc));
            }
        }
        good = result == SQLITE_DONE;
    }
    if (!good) {
        const std::string reason = sqlite3_errmsg(database.get());
        const bool damaged = isDamaged(database.get());
        database.reset();
        if (damaged) {
            putAside(reason);
        } else {
            logWarning("%s: %s\n", m_path.c_str(), reason.c_str());
        }
        discs.clear();
    }
    return discs;
}

Status ResumeFile::write(const std::vector<RememberedDisc>& discs) {
    for (const bool again : {true, false}) {
        auto database = openDatabase(m_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        if (writeAll(database.get(), discs)) {
            return ok();
        }
        const std::string reason = sqlite3_errmsg(database.get());
        const bool damaged = isDamaged(database.get());
        database.reset();
        if (!again || !damaged) {
            return Error{m_path + ": " + reason};
        }
        putAside(reason);
    }
    return ok();
}

void ResumeFile::putAside(const std::string& reason) {
    const std::string aside = m_path + ".damaged";
    logWarning("%s: %s: put aside as %s\n", m_path.c_str(), reason.c_str(), aside.c_str());
    // A journal that stayed would be taken for one of the new file's.
    std::rename((m_path + "-journal").c_str(), (aside + "-journal").c_str());
    std::rename(m_path.c_str(), aside.c_str());
}

} // namespace zm::disc::player
