#include "tests/framework/TestApplication.h"
#include "zmcar/ThreadControl.h"

#include <gmock/gmock.h>

#include <csignal>
#include <pthread.h>
#include <semaphore>

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

} // namespace

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
