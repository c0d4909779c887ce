#include "tests/model/DiscQDBQueryTest.h"

#include <cerrno>
#include <climits>
#include <cstring>

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(DiscQDBQueryTest, AMediaQueryFillsItsListAndLogsItsSteps) {
    begin();
    m_db.QueryPlayListCmd(MUSIC, LIST_FROM_ALL_AUDIO, "");
    ASSERT_TRUE(eventually([&] { return m_db.GetFinishFlag(); }));
    EXPECT_THAT(logged(), ElementsAre(command(6), finish(0),
                                      "[QueryPlayList]-[DiscQDB::QueryPlayList]--nRows=3", finish(1)));
    EXPECT_THAT(rows(LIST_FROM_ALL_AUDIO), ElementsAre("1/1/1/one.mp3", "2/1/1/two.mp3", "1/2/1/three.mp3"));
    EXPECT_EQ(m_db.GetQueBaseType(), QUE_BASE_MEDIA);
}

TEST_F(DiscQDBQueryTest, AFolderQueryIsFollowedByItsFiles) {
    begin();
    m_db.QueryPlayListCmd(FOLDERS, LIST_FROM_AUDIO_IN_FOLDER, MUSIC);
    ASSERT_TRUE(eventually([&] { return m_db.GetFinishFlag(); }));
    EXPECT_THAT(logged(),
                ElementsAre(command(1), finish(0), "[QueryPlayList]-[DiscQDB::QueryPlayList]--nRows=2",
                            "[QueryFolderSubList]-[DiscQDB::GetResultFolderFile]--nRows=3", finish(1)));
    EXPECT_THAT(rows(LIST_FROM_AUDIO_IN_FOLDER),
                ElementsAre("1/0/4/root", "2/1/4/Rock", "1/1/1/one.mp3", "2/1/1/two.mp3", "1/2/1/three.mp3"));
    EXPECT_EQ(m_db.GetQueBaseType(), QUE_BASE_FOLDER);
}

TEST_F(DiscQDBQueryTest, AFolderQueryWithoutASecondStatementGivesFoldersOnly) {
    begin();
    query(FOLDERS, LIST_FROM_AUDIO_FOLDERS);
    EXPECT_THAT(rows(LIST_FROM_AUDIO_FOLDERS), ElementsAre("1/0/4/root", "2/1/4/Rock"));
}

TEST_F(DiscQDBQueryTest, AFolderQueryMayConsistOfItsFilesOnly) {
    begin();
    query("", LIST_FROM_AUDIO_IN_FOLDER, MUSIC);
    EXPECT_THAT(rows(LIST_FROM_AUDIO_IN_FOLDER),
                ElementsAre("1/1/1/one.mp3", "2/1/1/two.mp3", "1/2/1/three.mp3"));
}

TEST_F(DiscQDBQueryTest, TheSecondStatementIsNotRunForMediaSources) {
    begin();
    query(MUSIC, LIST_FROM_ALL_AUDIO, MUSIC);
    EXPECT_EQ(size(LIST_FROM_ALL_AUDIO), 3);
}

TEST_F(DiscQDBQueryTest, AMediaSourceKeepsTheOldSecondStatement) {
    begin();
    query(FOLDERS, LIST_FROM_AUDIO_FOLDERS, MUSIC);
    query(MUSIC, LIST_FROM_ALL_AUDIO, "SELECT nonsense");
    m_db.SetQueBaseType(QUE_BASE_FOLDER);
    m_db.SetFinishFlag(false);
    m_db.DoIt();
    ASSERT_TRUE(eventually([&] { return m_db.GetFinishFlag(); }));
    EXPECT_EQ(size(LIST_FROM_ALL_AUDIO), 3 + 3 + 3) << "as folders, and then the kept statement's rows";
}

TEST_F(DiscQDBQueryTest, AnUnknownBaseTypeReadsNothing) {
    begin();
    query(MUSIC, LIST_FROM_ALL_AUDIO);
    m_db.SetQueBaseType(3);
    m_db.SetFinishFlag(false);
    m_db.DoIt();
    ASSERT_TRUE(eventually([&] { return m_db.GetFinishFlag(); }));
    EXPECT_EQ(size(LIST_FROM_ALL_AUDIO), 3);
}

/** Which sources keep their rows together. */
constexpr int LIST_OF_SOURCE[] = {0, 0, 2, 2, 4, 4, 6, 7, 8, 6, 10};

