#pragma once

#include "platform/linux/qdb/QdbResult.h"
#include "qdb/qdb.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace zm::test {

/** A runtime folder with a small catalogue in it, written as the disc service writes it. */
class QdbTest : public testing::Test {
protected:
    static constexpr const char* DATABASE = "/dev/qdb/discdb";

    QdbTest() {
        char name[] = "/tmp/zm-qdb-XXXXXX";
        m_dir = mkdtemp(name);
        m_file = m_dir + "/discdb.sqlite";
        setenv("ZM_RUNTIME", m_dir.c_str(), 1);
        unsetenv("ZM_CATALOGUE");
        writeCatalogue();
    }
    ~QdbTest() override { std::filesystem::remove_all(m_dir); }

    void writeCatalogue() {
        sql("CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT);"
            "CREATE TABLE folders (folderid INTEGER, parentid INTEGER, foldername TEXT, ftype INTEGER,"
            "                      foldercount INTEGER, filecount INTEGER);"
            "INSERT INTO files VALUES (1, 1, 1, 'one.mp3'), (2, 1, 1, 'two.mp3'), (3, 1, 2, NULL);"
            "INSERT INTO folders VALUES (1, 0, 'root', 1, 0, 3);");
    }

    /** As another process would: on a connection of its own. */
    void sql(const std::string& statements) {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(m_file.c_str(), &db), SQLITE_OK);
        char* error = nullptr;
        sqlite3_exec(db, statements.c_str(), nullptr, nullptr, &error);
        EXPECT_STREQ(error, nullptr);
        sqlite3_free(error);
        sqlite3_close(db);
    }

    static int number(qdb_result_t* result, int row, int column) {
        return *static_cast<int*>(qdb_cell(result, row, column));
    }
    static std::string text(qdb_result_t* result, int row, int column) {
        return static_cast<const char*>(qdb_cell(result, row, column));
    }

    std::string m_dir;
    std::string m_file;
};

/** The same with an open connection. */
class QdbConnectedTest : public QdbTest {
protected:
    QdbConnectedTest() : m_db(qdb_connect(DATABASE, QDB_CONN_DFLT_SHARE)) {}
    ~QdbConnectedTest() override {
        if (m_db) {
            qdb_disconnect(m_db);
        }
    }

    qdb_result_t* query(const char* statement) {
        EXPECT_EQ(qdb_statement(m_db, "%s", statement), 0) << qdb_geterrmsg(m_db);
        return qdb_getresult(m_db);
    }
    int count(const char* table) {
        return number(query((std::string("SELECT count(*) FROM ") + table).c_str()), 0, 0);
    }

    qdb_hdl_t* m_db;
};

} // namespace zm::test
