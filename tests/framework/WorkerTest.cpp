#include "qdb/qdb.h"
#include "tests/framework/TestApplication.h"
#include "zmcar/ThreadControl.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <pthread.h>
#include <semaphore>
#include <sqlite3.h>

using namespace zm::test;
using testing::ElementsAre;

namespace {

class Worker : public Oro::ZMCAR::ThreadControl {
public:
    ~Worker() override { Close(); }

    Recorder runs;
    std::counting_semaphore<> gate{0};
    bool gated = false;

protected:
    void DealWithTask() override {
        runs.add("run");
        if (gated) {
            gate.acquire();
        }
    }
    void InitMaskThread() override {
        ThreadControl::InitMaskThread();
        sigset_t blocked;
        pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
        runs.add(sigismember(&blocked, SIGTERM) ? "begin, masked" : "begin");
    }
    void PrepareToExit() override { runs.add("end"); }
};

/** Reads one cell of a database. */
class ReadingWorker : public Oro::ZMCAR::ThreadControl {
public:
    ~ReadingWorker() override { Close(); }

    Recorder runs;

protected:
    void DealWithTask() override {
        qdb_hdl_t* database = qdb_connect("/dev/qdb/discdb", 0);
        ASSERT_EQ(qdb_statement(database, "%s", "SELECT 7"), 0) << qdb_geterrmsg(database);
        qdb_result_t* result = qdb_getresult(database);
        runs.add("reads");
        runs.add(qdb_cell(result, 0, 0) ? "has read" : "no cell");
        qdb_freeresult(result);
        qdb_disconnect(database);
    }
};

/** An application whose worker is to be held at its first row. */
class HeldWorkerTest : public FrameworkTest {
protected:
    void SetUp() override {
        const std::string file = headUnit.folder() + "/catalogue.sqlite";
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(database, "CREATE TABLE files(fid)", nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(database);
        setenv("ZM_CATALOGUE", file.c_str(), 1);
        ASSERT_NO_FATAL_FAILURE(run());
        ASSERT_TRUE(worker.Init());
        headUnit.askData({{"t", "hold"}, {"rows", 0}});
        worker.DoIt();
        headUnit.settle();
    }

    ReadingWorker worker;
};

} // namespace

TEST_F(HeldWorkerTest, CountsAsSettledAndGoesOnWhenReleased) {
    EXPECT_THAT(worker.runs.lines(), ElementsAre("reads"));
    headUnit.askData({{"t", "unhold"}});
    headUnit.settle();
    EXPECT_THAT(worker.runs.lines(), ElementsAre("reads", "has read"));
}

TEST_F(HeldWorkerTest, IsLetGoWhenItIsClosed) {
    worker.Close();
    EXPECT_THAT(worker.runs.lines(), ElementsAre("reads", "has read"));
}

TEST(Worker, RunsTheTaskOncePerRequest) {
    Worker worker;
    ASSERT_TRUE(worker.Init());
    EXPECT_FALSE(worker.Init());
    worker.DoIt();
    ASSERT_TRUE(worker.runs.waitFor(2));
    worker.DoIt();
    ASSERT_TRUE(worker.runs.waitFor(3));
    worker.Close();
    EXPECT_THAT(worker.runs.take(), ElementsAre("begin, masked", "run", "run", "end"));
    EXPECT_FALSE(worker.runs.threads().contains(std::this_thread::get_id()));
    worker.Close();
    worker.DoIt();
    EXPECT_THAT(worker.runs.take(), testing::IsEmpty());
}

TEST(Worker, RequestsDuringARunStartOneMore) {
    Worker worker;
    worker.gated = true;
    ASSERT_TRUE(worker.Init());
    worker.DoIt();
    ASSERT_TRUE(worker.runs.waitFor(2));
    worker.DoIt();
    worker.DoIt();
    worker.gate.release(3);
    ASSERT_TRUE(worker.runs.waitFor(3));
    worker.Close();
    EXPECT_THAT(worker.runs.take(), ElementsAre("begin, masked", "run", "run", "end"));
}

TEST(Worker, ThatWasNeverStartedGoesAwayQuietly) {
    Worker worker;
    worker.DoIt();
    worker.Close();
    EXPECT_THAT(worker.runs.take(), testing::IsEmpty());
}

TEST_F(FrameworkTest, SettlingWaitsForAWorker) {
    Worker worker;
    worker.gated = true;
    ASSERT_TRUE(worker.Init());
    run();
    worker.DoIt();
    ASSERT_TRUE(worker.runs.waitFor(2));
    EXPECT_EQ(headUnit.askData({{"t", "settle"}, {"timeout", 100}}), (json{{"quiet", false}}));
    worker.gate.release();
    headUnit.settle();
    EXPECT_THAT(worker.runs.take(), ElementsAre("begin, masked", "run"));
}
