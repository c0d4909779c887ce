#include "platform/linux/qdb/QdbHold.h"
#include "tests/qdb/QdbTestBase.h"
#include "tests/support/Eventually.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace zm::test {

class QdbHoldTest : public QdbConnectedTest {
protected:
    ~QdbHoldTest() override {
        qdbRelease();
        if (m_worker.joinable()) {
            m_worker.join();
        }
    }

    /** Reads the first cells of all files on a marked thread. */
    void startWorker() {
        m_worker = std::thread([this] {
            qdbMarkWorker();
            qdb_result_t* result = query("SELECT fid FROM files ORDER BY fid");
            for (int row = 0; row < qdb_rows(result); ++row) {
                m_sum += number(result, row, 0);
            }
            m_done = true;
        });
    }

    std::atomic<int> m_sum{0};
    std::atomic<bool> m_done{false};
    std::thread m_worker;
};

TEST_F(QdbHoldTest, AWorkerStopsBeforeTheRowUntilItIsReleased) {
    qdbHold(2);
    startWorker();
    ASSERT_TRUE(eventually(qdbHeld));
    EXPECT_EQ(m_sum, 1 + 2);
    EXPECT_FALSE(m_done);
    qdbRelease();
    ASSERT_TRUE(eventually([&] { return m_done.load(); }));
    EXPECT_EQ(m_sum, 1 + 2 + 3);
    EXPECT_FALSE(qdbHeld());
}

TEST_F(QdbHoldTest, ARowBeforeTheFirstIsTheFirst) {
    qdbHold(-3);
    startWorker();
    ASSERT_TRUE(eventually(qdbHeld));
    EXPECT_EQ(m_sum, 0);
}

TEST_F(QdbHoldTest, OtherThreadsAreNeverHeld) {
    qdbHold(0);
    qdb_result_t* result = query("SELECT fid FROM files ORDER BY fid");
    EXPECT_EQ(number(result, 0, 0), 1);
    startWorker();
    ASSERT_TRUE(eventually(qdbHeld)) << "the hold was still there for the worker";
}

TEST_F(QdbHoldTest, AHoldCountsForOneStatement) {
    qdbHold(3);
    startWorker();
    ASSERT_TRUE(eventually([&] { return m_done.load(); })) << "there is no fourth row";
    m_worker.join();
    m_done = false;
    startWorker();
    ASSERT_TRUE(eventually([&] { return m_done.load(); }));
}

TEST_F(QdbHoldTest, AReleaseTakesBackAHoldThatWasNotUsed) {
    qdbHold(0);
    qdbRelease();
    startWorker();
    ASSERT_TRUE(eventually([&] { return m_done.load(); }));
    EXPECT_EQ(m_sum, 6);
}

TEST_F(QdbHoldTest, WhileAWorkerIsHeldOthersRunStatements) {
    qdbHold(0);
    startWorker();
    ASSERT_TRUE(eventually(qdbHeld));
    EXPECT_EQ(count("files"), 3);
    EXPECT_EQ(m_sum, 0);
}

} // namespace zm::test