TEST_F(DiscQDBQueryTest, EverySourceHasItsListAndSomeShareOne) {
    begin();
    for (int source = 0; source <= 10; ++source) {
        const bool isFolder = source <= 5;
        query(isFolder ? FOLDERS : MUSIC, source);
        const size_t expected = isFolder ? 2 : 3;
        for (int other = 0; other <= 10; ++other) {
            if (LIST_OF_SOURCE[other] == LIST_OF_SOURCE[source]) {
                EXPECT_EQ(rows(other).size(), expected) << source << " seen as " << other;
            }
        }
        EXPECT_EQ(m_db.GetQueBaseType(), isFolder ? QUE_BASE_FOLDER : QUE_BASE_MEDIA) << source;
    }
    for (int source : {0, 2, 4}) {
        EXPECT_EQ(size(source), 2);
    }
    for (int source : {6, 7, 8, 10}) {
        EXPECT_EQ(size(source), 3) << "other lists were left alone";
    }
}

TEST_F(DiscQDBQueryTest, AQueryClearsItsListOnly) {
    begin();
    query(MUSIC, LIST_FROM_ALL_AUDIO);
    query(MUSIC, LIST_FROM_SEARCH);
    query("SELECT fid,folderid,ftype,filename from files WHERE fid = 77", LIST_FROM_CUR_AUDIO);
    EXPECT_EQ(size(LIST_FROM_ALL_AUDIO), 0);
    EXPECT_EQ(size(LIST_FROM_SEARCH), 3);
}

TEST_F(DiscQDBQueryTest, AListFilledAgainHasTheNewRowsOnly) {
    sql("DELETE FROM files; INSERT INTO files VALUES (1, 1, 1, 'a'),"
        " (2, 1, 1, 'a name of many characters, so that it needs memory of its own');");
    begin();
    const std::string all = "SELECT fid,folderid,ftype,filename FROM files ORDER BY fid;";
    query(all, LIST_FROM_ALL_AUDIO);
    ASSERT_EQ(size(LIST_FROM_ALL_AUDIO), 2);
    sql("UPDATE files SET filename = 'short' WHERE fid = 2;"
        "INSERT INTO files VALUES (3, 2, 3, 'one more');");
    query(all, LIST_FROM_ALL_AUDIO);
    EXPECT_THAT(rows(LIST_FROM_ALL_AUDIO), ElementsAre("1/1/1/a", "2/1/1/short", "3/2/3/one more"));
    query("SELECT fid,folderid,ftype,filename FROM files WHERE fid = 3;", LIST_FROM_ALL_AUDIO);
    EXPECT_THAT(rows(LIST_FROM_ALL_AUDIO), ElementsAre("3/2/3/one more"));
}

TEST_F(DiscQDBQueryTest, NamesOfSeveralRowsEndWithTheList) {
    sql("DELETE FROM files; INSERT INTO files VALUES (1, 1, 1, 'a'), (2, 1, 1, 'b'), (3, 1, 1, 'c');");
    begin();
    query("SELECT fid,folderid,ftype,filename FROM files ORDER BY fid;", LIST_FROM_ALL_AUDIO);
    auto names = [&](int source, int line) {
        DiscName read[2] = {};
        m_db.GetVecList_Names(source, line, read);
        return std::string(read[0].data()) + "|" + read[1].data();
    };
    EXPECT_EQ(names(LIST_FROM_ALL_AUDIO, 0), "a|b");
    EXPECT_EQ(names(LIST_FROM_ALL_AUDIO, 2), "c|");
    EXPECT_EQ(names(LIST_FROM_ALL_AUDIO, 3), "|");
    EXPECT_EQ(names(LIST_FROM_ALL_AUDIO, -1), "|") << "left as it was";
    EXPECT_EQ(names(LIST_FROM_SEARCH + 1, 0), "|");
}

TEST_F(DiscQDBQueryTest, SourcesThatDoNotExistDoNothing) {
    begin();
    query(MUSIC, LIST_FROM_ALL_AUDIO);
    forgetLog();
    for (int source : {11, 12, 255, -1}) {
        m_db.QueryPlayListCmd("SELECT absent", source, "SELECT absent");
        EXPECT_THAT(logged(), ElementsAre(command(source)));
        int count = 77;
        int value = 78;
        char name[DISC_NAME_SIZE] = "kept";
        EXPECT_TRUE(m_db.GetVecListSize(source, count));
        EXPECT_TRUE(m_db.GetVecList_Data_Fid(source, 0, value));
        EXPECT_TRUE(m_db.GetVecList_Data_ListIndex(source, 100, value));
        EXPECT_TRUE(m_db.GetVecList_Data_Type(source, -1, value));
        EXPECT_TRUE(m_db.GetVecList_Data(source, 0, name));
        EXPECT_TRUE(m_db.GetVecList_Data_Index(source, 1, 1, value));
        EXPECT_EQ(count, 77);
        EXPECT_EQ(value, 78);
        EXPECT_STREQ(name, "kept");
    }
    EXPECT_EQ(size(LIST_FROM_ALL_AUDIO), 3);
}

