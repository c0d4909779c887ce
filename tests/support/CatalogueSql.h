#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

namespace zm::test {

/** The catalogue's tables, as the disc service makes them. */
inline constexpr const char* CatalogueTables =
    "CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT);"
    "CREATE TABLE folders (folderid INTEGER, parentid INTEGER, foldername TEXT, ftype INTEGER,"
    " foldercount INTEGER, filecount INTEGER);";

/** Runs statements on a database file as another process would: on a connection of its own. */
inline void runSql(const std::string& file, const std::string& statements) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &db), SQLITE_OK);
    char* error = nullptr;
    sqlite3_exec(db, statements.c_str(), nullptr, nullptr, &error);
    EXPECT_STREQ(error, nullptr);
    sqlite3_free(error);
    sqlite3_close(db);
}

} // namespace zm::test
