#include "tests/model/DiscQDBTest.h"

#include <cerrno>
#include <cstring>

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class DiscQDBConnectionTest : public DiscQDBTest {};

TEST_F(DiscQDBConnectionTest, OpeningIsLoggedOnce) {
    EXPECT_TRUE(m_db.OpenDb());
    EXPECT_THAT(logged(), ElementsAre("[OpenDb]-connected qdb"));
    EXPECT_TRUE(m_db.OpenDb());
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(DiscQDBConnectionTest, AMissingDatabaseIsAnErrorAndTriedAgainAtTheNextInitialisation) {
    fs::remove(file());
    m_db.InitDataBase();
    EXPECT_THAT(logged(), ElementsAre(std::string("[OpenDb]-QDB Error: ") + std::strerror(ENOTCONN)));
    EXPECT_FALSE(m_db.OpenDb());
    EXPECT_FALSE(fs::exists(file()));
    forgetLog();
    sql("CREATE TABLE files (fid INTEGER, folderid INTEGER, ftype INTEGER, filename TEXT);");
    m_db.InitDataBase();
    EXPECT_THAT(logged(), ElementsAre("[OpenDb]-connected qdb"));
    EXPECT_TRUE(m_db.ExecuteSql("SELECT fid FROM files"));
}

TEST_F(DiscQDBConnectionTest, WithoutADatabaseEveryStatementSaysSo) {
    fs::remove(file());
    m_db.OpenDb();
    forgetLog();
    int value = 7;
    int other = 8;
    char text[DISC_NAME_SIZE] = "kept";
    EXPECT_FALSE(m_db.ExecuteSql("SELECT 1"));
    errno = ENOENT;
    EXPECT_FALSE(m_db.qDb_GetObjData_Int("SELECT 1", value));
    EXPECT_FALSE(m_db.qDb_GetObjData_Char("SELECT 1", text));
    EXPECT_FALSE(m_db.qDb_GetObjData_IDs("SELECT 1", value, other));
    const std::string error = "-Error connecting to database: No such file or directory";
    EXPECT_THAT(logged(), ElementsAre("[ExecuteSql]-QDB not open", "[qDb_GetObjData_Int]" + error,
                                      "[qDb_GetObjData_Char]" + error, "[qDb_GetObjData_IDs]" + error));
    EXPECT_EQ(value, 7);
    EXPECT_STREQ(text, "kept");
}

TEST_F(DiscQDBConnectionTest, AClosedDatabaseIsNotOpen) {
    m_db.OpenDb();
    m_db.CloseDb();
    m_db.CloseDb();
    forgetLog();
    int value = 7;
    EXPECT_FALSE(m_db.ExecuteSql("SELECT 1"));
    EXPECT_FALSE(m_db.qDb_GetObjData_Int("SELECT 1", value));
    EXPECT_TRUE(m_db.OpenDb());
    EXPECT_TRUE(m_db.qDb_GetObjData_Int("SELECT 1", value));
    EXPECT_EQ(value, 1);
}

TEST_F(DiscQDBConnectionTest, AFailingStatementIsLogged) {
    m_db.OpenDb();
    forgetLog();
    EXPECT_FALSE(m_db.ExecuteSql("SELECT absent FROM files"));
    EXPECT_THAT(logged(), ElementsAre("[ExecuteSql]-QDB Error: no such column: absent"));
}

TEST_F(DiscQDBConnectionTest, StatementsAreDataAndNoFormat) {
    m_db.OpenDb();
    sql("INSERT INTO files VALUES (1, 1, 1, '100%s %n.mp3');");
    char text[DISC_NAME_SIZE] = "";
    EXPECT_TRUE(
        m_db.qDb_GetObjData_Char("SELECT filename FROM files WHERE filename LIKE '%%100%s %n%%'", text));
    EXPECT_STREQ(text, "100%s %n.mp3");
}

TEST_F(DiscQDBConnectionTest, GetResultCountsRowsAndUsesTheResultUp) {
    sql("INSERT INTO files VALUES (1, 1, 1, 'a'), (2, 1, 1, 'b');");
    m_db.OpenDb();
    EXPECT_TRUE(m_db.ExecuteSql("SELECT fid FROM files"));
    EXPECT_EQ(m_db.GetResult(), 2);
    EXPECT_TRUE(m_db.ExecuteSql("SELECT fid FROM files WHERE fid = 9"));
    EXPECT_EQ(m_db.GetResult(), 0);
    forgetLog();
    EXPECT_EQ(m_db.GetResult(), -1);
    EXPECT_THAT(logged(),
                ElementsAre(std::string("[GetResult]-Error getting result: ") + std::strerror(ENODATA)));
}

TEST_F(DiscQDBConnectionTest, ScalarReadsGiveTheFirstRow) {
    sql("INSERT INTO folders VALUES (3, 1, 'Rock', 1, 2, 14), (3, 1, 'Other', 1, 5, 6);");
    m_db.OpenDb();
    forgetLog();
    int count = 0;
    EXPECT_TRUE(m_db.qDb_GetObjData_Int("SELECT filecount FROM folders WHERE folderid = 3", count));
    EXPECT_EQ(count, 14);
    char name[DISC_NAME_SIZE] = "";
    EXPECT_TRUE(m_db.qDb_GetObjData_Char("SELECT foldername FROM folders WHERE folderid = 3", name));
    EXPECT_STREQ(name, "Rock");
    int a = 0;
    int b = 0;
    EXPECT_TRUE(m_db.qDb_GetObjData_IDs("SELECT folderid, parentid FROM folders", a, b));
    EXPECT_EQ(std::pair(a, b), std::pair(3, 1));
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(DiscQDBConnectionTest, ScalarReadsWithoutARowFailSilently) {
    m_db.OpenDb();
    forgetLog();
    int value = 7;
    int other = 8;
    char text[DISC_NAME_SIZE] = "kept";
    EXPECT_FALSE(m_db.qDb_GetObjData_Int("SELECT fid FROM files", value));
    EXPECT_FALSE(m_db.qDb_GetObjData_Char("SELECT filename FROM files", text));
    EXPECT_FALSE(m_db.qDb_GetObjData_IDs("SELECT fid, folderid FROM files", value, other));
    EXPECT_EQ(std::pair(value, other), std::pair(7, 8));
    EXPECT_STREQ(text, "kept");
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(DiscQDBConnectionTest, ScalarReadsOfNullSucceedAndLeaveTheValue) {
    m_db.OpenDb();
    int value = 7;
    int other = 8;
    char text[DISC_NAME_SIZE] = "kept";
    EXPECT_TRUE(m_db.qDb_GetObjData_Int("SELECT NULL", value));
    EXPECT_TRUE(m_db.qDb_GetObjData_Char("SELECT NULL", text));
    EXPECT_TRUE(m_db.qDb_GetObjData_IDs("SELECT NULL, 5", value, other));
    EXPECT_EQ(std::pair(value, other), std::pair(7, 5));
    EXPECT_TRUE(m_db.qDb_GetObjData_IDs("SELECT 4", value, other)) << "a column that is not there";
    EXPECT_EQ(std::pair(value, other), std::pair(4, 5));
    EXPECT_STREQ(text, "kept");
}

TEST_F(DiscQDBConnectionTest, FailingScalarReadsAreLogged) {
    m_db.OpenDb();
    forgetLog();
    int value = 7;
    int other = 8;
    char text[DISC_NAME_SIZE] = "kept";
    EXPECT_FALSE(m_db.qDb_GetObjData_Int("SELECT 'it's'", value));
    EXPECT_FALSE(m_db.qDb_GetObjData_Char("SELECT absent", text));
    EXPECT_FALSE(m_db.qDb_GetObjData_IDs("SELECT absent", value, other));
    EXPECT_THAT(
        logged(),
        ElementsAre("[qDb_GetObjData_Int]-Error executing SELECT statement: unrecognized token: \"'\"",
                    "[qDb_GetObjData_Char]-Error executing SELECT statement: no such column: absent",
                    "[qDb_GetObjData_IDs]-Error executing SELECT statement: no such column: absent"));
}

TEST_F(DiscQDBConnectionTest, ALongTextFillsTheBufferUpToAWholeCharacter) {
    m_db.OpenDb();
    struct Guarded {
        char text[DISC_NAME_SIZE];
        char behind = 'X';
    } buffer;
    const std::pair<std::string, size_t> ROWS[] = {
        {std::string(259, 'a'), 259},
        {std::string(260, 'a'), 259},
        {std::string(4000, 'a'), 259},
        {std::string(257, 'a') + "\xe4\xb8\xad", 257},
        {std::string(256, 'a') + "\xe4\xb8\xad"
                                 "b",
         259},
        {std::string(256, 'a') + "\xf0\x9f\x8e\xb5", 256},
        {std::string(258, 'a') + "\xc3\xa4", 258},
        {std::string(300, '\xbf'), 256}, // no UTF-8
    };
    for (const auto& [text, length] : ROWS) {
        EXPECT_TRUE(m_db.qDb_GetObjData_Char(("SELECT '" + text + "'").c_str(), buffer.text));
        EXPECT_EQ(std::string(buffer.text), text.substr(0, length));
        EXPECT_EQ(buffer.behind, 'X');
    }
}

TEST_F(DiscQDBConnectionTest, NothingOfAStatementCanDestroyTheCatalogue) {
    sql("INSERT INTO files VALUES (1, 1, 1, 'a');");
    m_db.OpenDb();
    int value = 0;
    for (const char* statement :
         {"DROP TABLE files", "DELETE FROM files", "SELECT 1; DELETE FROM files;",
          "SELECT fid FROM files WHERE filename LIKE '%%x'; DROP TABLE files; --%%'"}) {
        EXPECT_FALSE(m_db.ExecuteSql(statement));
        EXPECT_FALSE(m_db.qDb_GetObjData_Int(statement, value));
    }
    EXPECT_TRUE(m_db.qDb_GetObjData_Int("SELECT count(*) FROM files", value));
    EXPECT_EQ(value, 1);
}

struct MediaNameRow {
    int kind;
    int type; ///< of the file that is made
};

TEST_F(DiscQDBConnectionTest, CheckMediaNameMakesAFileAndCrossesPictureAndVideo) {
    m_db.OpenDb();
    for (auto [kind, type] : {MediaNameRow{1, 1}, {2, 3}, {3, 2}}) {
        sql("DELETE FROM files;");
        EXPECT_FALSE(m_db.CheckMediaName(kind, 5, 2)) << "its name is not known yet";
        EXPECT_FALSE(m_db.CheckMediaName(kind, 5, 2));
        int count = 0;
        EXPECT_TRUE(m_db.qDb_GetObjData_Int("SELECT count(*) FROM files", count));
        EXPECT_EQ(count, 1) << "made once";
        int made = 0;
        EXPECT_TRUE(m_db.qDb_GetObjData_Int("SELECT ftype FROM files WHERE fid=5 AND folderid=2", made));
        EXPECT_EQ(made, type);
        sql("UPDATE files SET filename = 'name';");
        EXPECT_TRUE(m_db.CheckMediaName(kind, 5, 2));
        sql("UPDATE files SET filename = '';");
        EXPECT_FALSE(m_db.CheckMediaName(kind, 5, 2)) << "an empty name is not known";
    }
}

TEST_F(DiscQDBConnectionTest, CheckMediaNameMakesAFolder) {
    m_db.OpenDb();
    for (int kind : {4, 5, 6}) {
        sql("DELETE FROM folders;");
        EXPECT_FALSE(m_db.CheckMediaName(kind, 7, 99));
        int id = 0;
        EXPECT_TRUE(m_db.qDb_GetObjData_Int("SELECT folderid FROM folders", id));
        EXPECT_EQ(id, 7);
        sql("UPDATE folders SET foldername = 'name';");
        EXPECT_TRUE(m_db.CheckMediaName(kind, 7, 99));
    }
}

TEST_F(DiscQDBConnectionTest, CheckMediaNameKnowsSixKinds) {
    m_db.OpenDb();
    forgetLog();
    for (int kind : {-1, 0, 7, 100}) {
        EXPECT_FALSE(m_db.CheckMediaName(kind, 1, 1));
    }
    EXPECT_THAT(logged(), IsEmpty());
    int count = -1;
    m_db.qDb_GetObjData_Int("SELECT (SELECT count(*) FROM files) + (SELECT count(*) FROM folders)", count);
    EXPECT_EQ(count, 0);
}

TEST_F(DiscQDBConnectionTest, CheckMediaNameLogsAFailingInsert) {
    EXPECT_FALSE(m_db.CheckMediaName(1, 1, 1));
    EXPECT_THAT(logged(), ElementsAre("[ExecuteSql]-QDB not open",
                                      "[CheckMediaName]-error occurs when conditionally inserts ID"));
}

TEST_F(DiscQDBConnectionTest, FlagsAndBaseTypeAreKept) {
    EXPECT_FALSE(m_db.GetBreakQue());
    m_db.SetBreakQue(true);
    EXPECT_TRUE(m_db.GetBreakQue());
    EXPECT_FALSE(m_db.GetFinishFlag());
    m_db.SetQueBaseType(2);
    EXPECT_EQ(m_db.GetQueBaseType(), 2);
    forgetLog();
    m_db.SetFinishFlag(true);
    EXPECT_TRUE(m_db.GetFinishFlag());
    m_db.SetFinishFlag(false);
    EXPECT_FALSE(m_db.GetFinishFlag());
    EXPECT_THAT(logged(), ElementsAre("[SetFinishFlag]-[DiscQDB::SetFinishFlag]--bFinish=1",
                                      "[SetFinishFlag]-[DiscQDB::SetFinishFlag]--bFinish=0"));
}

TEST_F(DiscQDBConnectionTest, TheLockIsFreeAfterEveryInitialisation) {
    m_db.InitDataBase();
    m_db.Lock();
    m_db.UnLock();
    m_db.InitDataBase();
    m_db.Lock();
    m_db.UnLock();
}

TEST_F(DiscQDBConnectionTest, AnObjectThatIsNeverUsedComesAndGoes) {
    forgetLog();
    { DiscQDB unused(m_data); }
    EXPECT_THAT(logged(), IsEmpty());
}

} // namespace zm::test