TEST_F(DiscQDBQueryTest, ARowThatIsNotBelowTheNumberOfRowsIsRefused) {
    begin();
    query(MUSIC, LIST_FROM_ALL_AUDIO);
    int value = 78;
    char name[DISC_NAME_SIZE] = "kept";
    for (int line : {3, 4, 1'000'000}) {
        EXPECT_FALSE(m_db.GetVecList_Data_Fid(6, line, value));
        EXPECT_FALSE(m_db.GetVecList_Data_ListIndex(6, line, value));
        EXPECT_FALSE(m_db.GetVecList_Data_Type(6, line, value));
        EXPECT_FALSE(m_db.GetVecList_Data(6, line, name));
    }
    EXPECT_FALSE(m_db.GetVecList_Data_Fid(LIST_FROM_SEARCH, 0, value)) << "an empty list";
    EXPECT_EQ(value, 78);
    EXPECT_STREQ(name, "kept");
}

TEST_F(DiscQDBQueryTest, ANegativeRowIsNotRefusedAndLeavesTheOutput) {
    begin();
    query(MUSIC, LIST_FROM_ALL_AUDIO);
    int value = 78;
    char name[DISC_NAME_SIZE] = "kept";
    EXPECT_TRUE(m_db.GetVecList_Data_Fid(6, -1, value));
    EXPECT_TRUE(m_db.GetVecList_Data_ListIndex(6, -5, value));
    EXPECT_TRUE(m_db.GetVecList_Data_Type(6, INT_MIN, value));
    EXPECT_TRUE(m_db.GetVecList_Data(6, -1, name));
    EXPECT_EQ(value, 78);
    EXPECT_STREQ(name, "kept");
}

TEST_F(DiscQDBQueryTest, ThePositionOfAFileCountsFromOneAndNeedsTheListsType) {
    sql("DELETE FROM files; INSERT INTO files VALUES (5, 1, 2, 'v'), (5, 1, 1, 'm'), (5, 1, 3, 'p'), (6, 1, "
        "1, 'm'),"
        " (5, 1, 1, 'again');");
    begin();
    const char* all = "SELECT fid,folderid,ftype,filename FROM files ORDER BY rowid";
    const std::tuple<int, int> POSITIONS[] = {{6, 2}, {7, 3}, {8, 1}, {9, 2}};
    for (auto [source, position] : POSITIONS) {
        query(all, source);
        int index = -1;
        EXPECT_TRUE(m_db.GetVecList_Data_Index(source, 5, 1, index)) << source;
        EXPECT_EQ(index, position) << source;
        index = -1;
        EXPECT_FALSE(m_db.GetVecList_Data_Index(source, 5, 2, index)) << "another folder";
        EXPECT_FALSE(m_db.GetVecList_Data_Index(source, 7, 1, index)) << "another file";
        EXPECT_EQ(index, -1);
    }
}

TEST_F(DiscQDBQueryTest, FolderAndSearchSourcesAreNotSearched) {
    begin();
    query(MUSIC, LIST_FROM_SEARCH);
    query(FOLDERS, LIST_FROM_AUDIO_FOLDERS, MUSIC);
    for (int source : {0, 1, 2, 3, 4, 5, 10}) {
        int index = -1;
        EXPECT_TRUE(m_db.GetVecList_Data_Index(source, 1, 1, index)) << source;
        EXPECT_EQ(index, -1) << source;
    }
}

TEST_F(DiscQDBQueryTest, ANullCellRepeatsTheRowBeforeButForTheFileId) {
    sql("DELETE FROM files; INSERT INTO files VALUES (1, 5, 1, NULL), (NULL, NULL, NULL, 'name'), (3, NULL, "
        "2, NULL);");
    begin();
    query("SELECT fid,folderid,ftype,filename FROM files ORDER BY rowid", LIST_FROM_ALL_AUDIO);
    EXPECT_THAT(rows(LIST_FROM_ALL_AUDIO), ElementsAre("1/5/1/", "-1/5/1/name", "3/5/2/name"));
}

TEST_F(DiscQDBQueryTest, ANullCellOfAFolderRepeatsTheRowBeforeToo) {
    sql("DELETE FROM folders; INSERT INTO folders VALUES (NULL, 5, 'a', 1, 0, 0), (2, NULL, NULL, 1, 0, 0);");
    begin();
    query("SELECT folderid,parentid,foldername FROM folders ORDER BY rowid", LIST_FROM_AUDIO_FOLDERS);
    EXPECT_THAT(rows(LIST_FROM_AUDIO_FOLDERS), ElementsAre("-1/5/4/a", "2/5/4/a"));
}

