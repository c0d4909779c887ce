#include "services/bench/commands/CatalogueFile.h"

#include <sqlite3.h>

#include <filesystem>
#include <memory>

namespace zm::bench::commands {

namespace {

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

constexpr int CatalogueBusyTime = 2000; // ms

Database openDatabase(const std::string& file, int flags) {
    sqlite3* raw = nullptr;
    sqlite3_open_v2(file.c_str(), &raw, flags, nullptr);
    Database database(raw, sqlite3_close);
    sqlite3_busy_timeout(raw, CatalogueBusyTime);
    return database;
}

Error databaseError(const std::string& file, const Database& database) {
    return Error{file + ": " + sqlite3_errmsg(database.get())};
}

// All pages in one transaction: whoever reads sees the old ones or the new ones.
Status copyPages(const Database& from, const Database& to, const std::string& file) {
    sqlite3_backup* backup = sqlite3_backup_init(to.get(), "main", from.get(), "main");
    const int done = backup ? sqlite3_backup_step(backup, -1) : SQLITE_ERROR;
    sqlite3_backup_finish(backup);
    return done == SQLITE_DONE ? ok() : Status(databaseError(file, to));
}

} // namespace

Result<std::string> readCatalogue(const std::string& file) {
    if (!std::filesystem::exists(file)) {
        return std::string();
    }
    const Database disk = openDatabase(file, SQLITE_OPEN_READONLY);
    const Database memory = openDatabase(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (auto copied = copyPages(disk, memory, file); !copied) {
        return copied.failure();
    }
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
        sqlite3_serialize(memory.get(), "main", &size, 0), sqlite3_free);
    return bytes ? std::string(reinterpret_cast<const char*>(bytes.get()), static_cast<size_t>(size))
                 : std::string();
}

Status replaceCatalogue(const std::string& file, const std::string& bytes) {
    const Database memory = openDatabase(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    auto* copy = static_cast<unsigned char*>(sqlite3_malloc64(bytes.size()));
    if (!copy) {
        return Error{file + ": no memory"};
    }
    bytes.copy(reinterpret_cast<char*>(copy), bytes.size());
    // It takes the copy, also when it fails.
    const auto size = static_cast<sqlite3_int64>(bytes.size());
    if (sqlite3_deserialize(memory.get(), "main", copy, size, size, SQLITE_DESERIALIZE_FREEONCLOSE) !=
        SQLITE_OK) {
        return databaseError(file, memory);
    }
    const Database disk = openDatabase(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    return copyPages(memory, disk, file);
}

} // namespace zm::bench::commands
