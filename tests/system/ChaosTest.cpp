#include "tests/system/ChaosTest.h"

#include <signal.h>

#include <filesystem>

namespace zm::test {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr int Rounds = 4; ///< fewer than the deaths in a minute at which a program is given up

bool runs(int pid) {
    return fs::exists("/proc/" + std::to_string(pid));
}

} // namespace

TEST_F(Chaos, AKilledApplicationIsBackOnItsPage) {
    startAll();
    playDisc();
    for (int round = 0; round < Rounds; ++round) {
        useFor(someTime());
        ctl({"kill", "app"});
        ctl({"app", "resume"});
        expectRecovery([this] { return ctl({"screen"}).exit == 0; },
                       [this] {
                           ctl({"key", "17"});
                           return plays();
                       });
    }
}

TEST_F(Chaos, AKilledDiscServiceFindsTheDiscAgain) {
    startAll();
    playDisc();
    for (int round = 0; round < Rounds; ++round) {
        useFor(someTime());
        ctl({"kill", "disc"});
        expectRecovery([this] { return allRun(); },
                       [this] {
                           ctl({"app", "resume"});
                           ctl({"key", "17"});
                           return plays();
                       });
    }
}

TEST_F(Chaos, AKilledBenchLeavesNoProcessAndTheNextOneBeginsAnew) {
    for (int round = 0; round < Rounds; ++round) {
        startAll();
        playDisc();
        useFor(someTime());
        const auto pids = children();
        ASSERT_EQ(pids.size(), 2u);
        bench->signal(SIGKILL);
        EXPECT_EQ(bench->wait(), 1000 + SIGKILL);
        const auto dead = Clock::now();
        EXPECT_TRUE(eventually([&] { return !runs(pids[0]) && !runs(pids[1]); }));
        EXPECT_LE(Clock::now() - dead, recoveryTime());
        EXPECT_THAT(mustFail({"ps"}), HasSubstr("no bench runs"));
    }
    startAll();
    playDisc();
}

TEST_F(Chaos, OfTwoBenchesStartedAtOnceOneWins) {
    for (int round = 0; round < Rounds; ++round) {
        const Words words{"zmbench", "--runtime", folder, "--no-disc-service", "--no-web"};
        Process first(words, folder);
        Process second(words, folder);
        const std::string firstLine = first.line();
        Process& winner = firstLine == "ready" ? first : second;
        Process& loser = firstLine == "ready" ? second : first;
        EXPECT_EQ(firstLine == "ready" ? firstLine : second.line(), "ready");
        EXPECT_EQ(loser.wait(), 1);
        EXPECT_THAT(loser.err(), HasSubstr("another bench already runs in " + folder));
        EXPECT_EQ(window(), 1);
        winner.signal(SIGTERM);
        EXPECT_EQ(winner.wait(), 0) << winner.err();
    }
}

TEST_F(Chaos, ADiscPulledWhileItIsScannedLeavesNothingBehind) {
    startAll();
    const std::string big = folder + "/big";
    writeMusicFolder(big, 1);
    for (int i = 0; i < 2000; ++i) {
        fs::create_hard_link(big + "/song 1.wav", big + "/copy " + std::to_string(i) + ".wav");
    }
    for (int round = 0; round < Rounds; ++round) {
        must({"insert", big});
        std::this_thread::sleep_for(someTime());
        must({"eject"});
        const auto pulled = Clock::now();
        EXPECT_TRUE(eventually([this] { return driveIsEmpty() && showsNoDisc(); }));
        EXPECT_LE(Clock::now() - pulled, recoveryTime());
        // The same once more, and the service dies as well.
        must({"insert", big});
        std::this_thread::sleep_for(someTime());
        if (round < 2) {
            must({"kill", "disc"});
        }
        must({"eject"});
        expectRecovery([this] { return allRun(); }, [this] { return driveIsEmpty(); });
    }
    playDisc();
    const Json list = screen()["main"]["windows"]["24"]["items"]["2000"]["rows"];
    EXPECT_LE(list.size(), 4u) << "nothing of the disc that was pulled";
}

TEST_F(Chaos, ARuntimeFolderThatIsRemovedEndsInAClearError) {
    startAll();
    const auto pids = children();
    fs::remove_all(folder);
    EXPECT_THAT(mustFail({"screen"}), HasSubstr("no bench runs in " + folder));
    kill(pids[1], SIGKILL); // what is started now finds no folder
    EXPECT_TRUE(eventually([&] { return bench->err().find("Platen was killed") != std::string::npos; }));
    const auto asked = Clock::now();
    bench->signal(SIGTERM);
    EXPECT_EQ(bench->wait(), 0) << bench->err();
    EXPECT_LE(Clock::now() - asked, 5s);
    EXPECT_FALSE(runs(pids[0]));
    bench.reset();
    startAll();
    playDisc();
}

TEST_F(Chaos, AClockThatJumpsFarAheadFiresWhatFellDueAndGoesOn) {
    startManual();
    playMusic();
    must({"click", "main", "6", "6508", "1"});
    settle();
    // The way back to the play page falls due again and again.
    must({"clock", "advance", std::to_string(DayMs)});
    EXPECT_EQ(window(), 6);
    must({"time", "23:59"});
    must({"time", "00:00"});
    settle();
    EXPECT_EQ(item(6, 8)["text"], "00:00");
    watchCommands();
    must({"key", "20"});
    EXPECT_THAT(commands(1), ElementsAre("1,0,0"));
}

} // namespace zm::test
