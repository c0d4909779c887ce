#include "tests/qdb/QdbTestBase.h"

#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

namespace zm::test {

TEST_F(QdbConnectedTest, AResultHasRowsColumnsAndCells) {
    qdb_result_t* result = query("SELECT fid, filename FROM files ORDER BY fid");
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(qdb_rows(result), 3);
    EXPECT_EQ(qdb_columns(result), 2);
    EXPECT_EQ(number(result, 0, 0), 1);
    EXPECT_EQ(text(result, 1, 1), "two.mp3");
    EXPECT_EQ(qdb_cell(result, 2, 1), nullptr) << "NULL";
    EXPECT_EQ(qdb_freeresult(result), 0);
}

TEST_F(QdbConnectedTest, ColumnNamesMayBeSpelledEitherWay) {
    EXPECT_EQ(text(query("SELECT FileName FROM Files WHERE FID = 1"), 0, 0), "one.mp3");
}

TEST_F(QdbConnectedTest, CellsOutsideTheResultAreNull) {
    qdb_result_t* result = query("SELECT fid FROM files");
    for (auto [row, column] : {std::pair{-1, 0}, {3, 0}, {0, -1}, {0, 1}, {1'000'000, 1'000'000}}) {
        EXPECT_EQ(qdb_cell(result, row, column), nullptr) << row << "," << column;
    }
}

TEST_F(QdbConnectedTest, NumbersAreEightBytesAndServeAsInt) {
    qdb_result_t* result = query("SELECT -5, 1099511627776, 2.5");
    EXPECT_EQ(number(result, 0, 0), -5);
    EXPECT_EQ(*static_cast<int64_t*>(qdb_cell(result, 0, 0)), -5);
    EXPECT_EQ(*static_cast<int64_t*>(qdb_cell(result, 0, 1)), 1099511627776);
    EXPECT_DOUBLE_EQ(*static_cast<double*>(qdb_cell(result, 0, 2)), 2.5);
}

TEST_F(QdbConnectedTest, ReadingACellAsAnotherTypeStaysInsideIt) {
    qdb_result_t* result = query("SELECT '', 'x', -1, x'41420043'");
    EXPECT_EQ(*static_cast<int64_t*>(qdb_cell(result, 0, 0)), 0) << "an empty text has eight bytes too";
    EXPECT_EQ(*static_cast<int64_t*>(qdb_cell(result, 0, 1)), 'x');
    EXPECT_EQ(text(result, 0, 2), std::string(8, '\xff')) << "a number read as a text ends behind it";
    EXPECT_EQ(text(result, 0, 3), "AB");
}

TEST_F(QdbConnectedTest, TextsOfAnyLengthEndWithNul) {
    for (int length : {0, 6, 7, 8, 9, 15, 16, 4000}) {
        std::string statement = "SELECT '" + std::string(static_cast<size_t>(length), 'a') + "', 'next'";
        qdb_result_t* result = query(statement.c_str());
        EXPECT_EQ(text(result, 0, 0), std::string(static_cast<size_t>(length), 'a'));
        EXPECT_EQ(text(result, 0, 1), "next");
    }
}

TEST_F(QdbConnectedTest, ALongResultKeepsEveryRow) {
    constexpr int Rows = 30000;
    sql("DELETE FROM files;"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000)"
        " INSERT INTO files SELECT i, -i, NULL, 'row ' || i FROM n;");
    qdb_result_t* result = query("SELECT fid, folderid, ftype, filename FROM files ORDER BY fid");
    ASSERT_EQ(qdb_rows(result), Rows);
    for (int row = 0; row < Rows; ++row) {
        ASSERT_EQ(*static_cast<int64_t*>(qdb_cell(result, row, 0)), row + 1);
        ASSERT_EQ(*static_cast<int64_t*>(qdb_cell(result, row, 1)), -row - 1);
        ASSERT_EQ(qdb_cell(result, row, 2), nullptr);
        ASSERT_EQ(text(result, row, 3), "row " + std::to_string(row + 1));
    }
    EXPECT_EQ(qdb_cell(result, Rows, 0), nullptr);
}

TEST_F(QdbConnectedTest, ATextMayBeLongerThanAllOthersTogether) {
    sql("UPDATE files SET filename = replace(printf('%60000d', 0), ' ', '0') WHERE fid = 1;");
    qdb_result_t* result = query("SELECT 'before', filename, 'behind' FROM files WHERE fid = 1");
    EXPECT_EQ(text(result, 0, 0), "before");
    EXPECT_EQ(text(result, 0, 1), std::string(60000, '0'));
    EXPECT_EQ(text(result, 0, 2), "behind");
}

TEST_F(QdbConnectedTest, AResultIsHandedOverOnce) {
    ASSERT_NE(query("SELECT 1"), nullptr);
    errno = 0;
    EXPECT_EQ(qdb_getresult(m_db), nullptr);
    EXPECT_EQ(errno, ENODATA);
    EXPECT_STREQ(qdb_geterrmsg(m_db), std::strerror(ENODATA));
}

