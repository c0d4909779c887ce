#include "tests/qdb/QdbTestBase.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <thread>

namespace zm::test {

namespace fs = std::filesystem;

TEST_F(QdbTest, AMissingDatabaseIsNotFoundAndNotMade) {
    fs::remove(m_file);
    errno = 0;
    EXPECT_EQ(qdb_connect(DATABASE, 1), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(fs::exists(m_file));
}

TEST_F(QdbTest, OtherNamesAreNotFound) {
    EXPECT_EQ(qdb_connect("/dev/qdb/other", 1), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(qdb_connect(m_file.c_str(), 1), nullptr);
    EXPECT_EQ(qdb_connect(nullptr, 1), nullptr);
    EXPECT_EQ(errno, EINVAL);
}

TEST_F(QdbTest, AFolderIsNoDatabase) {
    fs::remove(m_file);
    fs::create_directory(m_file);
    EXPECT_EQ(qdb_connect(DATABASE, 1), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(QdbTest, TheCatalogueMayLieElsewhere) {
    std::string elsewhere = m_dir + "/elsewhere.db";
    fs::rename(m_file, elsewhere);
    setenv("ZM_CATALOGUE", elsewhere.c_str(), 1);
    qdb_hdl_t* db = qdb_connect(DATABASE, 1);
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(qdb_statement(db, "SELECT fid FROM files"), 0);
    qdb_disconnect(db);
    unsetenv("ZM_CATALOGUE");
}

TEST_F(QdbTest, AFailedConnectionHasAnErrorText) {
    EXPECT_STREQ(qdb_geterrmsg(nullptr), std::strerror(ENOTCONN));
}

TEST_F(QdbTest, CallsWithoutAConnectionFail) {
    EXPECT_EQ(qdb_statement(nullptr, "SELECT 1"), -1);
    EXPECT_EQ(errno, ENOTCONN);
    EXPECT_EQ(qdb_getresult(nullptr), nullptr);
    EXPECT_EQ(errno, ENOTCONN);
    EXPECT_EQ(qdb_disconnect(nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(qdb_freeresult(nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(qdb_rows(nullptr), -1);
    EXPECT_EQ(qdb_columns(nullptr), -1);
    EXPECT_EQ(qdb_cell(nullptr, 0, 0), nullptr);
}

TEST_F(QdbTest, AConnectionIsClosedOnce) {
    qdb_hdl_t* db = qdb_connect(DATABASE, 1);
    EXPECT_EQ(qdb_disconnect(db), 0);
    EXPECT_EQ(qdb_disconnect(db), -1);
}

TEST_F(QdbConnectedTest, AFileThatIsNoDatabaseGivesErrors) {
    std::ofstream(m_file, std::ios::trunc) << std::string(4096, 'x');
    EXPECT_EQ(qdb_statement(m_db, "SELECT fid FROM files"), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_STREQ(qdb_geterrmsg(m_db), "file is not a database");
}

TEST_F(QdbConnectedTest, RowsWrittenByTheDiscServiceAreSeen) {
    EXPECT_EQ(count("files"), 3);
    sql("BEGIN; DELETE FROM files; INSERT INTO files VALUES (9, 1, 3, 'nine.jpg'); COMMIT;");
    EXPECT_EQ(count("files"), 1);
}

TEST_F(QdbConnectedTest, ADatabaseThatIsReplacedIsReadAnew) {
    EXPECT_EQ(count("files"), 3);
    fs::remove(m_file);
    EXPECT_EQ(qdb_statement(m_db, "SELECT fid FROM files"), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(fs::exists(m_file));
    writeCatalogue();
    sql("DELETE FROM files WHERE fid > 1;");
    EXPECT_EQ(count("files"), 1);
}

TEST_F(QdbConnectedTest, AReplacedDatabaseKeepsItsWriteAheadLog) {
    sql("PRAGMA journal_mode = WAL;");
    EXPECT_EQ(count("files"), 3);
    for (const char* suffix : {"", "-wal", "-shm"}) {
        fs::remove(m_file + suffix);
    }
    sqlite3* service = nullptr;
    ASSERT_EQ(sqlite3_open(m_file.c_str(), &service), SQLITE_OK);
    ASSERT_EQ(
        sqlite3_exec(service,
                     "PRAGMA journal_mode = WAL; CREATE TABLE files (fid); INSERT INTO files VALUES (7);",
                     nullptr, nullptr, nullptr),
        SQLITE_OK);
    EXPECT_EQ(count("files"), 1) << "the old connection was closed on the way";
    EXPECT_TRUE(fs::exists(m_file + "-wal"));
    ASSERT_EQ(sqlite3_exec(service, "INSERT INTO files VALUES (8);", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(count("files"), 2);
    sqlite3_close(service);
}

TEST_F(QdbConnectedTest, ALockedDatabaseIsWaitedFor) {
    sqlite3* writer = nullptr;
    ASSERT_EQ(sqlite3_open(m_file.c_str(), &writer), SQLITE_OK);
    ASSERT_EQ(
        sqlite3_exec(writer, "BEGIN EXCLUSIVE; DELETE FROM files WHERE fid = 1;", nullptr, nullptr, nullptr),
        SQLITE_OK);
    int rows = -1;
    std::thread reader([&] { rows = count("files"); });
    sqlite3_exec(writer, "COMMIT;", nullptr, nullptr, nullptr);
    reader.join();
    EXPECT_EQ(rows, 2);
    sqlite3_close(writer);
}

TEST_F(QdbTest, ANonBlockingConnectionDoesNotWait) {
    sqlite3* writer = nullptr;
    ASSERT_EQ(sqlite3_open(m_file.c_str(), &writer), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(writer, "BEGIN EXCLUSIVE;", nullptr, nullptr, nullptr), SQLITE_OK);
    qdb_hdl_t* db = qdb_connect(DATABASE, QDB_CONN_NONBLOCKING);
    EXPECT_EQ(qdb_statement(db, "SELECT fid FROM files"), -1);
    EXPECT_EQ(errno, EBUSY);
    qdb_disconnect(db);
    sqlite3_close(writer);
}

} // namespace zm::test
