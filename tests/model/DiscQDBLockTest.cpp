#include "tests/model/DiscQDBQueryTest.h"
#include "tests/model/LockWait.h"
#include "tests/model/QdbGate.h"

namespace zm::test {

namespace {

/** One use of the catalogue. */
struct Use {
    const char* name;
    std::function<void(DiscQDB&)> run;
};

int s_number = 0;
char s_name[DISC_NAME_SIZE];
DiscName s_names[2];

const Use LIST_READERS[] = {
    {"GetVecListSize", [](DiscQDB& db) { db.GetVecListSize(LIST_FROM_ALL_AUDIO, s_number); }},
    {"GetVecList_Data_Fid", [](DiscQDB& db) { db.GetVecList_Data_Fid(LIST_FROM_ALL_AUDIO, 0, s_number); }},
    {"GetVecList_Data_ListIndex",
     [](DiscQDB& db) { db.GetVecList_Data_ListIndex(LIST_FROM_ALL_AUDIO, 0, s_number); }},
    {"GetVecList_Data_Type", [](DiscQDB& db) { db.GetVecList_Data_Type(LIST_FROM_ALL_AUDIO, 0, s_number); }},
    {"GetVecList_Data", [](DiscQDB& db) { db.GetVecList_Data(LIST_FROM_ALL_AUDIO, 0, s_name); }},
    {"GetVecList_Names", [](DiscQDB& db) { db.GetVecList_Names(LIST_FROM_ALL_AUDIO, 0, s_names); }},
    {"GetVecList_Data_Index",
     [](DiscQDB& db) { db.GetVecList_Data_Index(LIST_FROM_ALL_AUDIO, 1, 1, s_number); }},
};

const Use SCALAR_READS[] = {
    {"qDb_GetObjData_Int", [](DiscQDB& db) { db.qDb_GetObjData_Int("SELECT 1", s_number); }},
    {"qDb_GetObjData_Char", [](DiscQDB& db) { db.qDb_GetObjData_Char("SELECT 'a'", s_name); }},
    {"qDb_GetObjData_IDs", [](DiscQDB& db) { db.qDb_GetObjData_IDs("SELECT 1, 2", s_number, s_number); }},
};

const Use FLAG_USES[] = {
    {"SetFinishFlag", [](DiscQDB& db) { db.SetFinishFlag(true); }},
    {"GetFinishFlag", [](DiscQDB& db) { db.GetFinishFlag(); }},
    {"IsQueryFinished", [](DiscQDB& db) { db.IsQueryFinished(); }},
    {"SetBreakQue", [](DiscQDB& db) { db.SetBreakQue(true); }},
    {"GetBreakQue", [](DiscQDB& db) { db.GetBreakQue(); }},
    {"SetQueBaseType", [](DiscQDB& db) { db.SetQueBaseType(QUE_BASE_FOLDER); }},
    {"GetQueBaseType", [](DiscQDB& db) { db.GetQueBaseType(); }},
};

const Use CHANGE_USES[] = {
    {"QueryPlayListCmd", [](DiscQDB& db) { db.QueryPlayListCmd(MUSIC, LIST_FROM_ALL_AUDIO, ""); }},
    {"CheckMediaName", [](DiscQDB& db) { db.CheckMediaName(1, 1, 1); }},
    {"DataInit", [](DiscQDB& db) { db.DataInit(); }},
    {"CloseDb", [](DiscQDB& db) { db.CloseDb(); }},
    {"OpenDb", [](DiscQDB& db) { db.OpenDb(); }},
};

} // namespace

/** On an open catalogue without a worker. */
class DiscQDBLockTest : public DiscQDBQueryTest {
protected:
    DiscQDBLockTest() { m_db.InitDataBase(); }

