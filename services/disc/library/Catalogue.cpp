#include "services/disc/library/Catalogue.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>
#include <variant>

namespace zm::disc::library {

namespace {

constexpr int BusyMilliseconds = 2000;

// Write-ahead logging keeps readers going while a disc is written; nothing in it needs to survive a power
// cut.
constexpr const char* setUp =
    "PRAGMA journal_mode = WAL;"
    "PRAGMA synchronous = OFF;"
    "BEGIN IMMEDIATE;"
    "DROP TABLE IF EXISTS files;"
    "DROP TABLE IF EXISTS folders;"
    "CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT);"
    "CREATE TABLE folders (folderid INTEGER, parentid INTEGER, foldername TEXT, ftype INTEGER,"
    " foldercount INTEGER, filecount INTEGER);"
    "CREATE INDEX files_by_number ON files (ftype, folderid, fid);"
    "CREATE INDEX folders_by_number ON folders (ftype, folderid);"
    "COMMIT;";

constexpr const char* clearAll = "BEGIN IMMEDIATE; DELETE FROM files; DELETE FROM folders; COMMIT;";

// Far more than any list shows; readers of the catalogue need not cope with more.
constexpr size_t LongestName = 1024;

/** The name, cut at a whole UTF-8 character. */
std::string_view listName(std::string_view name) {
    size_t length = std::min(name.size(), LongestName);
    while (length > 0 && length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) {
        --length;
    }
    return name.substr(0, length);
}

/** A prepared statement that is bound and run row by row. */
class Insert {
public:
    using Value = std::variant<int, std::string_view>;

    Insert(sqlite3* database, const char* sql) {
        sqlite3_prepare_v2(database, sql, -1, &m_statement, nullptr);
    }
    ~Insert() { sqlite3_finalize(m_statement); }
    Insert(const Insert&) = delete;
    Insert& operator=(const Insert&) = delete;

    /** False if the row could not be written. The values live until the call ends. */
    bool row(std::initializer_list<Value> values) {
        int position = 0;
        for (const auto& value : values) {
            ++position;
            if (const auto* text = std::get_if<std::string_view>(&value)) {
                sqlite3_bind_text(m_statement, position, text->data(), static_cast<int>(text->size()),
                                  SQLITE_STATIC);
            } else {
                sqlite3_bind_int(m_statement, position, std::get<int>(value));
            }
        }
        const bool done = sqlite3_step(m_statement) == SQLITE_DONE;
        sqlite3_reset(m_statement);
        return done;
    }

private:
    sqlite3_stmt* m_statement = nullptr;
};

// Device and number of a file; zeros if it is not there.
std::pair<uint64_t, uint64_t> identityOf(const std::string& file) {
    struct stat info {};
    return ::stat(file.c_str(), &info) == 0 ? std::pair<uint64_t, uint64_t>{info.st_dev, info.st_ino}
                                            : std::pair<uint64_t, uint64_t>{};
}

} // namespace

Result<std::unique_ptr<Catalogue>> Catalogue::open(const std::string& file) {
    std::unique_ptr<Catalogue> catalogue(new Catalogue(file));
    if (auto status = catalogue->begin(); !status) {
        return Error{file + ": " + status.error()};
    }
    return catalogue;
}

Catalogue::~Catalogue() {
    sqlite3_close(m_database);
}

Status Catalogue::begin() {
    MutexLock lock(m_mutex);
    return prepare() ? ok() : reopen();
}

// Makes the file anew, whatever stands in its place.
Status Catalogue::reopen() {
    sqlite3_close(std::exchange(m_database, nullptr));
    for (const char* suffix : {"", "-wal", "-shm"}) {
        std::remove((m_file + suffix).c_str());
    }
    return prepare();
}

Status Catalogue::failure(const char* what) {
    const std::string text = std::string(what) + ": " + sqlite3_errmsg(m_database);
    if (!sqlite3_get_autocommit(m_database)) {
        sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
    }
    return Error{text};
}

Status Catalogue::run(const char* statement) {
    return sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr) == SQLITE_OK ? ok()
                                                                                       : failure("catalogue");
}

Status Catalogue::prepare() {
    sqlite3_open_v2(m_file.c_str(), &m_database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    sqlite3_busy_timeout(m_database, BusyMilliseconds);
    const auto status = run(setUp);
    m_identity = identityOf(m_file);
    return status;
}

bool Catalogue::isOpenedFile() const {
    return m_identity != decltype(m_identity){} && identityOf(m_file) == m_identity;
}

bool Catalogue::intact() {
    MutexLock lock(m_mutex);
    return isOpenedFile();
}

Status Catalogue::clear() {
    MutexLock lock(m_mutex);
    // A file that cannot be emptied must not go on showing the disc before.
    return isOpenedFile() && run(clearAll) ? ok() : reopen();
}

Status Catalogue::insertFolders(const model::Contents& contents, model::MediaKind kind) {
    Insert insert(m_database, "INSERT INTO folders VALUES (?, ?, ?, ?, ?, ?)");
    for (const auto& folder : contents.folders) {
        const auto& counts = folder.counts[model::kindIndex(kind)];
        if (counts.files + counts.folders == 0) {
            continue;
        }
        // A folder's page shows its files only. Without any it says that it is empty, which it takes from
        // both counts.
        const int subFolders = counts.files == 0 ? 0 : counts.folders;
        if (!insert.row({folder.id, folder.parentId, std::string_view(folder.name), static_cast<int>(kind),
                         subFolders, counts.files})) {
            return failure("folders");
        }
    }
    return ok();
}

Status Catalogue::insertFiles(const model::Contents& contents, model::MediaKind kind,
                              const std::atomic<bool>& cancelled) {
    Insert insert(m_database, "INSERT INTO files VALUES (?, ?, ?, ?)");
    for (const auto& item : contents.of(kind)) {
        if (cancelled) {
            return failure("cancelled");
        }
        if (!insert.row({item.fileId, item.folderId, static_cast<int>(kind), listName(item.name)})) {
            return failure("files");
        }
    }
    return ok();
}

Status Catalogue::write(const model::Contents& contents, model::MediaKind kind,
                        const std::atomic<bool>& cancelled) {
    MutexLock lock(m_mutex);
    if (cancelled) {
        return Error{"cancelled"};
    }
    if (auto status = run("BEGIN IMMEDIATE"); !status) {
        return status;
    }
    if (auto status = insertFolders(contents, kind); !status) {
        return status;
    }
    if (auto status = insertFiles(contents, kind, cancelled); !status) {
        return status;
    }
    return run("COMMIT");
}

} // namespace zm::disc::library
