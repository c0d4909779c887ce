#include "tests/model/DiscQDBQueryTest.h"

namespace zm::test {

TEST_F(DiscQDBQueryTest, BetweenTheCommandAndTheWorkersStartTheOldTaskCountsAsFinished) {
    m_db.InitDataBase(); // and no worker
    m_db.SetFinishFlag(true);
    m_db.QueryPlayListCmd(MUSIC, LIST_FROM_ALL_AUDIO, "");
    EXPECT_TRUE(m_db.GetFinishFlag());
    EXPECT_FALSE(m_db.IsQueryFinished()) << "though the new one has not begun";
    EXPECT_EQ(size(LIST_FROM_ALL_AUDIO), 0);
}

TEST_F(DiscQDBQueryTest, NobodyWaitsForTheWorkersStatement) {
    sql("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 500)"
        " INSERT INTO files SELECT i, 1, 1, 'song ' || i FROM n;");
    begin();
    query(MUSIC, LIST_FROM_ALL_AUDIO);
    m_db.QueryPlayListCmd("SELECT count(*) FROM files a, files b, files c, files d, files e",
                          LIST_FROM_ALL_VIDEO, "");
    ASSERT_TRUE(eventually([&] { return !m_db.GetFinishFlag(); }));
    int value = 0;
    m_db.GetVecListSize(LIST_FROM_ALL_VIDEO, value);
    EXPECT_EQ(value, 0);
    EXPECT_TRUE(m_db.qDb_GetObjData_Int("SELECT count(*) FROM folders", value));
    EXPECT_EQ(value, 2);
    m_db.DataInit();
    m_db.QueryPlayListCmd(MUSIC, LIST_FROM_ALL_AUDIO, "");
    EXPECT_THAT(logged(), testing::Not(testing::Contains(testing::HasSubstr("takes too long"))))
        << "it has ended before all that was done";
    EXPECT_TRUE(eventually([&] { return m_db.IsQueryFinished() && size(LIST_FROM_ALL_AUDIO) > 490; }))
        << "and the next one follows";
    EXPECT_THAT(logged(), testing::Contains(testing::HasSubstr("takes too long")));
}

TEST_F(DiscQDBQueryTest, TheBreakFlagIsKeptAndBreaksNothing) {
    begin();
    m_db.SetBreakQue(true);
    query(MUSIC, LIST_FROM_ALL_AUDIO);
    EXPECT_EQ(size(LIST_FROM_ALL_AUDIO), 3);
    EXPECT_TRUE(m_db.GetBreakQue());
}

/** A worker that a test can stop at a row. */
class HeldWorker : public DiscQDB {
public:
    HeldWorker() : DiscQDB(*CDiscData::GetInstance()) {}
    ~HeldWorker() override { Close(); }

    /** Asks for all songs; waits until the worker has read `rows` of them and is held there. */
    bool readsSongsUpTo(int rows) {
        Init();
        InitDataBase();
        qdbHold(rows);
        QueryPlayListCmd(MUSIC, LIST_FROM_ALL_AUDIO, "");
        return eventually(qdbHeld);
    }

protected:
    void InitMaskThread() override {
        DiscQDB::InitMaskThread();
        qdbMarkWorker();
    }
};

TEST_F(DiscQDBQueryTest, RowsAreSeenOneByOneWhileTheQueryRuns) {
    HeldWorker db;
    ASSERT_TRUE(db.readsSongsUpTo(2));
    int count = 0;
    db.GetVecListSize(LIST_FROM_ALL_AUDIO, count);
    EXPECT_EQ(count, 2);
    EXPECT_FALSE(db.GetFinishFlag());
    EXPECT_TRUE(db.qDb_GetObjData_Int("SELECT count(*) FROM folders", count)) << "statements run beside it";
    EXPECT_EQ(count, 2);
    qdbRelease();
    ASSERT_TRUE(eventually([&] { return db.GetFinishFlag(); }));
    db.GetVecListSize(LIST_FROM_ALL_AUDIO, count);
    EXPECT_EQ(count, 3);
}

TEST_F(DiscQDBQueryTest, RowsOfARunningTaskLandInTheListOfTheNextOne) {
    HeldWorker db;
    ASSERT_TRUE(db.readsSongsUpTo(1));
    db.QueryPlayListCmd("SELECT fid,folderid,ftype,filename FROM files WHERE ftype = 2", LIST_FROM_ALL_VIDEO,
                        "");
    qdbRelease();
    int count = 0;
    ASSERT_TRUE(eventually([&] {
        db.GetVecListSize(LIST_FROM_ALL_VIDEO, count);
        return count == 3;
    })) << "two late rows, and the one of the second task";
    db.GetVecListSize(LIST_FROM_ALL_AUDIO, count);
    EXPECT_EQ(count, 1);
    char name[DISC_NAME_SIZE] = "";
    db.GetVecList_Data(LIST_FROM_ALL_VIDEO, 0, name);
    EXPECT_STREQ(name, "two.mp3");
    db.GetVecList_Data(LIST_FROM_ALL_VIDEO, 2, name);
    EXPECT_STREQ(name, "film.avi");
}

TEST_F(DiscQDBQueryTest, RowsOfATaskThatADiscChangeOvertakesAreDropped) {
    HeldWorker db;
    ASSERT_TRUE(db.readsSongsUpTo(1));
    db.InitDataBase();
    qdbRelease();
    ASSERT_TRUE(eventually([&] { return db.GetFinishFlag(); }));
    int count = -1;
    db.GetVecListSize(LIST_FROM_ALL_AUDIO, count);
    EXPECT_EQ(count, 0);
}

TEST_F(DiscQDBQueryTest, ViewAndWorkerUseTheCatalogueAtTheSameTime) {
    begin();
    for (int round = 0; round < 50; ++round) {
        m_db.QueryPlayListCmd(round % 2 ? MUSIC : FOLDERS, round % 11, MUSIC);
        int value = 0;
        char name[DISC_NAME_SIZE];
        m_db.qDb_GetObjData_Int("SELECT count(*) FROM files", value);
        EXPECT_EQ(value, 6);
        m_db.GetVecListSize(round % 11, value);
        m_db.GetVecList_Data(round % 11, 0, name);
        m_db.GetVecList_Data_Index(6, 1, 1, value);
        m_db.GetFinishFlag();
        if (round % 10 == 9) {
            m_db.InitDataBase();
        }
    }
}

} // namespace zm::test
