#include "platform/linux/qdb/QdbGuard.h"
#include "tests/qdb/QdbTestBase.h"

#include <cerrno>
#include <chrono>
#include <gmock/gmock.h>
#include <sys/resource.h>

namespace zm::test {

using testing::HasSubstr;

/** Statements that must not run, whatever the reason that stops them. */
constexpr const char* DESTRUCTIVE[] = {
    "DROP TABLE files",
    "DELETE FROM files",
    "DELETE FROM files WHERE 1=1 RETURNING fid",
    "UPDATE files SET filename = ''",
    "INSERT INTO files VALUES (7, 7, 7, 'x')",
    "INSERT INTO files (fid,folderid,ftype,filename) SELECT 1,1,1,'x'",
    "INSERT INTO files (fid,folderid,ftype) VALUES (1,2,3)",
    "INSERT OR REPLACE INTO files (fid,folderid,ftype) SELECT 1,1,1",
    "INSERT INTO sqlite_master (name) SELECT 'x'",
    "REPLACE INTO files (fid) SELECT 1",
    "CREATE TABLE other (a)",
    "CREATE TEMP TABLE other (a)",
    "CREATE TRIGGER t AFTER INSERT ON files BEGIN DELETE FROM files; END",
    "ALTER TABLE files RENAME TO gone",
    "ATTACH DATABASE 'other.db' AS other",
    "PRAGMA writable_schema = 1",
    "PRAGMA journal_mode = OFF",
    "BEGIN EXCLUSIVE",
    "SAVEPOINT s",
    "VACUUM",
    "VACUUM INTO 'copy.db'",
    "REINDEX",
    "WITH gone AS (SELECT fid FROM files) DELETE FROM files WHERE fid IN gone",
    "SELECT load_extension('x')",
    "EXPLAIN DELETE FROM files",
};

/** Tables and indexes of a file. */
int objectsIn(const std::string& file) {
    sqlite3* db = nullptr;
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_open(file.c_str(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_prepare_v2(db, "SELECT count(*) FROM sqlite_master", -1, &statement, nullptr),
              SQLITE_OK);
    EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW);
    const int objects = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return objects;
}

class QdbRefusalTest : public QdbConnectedTest, public testing::WithParamInterface<const char*> {};

TEST_P(QdbRefusalTest, TheStatementFailsAndChangesNothing) {
    sql("CREATE INDEX byFolder ON files (folderid);");
    EXPECT_EQ(qdb_statement(m_db, "%s", GetParam()), -1);
    EXPECT_NE(std::string(qdb_geterrmsg(m_db)), "");
    EXPECT_EQ(count("files"), 3);
    EXPECT_EQ(count("folders"), 1);
    EXPECT_EQ(objectsIn(m_file), 3);
    EXPECT_FALSE(std::filesystem::exists("other.db"));
    EXPECT_FALSE(std::filesystem::exists("copy.db"));
    sql("INSERT INTO files VALUES (4, 1, 1, 'four.mp3');"); // nothing holds a lock
}

INSTANTIATE_TEST_SUITE_P(Destructive, QdbRefusalTest, testing::ValuesIn(DESTRUCTIVE));

TEST_F(QdbConnectedTest, TheRefusalSaysWhatIsPermitted) {
    EXPECT_EQ(qdb_statement(m_db, "DROP TABLE files"), -1);
    EXPECT_EQ(errno, EPERM);
    EXPECT_STREQ(qdb_geterrmsg(m_db), "refused: only SELECT and the catalogue's own inserts are permitted");
}

TEST_F(QdbConnectedTest, OneStatementACallRuns) {
    for (const char* statement :
         {"SELECT 1; DROP TABLE files", "SELECT 1; SELECT 2", "SELECT 1;;; DELETE FROM files;"}) {
        EXPECT_EQ(qdb_statement(m_db, "%s", statement), -1) << statement;
        EXPECT_STREQ(qdb_geterrmsg(m_db), "refused: more than one statement");
        EXPECT_EQ(qdb_getresult(m_db), nullptr) << "not even the first one ran";
    }
    EXPECT_EQ(count("files"), 3);
    EXPECT_EQ(qdb_statement(m_db, "SELECT 1; -- the end"), 0);
    EXPECT_EQ(qdb_statement(m_db, "; SELECT 1 ;; "), 0);
}

TEST_F(QdbConnectedTest, AVoiceRequestCannotDestroyTheCatalogue) {
    for (std::string song :
         {"x'; DROP TABLE files; --", "x'; DELETE FROM files WHERE '1'='1", "%n%n%s", "' OR 1=1 --"}) {
        std::string statement =
            "SELECT fid,folderid,ftype,filename from files WHERE ftype == 1 AND filename LIKE '%%" + song +
            "%%' ORDER BY folderid, fid;";
        qdb_statement(m_db, "%s", statement.c_str());
        EXPECT_EQ(count("files"), 3) << song;
    }
}

TEST_F(QdbConnectedTest, TheInsertOfAFileIsPermitted) {
    const char* insert = "INSERT INTO files (fid,folderid,ftype) SELECT 8,1,2 WHERE NOT EXISTS "
                         "(SELECT fid FROM files WHERE fid=8 AND folderid=1 AND ftype=2);";
    EXPECT_EQ(qdb_rows(query(insert)), 0);
    EXPECT_EQ(count("files"), 4);
    EXPECT_EQ(qdb_rows(query(insert)), 0);
    EXPECT_EQ(count("files"), 4) << "it is there already";
    EXPECT_EQ(qdb_cell(query("SELECT filename FROM files WHERE fid=8"), 0, 0), nullptr);
}

TEST_F(QdbConnectedTest, TheInsertOfAFolderIsPermitted) {
    const char* insert = "insert  into folders\n(folderid) select 5 WHERE NOT EXISTS "
                         "(SELECT folderid FROM folders WHERE folderid=5);";
    EXPECT_EQ(qdb_rows(query(insert)), 0);
    EXPECT_EQ(count("folders"), 2);
}

TEST_F(QdbConnectedTest, APermittedInsertMayNotCarryAnythingElse) {
    for (const char* statement :
         {"INSERT INTO folders (folderid) SELECT 5 WHERE 1 ON CONFLICT DO UPDATE SET folderid=0",
          "INSERT INTO folders (folderid) SELECT 5; DELETE FROM folders"}) {
        qdb_statement(m_db, "%s", statement);
        EXPECT_EQ(number(query("SELECT count(*) FROM folders WHERE folderid=1"), 0, 0), 1) << statement;
    }
    EXPECT_EQ(count("files"), 3);
}

TEST_F(QdbConnectedTest, ATriggerInTheCatalogueMayNotDestroyAnything) {
    sql("CREATE TRIGGER bomb AFTER INSERT ON folders BEGIN DELETE FROM files; END;");
    EXPECT_EQ(qdb_statement(m_db, "INSERT INTO folders (folderid) SELECT 5"), -1);
    EXPECT_EQ(count("files"), 3);
    EXPECT_EQ(count("folders"), 1);
}

TEST_F(QdbConnectedTest, AReadOnlyFileCanBeRead) {
    namespace fs = std::filesystem;
    qdb_disconnect(m_db);
    fs::permissions(m_file, fs::perms::owner_read);
    m_db = qdb_connect(DATABASE, 1);
    ASSERT_NE(m_db, nullptr);
    EXPECT_EQ(count("files"), 3);
}

namespace {

/** What stands between the signs of the search for a song, made to cost time or memory. */
const std::string COSTLY_SONGS[] = {
    "x' OR length(randomblob(900000000)) --",
    "x' OR length(zeroblob(900000000)) --",
    "x' OR length(printf('%.*c', 900000000, 'x')) --",
    "x' OR hex(zeroblob(400000000)) --",
    "x' UNION SELECT zeroblob(40000000),1,1,1 FROM files --",
    "x' OR (SELECT count(*) FROM files a, files b, files c, files d, files e, files f, files g) --",
    "x' OR (SELECT count(*) FROM files a, files b, files c WHERE a.filename || b.filename || c.filename LIKE "
    "'%a%b') --",
    std::string(5000, '_'),
    std::string(3000, '('),
};

/** Most memory that the process has had, in kilobytes. */
long peakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

#ifdef __SANITIZE_ADDRESS__ // which keeps what was freed for a while
constexpr long MostKilobytes = 1'000'000;
#else
constexpr long MostKilobytes = 100'000;
#endif

} // namespace

TEST_F(QdbConnectedTest, ACostlyRequestIsRefusedWithinItsTimeAndMemory) {
    sql("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 2000)"
        " INSERT INTO files SELECT i, 1, 1, replace(printf('%250d', i), ' ', 'a') FROM n;");
    for (const std::string& song : COSTLY_SONGS) {
        SCOPED_TRACE(song.substr(0, 60));
        const std::string statement =
            "SELECT fid,folderid,ftype,filename from files WHERE ftype == 1 AND filename LIKE '%%" + song +
            "%%' ORDER BY folderid, fid;";
        const long before = peakKilobytes();
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(qdb_statement(m_db, "%s", statement.c_str()), -1);
        const auto spent = std::chrono::steady_clock::now() - start;
        // A loaded machine and a sanitizer get more; for ever is another order.
        EXPECT_LT(spent, 5 * QdbGuard::LongestStatement);
        EXPECT_LT(peakKilobytes() - before, MostKilobytes);
        EXPECT_STRNE(qdb_geterrmsg(m_db), "");
    }
    EXPECT_EQ(count("files"), 1994) << "the next one runs";
}

TEST_F(QdbConnectedTest, AStatementThatTakesForEverIsStopped) {
    std::string tables = "files";
    for (int i = 0; i < 40; ++i) {
        tables += ", files f" + std::to_string(i);
    }
    EXPECT_EQ(qdb_statement(m_db, "SELECT count(*) FROM %s", tables.c_str()), -1);
    EXPECT_STREQ(qdb_geterrmsg(m_db), "refused: the statement takes too long");
    EXPECT_EQ(count("files"), 3) << "the next one runs";
}

TEST_F(QdbConnectedTest, OnlyTheColumnsOfTheCatalogueAndTheFunctionsOfItsReadersAreThere) {
    for (const char* statement :
         {"SELECT name FROM sqlite_master", "SELECT abs(1)", "SELECT name FROM sqlite_temp_master"}) {
        EXPECT_EQ(qdb_statement(m_db, "%s", statement), -1) << statement;
        EXPECT_STREQ(qdb_geterrmsg(m_db),
                     "refused: only the catalogue's tables can be read, with LIKE and count")
            << statement;
    }
    query("SELECT rowid, FID, folderid, ftype, FileName FROM Files WHERE filename LIKE '%o%'");
    query("SELECT folderid, parentid, foldername, ftype, foldercount, filecount FROM folders");
    query("SELECT count(*), count(filename) FROM files");
}

TEST_F(QdbConnectedTest, AResultOfUnreasonableSizeIsRefused) {
    sql("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 25)"
        " INSERT INTO files SELECT i, 1, 1, replace(printf('%60000d', i), ' ', 'a') FROM n;");
    EXPECT_EQ(qdb_statement(m_db, "SELECT a.filename FROM files a, files b"), 0);
    EXPECT_EQ(qdb_statement(m_db, "SELECT a.filename FROM files a, files b, files c"), -1);
    EXPECT_EQ(errno, E2BIG);
    EXPECT_THAT(qdb_geterrmsg(m_db), HasSubstr("too large"));
}

TEST_F(QdbConnectedTest, EndlessRecursionIsRefused) {
    EXPECT_EQ(
        qdb_statement(m_db, "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n) SELECT i FROM n"),
        -1);
    EXPECT_EQ(errno, EPERM);
}

} // namespace zm::test