    bool waitsForLists(const Use& use) {
        m_db.Lock();
        return waitsForLock([&] { use.run(m_db); }, [&] { m_db.UnLock(); });
    }
};

TEST_F(DiscQDBLockTest, EveryListReaderTakesTheLock) {
    for (const Use& use : LIST_READERS) {
        EXPECT_TRUE(waitsForLists(use)) << use.name;
    }
}

TEST_F(DiscQDBLockTest, EveryScalarReadTakesTheLock) {
    for (const Use& use : SCALAR_READS) {
        EXPECT_TRUE(waitsForLists(use)) << use.name;
    }
}

TEST_F(DiscQDBLockTest, EveryFlagTakesTheLock) {
    for (const Use& use : FLAG_USES) {
        EXPECT_TRUE(waitsForLists(use)) << use.name;
    }
}

TEST_F(DiscQDBLockTest, EveryChangeTakesTheLock) {
    for (const Use& use : CHANGE_USES) {
        EXPECT_TRUE(waitsForLists(use)) << use.name;
    }
}

TEST_F(DiscQDBLockTest, SourcesWithoutAListAndPlainQuestionsNeedNoLock) {
    m_db.Lock(); // not recursive: what took it would never come back
    EXPECT_TRUE(m_db.GetVecListSize(LIST_FROM_SEARCH + 1, s_number));
    EXPECT_TRUE(m_db.GetVecList_Data_Index(LIST_FROM_SEARCH, 1, 1, s_number));
    EXPECT_FALSE(m_db.CheckMediaName(7, 1, 1));
    EXPECT_TRUE(m_db.ExecuteSql("SELECT 1"));
    EXPECT_EQ(m_db.GetResult(), 1);
    m_db.UnLock();
}

/** While the worker's statement runs: it holds the connection, and nothing else. */
class DiscQDBStatementLockTest : public DiscQDBQueryTest {
protected:
    DiscQDBStatementLockTest() { begin(); }
    ~DiscQDBStatementLockTest() override { m_gate.open(); }

    void runStatement() {
        m_gate.close(MUSIC);
        m_db.QueryPlayListCmd(MUSIC, LIST_FROM_ALL_AUDIO, "");
        ASSERT_TRUE(m_gate.waitUntilReached());
    }
    void runSecondStatement() {
        m_gate.close(MUSIC);
        m_db.QueryPlayListCmd(FOLDERS, LIST_FROM_AUDIO_IN_FOLDER, MUSIC);
        ASSERT_TRUE(m_gate.waitUntilReached());
    }
    bool waitsForStatement(const std::function<void()>& use) {
        return waitsForLock(use, [this] { m_gate.open(); });
    }

    QdbGate& m_gate = QdbGate::instance();
};

TEST_F(DiscQDBStatementLockTest, TheConnectionIsNotClosedUnderTheWorkersStatement) {
    runStatement();
    EXPECT_TRUE(waitsForStatement([this] { m_db.CloseDb(); }));
}

TEST_F(DiscQDBStatementLockTest, TheConnectionIsNotClosedUnderTheWorkersSecondStatement) {
    runSecondStatement();
    EXPECT_TRUE(waitsForStatement([this] { m_db.CloseDb(); }));
}

TEST_F(DiscQDBStatementLockTest, ANameIsLookedUpBehindTheWorkersStatement) {
    runStatement();
    EXPECT_TRUE(waitsForStatement([this] { EXPECT_TRUE(m_db.CheckMediaName(1, 1, 1)); }));
}

TEST_F(DiscQDBStatementLockTest, ANameIsLookedUpBehindTheWorkersSecondStatement) {
    runSecondStatement();
    EXPECT_TRUE(waitsForStatement([this] { EXPECT_TRUE(m_db.CheckMediaName(1, 1, 1)); }));
}

TEST_F(DiscQDBStatementLockTest, ListsAndFlagsAreReadBesideIt) {
    runStatement();
    for (const Use& use : LIST_READERS) {
        use.run(m_db); // would never come back
    }
    for (const Use& use : SCALAR_READS) {
        use.run(m_db);
    }
    EXPECT_FALSE(m_db.GetFinishFlag());
}

TEST_F(DiscQDBStatementLockTest, AnObjectThatGoesWaitsForItsWorker) {
    // Names with memory of their own: a worker that outlived the lists would use what they gave back.
    sql("UPDATE files SET filename = filename || ' with a name that is longer than any text object';");
    auto db = std::make_unique<DiscQDB>(m_data);
    db->Init();
    db->InitDataBase();
    db->QueryPlayListCmd(MUSIC, LIST_FROM_ALL_AUDIO, "");
    ASSERT_TRUE(eventually([&] { return db->IsQueryFinished(); }));
    m_gate.close(MUSIC);
    db->QueryPlayListCmd(MUSIC, LIST_FROM_ALL_AUDIO, "");
    ASSERT_TRUE(m_gate.waitUntilReached());
    forgetLog();
    EXPECT_TRUE(waitsForStatement([&] { db.reset(); }));
    EXPECT_THAT(logged(), testing::Contains(finish(1))) << "its task has ended before it";
}

} // namespace zm::test