TEST_F(QdbConnectedTest, WithoutAnyStatementThereIsNoResult) {
    EXPECT_STREQ(qdb_geterrmsg(m_db), "");
    EXPECT_EQ(qdb_getresult(m_db), nullptr);
    EXPECT_EQ(errno, ENODATA);
}

TEST_F(QdbConnectedTest, AStatementReplacesAResultThatNobodyFetched) {
    EXPECT_EQ(qdb_statement(m_db, "SELECT 1"), 0);
    EXPECT_EQ(number(query("SELECT 2"), 0, 0), 2);
}

TEST_F(QdbConnectedTest, AFailedStatementLeavesAResultThatNobodyFetched) {
    EXPECT_EQ(qdb_statement(m_db, "SELECT 7"), 0);
    EXPECT_EQ(qdb_statement(m_db, "SELEKT"), -1);
    EXPECT_STREQ(qdb_geterrmsg(m_db), "near \"SELEKT\": syntax error");
    qdb_result_t* result = qdb_getresult(m_db);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(number(result, 0, 0), 7);
}

TEST_F(QdbConnectedTest, TheErrorTextIsGoneAfterASuccess) {
    EXPECT_EQ(qdb_statement(m_db, "SELECT absent FROM files"), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_STREQ(qdb_geterrmsg(m_db), "no such column: absent");
    EXPECT_EQ(qdb_statement(m_db, "SELECT 1"), 0);
    EXPECT_STREQ(qdb_geterrmsg(m_db), "");
}

TEST_F(QdbConnectedTest, AnEmptyStatementHasAnEmptyResult) {
    for (const char* statement : {"", ";", " -- nothing"}) {
        qdb_result_t* result = query(statement);
        ASSERT_NE(result, nullptr);
        EXPECT_EQ(qdb_rows(result), 0);
        EXPECT_EQ(qdb_columns(result), 0);
    }
}

TEST_F(QdbConnectedTest, AResultOutlivesTheNextStatementAndTheConnection) {
    qdb_result_t* result = query("SELECT filename FROM files WHERE fid = 1");
    query("SELECT 5");
    sql("DELETE FROM files;");
    qdb_disconnect(m_db);
    m_db = nullptr;
    EXPECT_EQ(text(result, 0, 0), "one.mp3");
    EXPECT_EQ(qdb_freeresult(result), 0);
    EXPECT_EQ(qdb_freeresult(result), -1) << "freed once only";
}

TEST_F(QdbConnectedTest, ResultsThatNobodyFreesDoNotPileUp) {
    qdb_result_t* newest = nullptr;
    qdb_result_t* sixteenth = nullptr;
    size_t early = 0;
    for (int i = 0; i < 100; ++i) {
        newest = query(("SELECT " + std::to_string(i)).c_str());
        sixteenth = i == 84 ? newest : sixteenth;
        early = i == 15 ? qdbResultCount() : early;
    }
    EXPECT_EQ(qdbResultCount(), early);
    EXPECT_EQ(number(newest, 0, 0), 99);
    EXPECT_EQ(number(sixteenth, 0, 0), 84) << "the latest 16 are kept";
}

TEST_F(QdbConnectedTest, OfLargeResultsThatNobodyFreesOnlyTheLatestAreKept) {
    sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200)"
        " INSERT INTO files SELECT i, 9, 1, replace(printf('%60000d', i), ' ', 'a') FROM n;");
    const size_t before = qdbResultCount();
    qdb_result_t* latest[2] = {};
    for (int i = 0; i < 10; ++i) {
        latest[0] = latest[1];
        latest[1] =
            query(("SELECT " + std::to_string(i) + ", filename FROM files WHERE folderid = 9").c_str());
    }
    EXPECT_LE(qdbResultCount(), before + 2);
    EXPECT_EQ(number(latest[0], 0, 0), 8);
    EXPECT_EQ(number(latest[1], 0, 0), 9);
}

TEST_F(QdbConnectedTest, AnotherThreadsResultIsKeptHoweverManyThisThreadFetches) {
    qdb_result_t* result = nullptr;
    std::mutex turn;
    bool fetched = false;
    bool done = false;
    std::condition_variable changed;
    int value = 0;
    std::thread worker([&] {
        std::unique_lock lock(turn);
        result = query("SELECT 42");
        fetched = true;
        changed.notify_all();
        changed.wait(lock, [&] { return done; });
        value = number(result, 0, 0);
    });
    {
        std::unique_lock lock(turn);
        changed.wait(lock, [&] { return fetched; });
        for (int i = 0; i < 50; ++i) {
            query("SELECT 1");
        }
        done = true;
        changed.notify_all();
    }
    worker.join();
    EXPECT_EQ(value, 42);
}

} // namespace zm::test
