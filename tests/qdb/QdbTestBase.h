#pragma once

#include "platform/linux/qdb/QdbResult.h"
#include "qdb/qdb.h"
#include "tests/support/CatalogueSql.h"
#include "tests/support/TemporaryFolder.h"

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

    QdbTest() { writeCatalogue(); }

    void writeCatalogue() {
        sql(CatalogueTables);
        sql("INSERT INTO files VALUES (1, 1, 1, 'one.mp3'), (2, 1, 1, 'two.mp3'), (3, 1, 2, NULL);"
            "INSERT INTO folders VALUES (1, 0, 'root', 1, 0, 3);");
    }

    void sql(const std::string& statements) { runSql(m_file, statements); }

    static int number(qdb_result_t* result, int row, int column) {
        return *static_cast<int*>(qdb_cell(result, row, column));
    }
    static std::string text(qdb_result_t* result, int row, int column) {
        return static_cast<const char*>(qdb_cell(result, row, column));
    }

    RuntimeFolder m_folder;
    const std::string& m_dir = m_folder.path();
    const std::string m_file = m_dir + "/discdb.sqlite";
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