TEST_F(DiscQDBQueryTest, NamesAreCutAt249BytesAndAWholeCharacter) {
    sql("DELETE FROM files; INSERT INTO files VALUES (1, 1, 1, '" + std::string(249, 'a') +
        "'), (2, 1, 1, '" + std::string(250, 'b') + "'), (3, 1, 1, '" + std::string(248, 'c') +
        "\xe4\xb8\xad');");
    begin();
    query("SELECT fid,folderid,ftype,filename FROM files ORDER BY fid", LIST_FROM_ALL_AUDIO);
    EXPECT_THAT(rows(LIST_FROM_ALL_AUDIO),
                ElementsAre("1/1/1/" + std::string(249, 'a'), "2/1/1/" + std::string(249, 'b'),
                            "3/1/1/" + std::string(248, 'c')));
}

TEST_F(DiscQDBQueryTest, ASearchFindsNamesThatContainTheText) {
    begin();
    query("SELECT fid,folderid,ftype,filename from files WHERE ftype == 1 AND filename LIKE '%%THREE%%' "
          "ORDER BY folderid, fid;",
          LIST_FROM_SEARCH);
    EXPECT_THAT(rows(LIST_FROM_SEARCH), ElementsAre("1/2/1/three.mp3"));
}

TEST_F(DiscQDBQueryTest, AnotherDiscEmptiesSixListsAndKeepsTheSearch) {
    begin();
    for (int source : {0, 2, 4}) {
        query(FOLDERS, source);
    }
    for (int source : {6, 7, 8, 10}) {
        query(MUSIC, source);
    }
    m_db.InitDataBase();
    for (int source : {0, 2, 4, 6, 7, 8}) {
        EXPECT_EQ(size(source), 0) << source;
    }
    EXPECT_EQ(size(LIST_FROM_SEARCH), 3);
    EXPECT_FALSE(m_db.GetFinishFlag());
}

TEST_F(DiscQDBQueryTest, InitialisingForgetsTheFirstStatementButNotTheSecond) {
    begin();
    query(FOLDERS, LIST_FROM_AUDIO_FOLDERS, MUSIC);
    m_db.InitDataBase();
    forgetLog();
    m_db.DoIt();
    ASSERT_TRUE(eventually([&] { return m_db.GetFinishFlag(); }));
    EXPECT_THAT(
        logged(),
        ElementsAre(finish(0), "[QueryFolderSubList]-[DiscQDB::GetResultFolderFile]--nRows=3", finish(1)));
    EXPECT_EQ(size(LIST_FROM_AUDIO_FOLDERS), 0) << "there is no list to fill";
}

TEST_F(DiscQDBQueryTest, AFailingStatementIsLoggedAndTheTaskEnds) {
    begin();
    m_db.QueryPlayListCmd("SELECT absent", LIST_FROM_AUDIO_FOLDERS, "SELECT missing");
    ASSERT_TRUE(eventually([&] { return m_db.GetFinishFlag(); }));
    const std::string noData = std::string("Error getting result: ") + std::strerror(ENODATA);
    EXPECT_THAT(logged(),
                ElementsAre(command(0), finish(0), "[ExecuteSql]-QDB Error: no such column: absent",
                            "[QueryPlayList]-" + noData, "[ExecuteSql]-QDB Error: no such column: missing",
                            "[QueryFolderSubList]-" + noData, finish(1)));
    EXPECT_EQ(size(LIST_FROM_AUDIO_FOLDERS), 0);
}

TEST_F(DiscQDBQueryTest, AFailingStatementMayReadTheResultOfAnEarlierOne) {
    begin();
    m_db.Lock();
    EXPECT_TRUE(m_db.ExecuteSql(MUSIC)); // nobody fetches its result
    m_db.UnLock();
    query("SELECT absent", LIST_FROM_ALL_AUDIO);
    EXPECT_EQ(size(LIST_FROM_ALL_AUDIO), 3);
}

TEST_F(DiscQDBQueryTest, WithoutADatabaseTheTaskEndsWithEmptyLists) {
    std::filesystem::remove(file());
    begin();
    testing::internal::CaptureStderr();
    m_db.QueryPlayListCmd(FOLDERS, LIST_FROM_AUDIO_FOLDERS, MUSIC);
    ASSERT_TRUE(eventually([&] { return m_db.GetFinishFlag(); }));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::MatchesRegex("Error connecting to database: [^\n]+\n"));
    EXPECT_THAT(logged(), ElementsAre(command(0), finish(0),
                                      testing::StartsWith("[QueryPlayList]-Error connecting to database: "),
                                      finish(1)));
    EXPECT_EQ(size(LIST_FROM_AUDIO_FOLDERS), 0);
}

} // namespace zm::test
