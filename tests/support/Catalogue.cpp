#include "tests/support/Catalogue.h"

#include "tests/support/CatalogueSql.h"

#include <gtest/gtest.h>

#include <sqlite3.h>
#include <stdlib.h>

namespace zm::test {

namespace {

std::string quoted(const std::string& text) {
    char* raw = sqlite3_mprintf("%Q", text.c_str());
    std::string result = raw;
    sqlite3_free(raw);
    return result;
}

std::string listOf(std::initializer_list<int> values) {
    std::string result;
    for (int value : values) {
        result += std::to_string(value) + ",";
    }
    return result;
}

} // namespace

Catalogue::Catalogue() {
    EXPECT_EQ(sqlite3_open(m_path.c_str(), &m_db), SQLITE_OK) << m_path;
    sql(CatalogueTables);
}

Catalogue::~Catalogue() {
    sqlite3_close(m_db);
}

void Catalogue::file(int fid, int folder, Type type, const std::string& name) {
    sql("INSERT INTO files (fid,folderid,ftype,filename) VALUES (" + listOf({fid, folder, type}) +
        quoted(name) + ")");
}

void Catalogue::folder(int id, int parent, Type type, const std::string& name, int folders, int files) {
    sql("INSERT INTO folders (folderid,parentid,ftype,foldercount,filecount,foldername) VALUES (" +
        listOf({id, parent, type, folders, files}) + quoted(name) + ")");
}

void Catalogue::files(int count, Type type, const std::string& name) {
    sql("BEGIN");
    for (int fid = 1; fid <= count; ++fid) {
        file(fid, 1, type, name + " " + std::to_string(fid));
    }
    sql("COMMIT");
}

void Catalogue::sql(const std::string& statement) {
    char* error = nullptr;
    if (sqlite3_exec(m_db, statement.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
        ADD_FAILURE() << statement << ": " << error;
        sqlite3_free(error);
    }
}

} // namespace zm::test
