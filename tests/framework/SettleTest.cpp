#include "sys/delay.h"
#include "tests/framework/TestApplication.h"

#include <gmock/gmock.h>

#include <atomic>
#include <csignal>
#include <pthread.h>
#include <thread>

using namespace zm::test;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

TEST_F(FrameworkTest, SettlingIsQuietOnlyWhenNothingRanMeanwhile) {
    run();
    app.main.SendViewMessage({{1000, 0, 0, 0}});
    headUnit.settle();
    EXPECT_EQ(headUnit.askData({{"t", "settle"}, {"timeout", 5000}}), (json{{"quiet", true}}));
}

TEST_F(FrameworkTest, SettlingIncludesTheFrames) {
    run();
    const size_t before = headUnit.screen("sync").size();
    app.main.ShowWnd(6, true, 0);
    headUnit.settle();
    EXPECT_GT(headUnit.screen("sync").size(), before);
    EXPECT_GT(headUnit.screen("commit").size(), 0u);
}

TEST_F(FrameworkTest, AnApplicationThatKeepsBusyIsNotQuiet) {
    run();
    app.main.onHandler = [this](const std::string& line) {
        if (line == "message 1 0") {
            app.main.SendViewMessage({{1, 0, 0, 0}});
        }
    };
    app.main.SendViewMessage({{1, 0, 0, 0}});
    EXPECT_EQ(headUnit.askData({{"t", "settle"}, {"timeout", 100}}), (json{{"quiet", false}}));
    app.main.SendViewMessage({{2, 0, 0, 0}});
    EXPECT_TRUE(app.main.Close());
}

TEST_F(FrameworkTest, CloseDoesNotWaitForASettling) {
    ASSERT_TRUE(app.initialise());
    headUnit.tell({{"t", "settle"}, {"timeout", 60000}});
    const auto start = Clock::now();
    EXPECT_TRUE(app.main.Close());
    EXPECT_LT(Clock::now() - start, milliseconds(5000));
}

TEST(Delay, TakesItsTime) {
    const auto start = Clock::now();
    EXPECT_EQ(delay(30), 0u);
    EXPECT_GE(Clock::now() - start, milliseconds(30));
    EXPECT_EQ(delay(0), 0u);
}

// A handled signal shortens no wait, and one that came before makes none longer.
TEST(Delay, IsTheSameWhateverSignalsCome) {
    std::atomic<bool> over{false};
    std::signal(SIGUSR1, [](int) {});
    const pthread_t self = pthread_self();
    std::thread disturber([&over, self] {
        while (!over) {
            std::this_thread::sleep_for(milliseconds(20));
            pthread_kill(self, SIGUSR1);
        }
    });
    const auto start = Clock::now();
    EXPECT_EQ(delay(200), 0u);
    const auto took = Clock::now() - start;
    over = true;
    disturber.join();
    std::signal(SIGUSR1, SIG_DFL);
    EXPECT_GE(took, milliseconds(200));
    EXPECT_LT(took, std::chrono::seconds(20));
}
