#include "tests/disc/ServiceFixture.h"

using namespace zm::test;
using namespace zm::disc::model;
using namespace std::chrono_literals;

TEST_F(DiscService, PlayTimeComesAtLeastTwiceASecondWithSmoothSeconds) {
    play();
    const auto begin = m_unit.next("playtime", [](const Published&) { return true; });
    int updates = 0;
    int last = begin.json()["time"];
    Published time;
    do {
        time = m_unit.next("playtime", [](const Published&) { return true; });
        const int now = time.json()["time"];
        EXPECT_GE(now, last);
        EXPECT_LE(now, last + 1);
        last = now;
        ++updates;
    } while (last < 3);
    const std::chrono::duration<double> took = time.when - begin.when;
    EXPECT_GE(updates / took.count(), 2.0);
    EXPECT_NEAR(took.count(), 3.0, 1.0);
}

TEST_F(DiscService, NextAndPreviousMoveThroughTheDisc) {
    play();
    m_unit.command(1);
    nextTrack(1, 2);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(1);
    EXPECT_EQ(nextTrack(2, 1).json()["mediaid"], 3);
    nextTitle("A one");
    nextTip(3);
    m_unit.command(2);
    nextTrack(1, 2);
    nextTip(2);
    m_unit.command(2);
    nextTrack(1, 1);
    m_unit.command(2);
    nextTrack(2, 3);
}

TEST_F(DiscService, PreviousBeginsAnItemAnewThatHasPlayedForThreeSeconds) {
    play();
    m_unit.command(1);
    nextTrack(1, 2);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(185, 10);
    nextTime(10, 12);
    m_unit.command(2);
    EXPECT_EQ(nextTime(0, 2).json()["tracktime"], 30);
    nextTip(2);
    m_unit.nextState(PlayState::Playing);
    EXPECT_EQ(m_unit.recorder().text().rfind("\"curmediaid\":1,"),
              m_unit.recorder().text().find("\"curmediaid\":1,"))
        << "the first item was not announced again";
    m_unit.command(2); // at once: back
    nextTrack(1, 1);
    nextTip(2);
}

TEST_F(DiscService, PreviousGoesBackWithinThreeSeconds) {
    play();
    m_unit.command(1);
    nextTrack(1, 2);
    m_unit.nextState(PlayState::Playing);
    nextTime(1, 2);
    m_unit.command(2);
    nextTrack(1, 1);
}

TEST_F(DiscService, EqualCommandsCountEach) {
    play();
    for (int i = 0; i < 4; ++i) {
        m_unit.command(1);
    }
    nextTrack(2, 3);
}

TEST_F(DiscService, CommandsFromBeforeTheStartAreNotCarriedOut) {
    play();
    m_unit.command(1);
    nextTrack(1, 2);
    m_unit.nextState(PlayState::Playing);
    m_unit.stopService();
    m_unit.mark();
    m_unit.startService();
    nextTrack(1, 2);
    m_unit.nextState(PlayState::Playing);
    EXPECT_FALSE(m_unit.follows("msgtip", "3", 500ms));
}

TEST_F(DiscService, PlayPauseTogglesAndPauseAndPlayDoNot) {
    play();
    m_unit.command(5);
    m_unit.nextState(PlayState::Paused);
    nextTip(5);
    m_unit.command(5);
    m_unit.nextState(PlayState::Playing);
    nextTip(6);
    m_unit.command(131);
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.mark();
    m_unit.command(130);
    EXPECT_FALSE(m_unit.follows("discstate", "2", 300ms));
    m_unit.command(131);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, NoPlayTimePassesWhilePaused) {
    play();
    nextTime(1, 5);
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    nextTip(5);
    EXPECT_FALSE(m_unit.follows("playtime", "none", 700ms));
    const auto times = m_unit.since("playtime");
    EXPECT_LE(times.size(), 1u) << "at most the position at which it stands";
}

TEST_F(DiscService, SeekGoesToTheSecond) {
    play();
    m_unit.command(185, 20);
    nextTime(20, 20);
    nextTime(21, 21);
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.command(185, 5);
    nextTime(5, 5);
    m_unit.command(131);
    nextTime(6, 6);
    m_unit.command(185, -3);
    nextTime(0, 0);
}

TEST_F(DiscService, SeekBeyondTheEndGoesOnWithTheNextItem) {
    play();
    m_unit.command(185, 1000);
    nextTrack(1, 2);
}

TEST_F(DiscService, StopGoesToTheBeginningAndPlayStartsThere) {
    play();
    nextTime(1, 3);
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    nextTime(0, 0);
    nextTip(4);
    m_unit.command(131);
    nextTrack(1, 1);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, FastForwardStepsThroughItsSpeeds) {
    play();
    const char* speeds[] = {"2", "4", "8", "20", "2"};
    const int tips[] = {18, 19, 20, 21, 18};
    for (int i = 0; i < 5; ++i) {
        m_unit.command(3);
        m_unit.next("playspeed", speeds[i]);
        m_unit.nextState(PlayState::Forward);
        nextTip(tips[i]);
    }
    m_unit.command(5);
    m_unit.next("playspeed", "1");
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, FastBackwardStepsThroughItsSpeeds) {
    play();
    m_unit.command(185, 25);
    nextTime(25, 25);
    const char* speeds[] = {"-2", "-4", "-8", "-20"};
    for (int i = 0; i < 4; ++i) {
        m_unit.command(4);
        m_unit.next("playspeed", speeds[i]);
        m_unit.nextState(PlayState::Backward);
        nextTip(22 + i);
    }
    m_unit.command(3);
    m_unit.next("playspeed", "2");
    m_unit.nextState(PlayState::Forward);
}

TEST_F(DiscService, FastForwardRunsAtItsSpeed) {
    play();
    m_unit.command(3);
    m_unit.command(3);
    m_unit.command(3);
    const auto from = nextTime(4, 6);
    const auto to = nextTime(20, 22);
    const double seconds = std::chrono::duration<double>(to.when - from.when).count();
    EXPECT_NEAR((to.json()["time"].get<int>() - from.json()["time"].get<int>()) / seconds, 8.0, 2.0);
}

TEST_F(DiscService, FastForwardOverTheEndGoesOnWithTheNextItem) {
    play();
    m_unit.command(185, 25);
    for (int i = 0; i < 4; ++i) {
        m_unit.command(3);
    }
    nextTrack(1, 2);
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] == 1; });
    EXPECT_EQ(m_unit.since("playspeed").size(), 0u) << "back at normal speed";
}

TEST_F(DiscService, FastBackwardToTheBeginningPlaysOn) {
    play();
    m_unit.command(185, 3);
    nextTime(3, 3);
    m_unit.command(4);
    m_unit.command(4);
    m_unit.nextState(PlayState::Backward);
    nextTrack(1, 1);
    m_unit.nextState(PlayState::Playing);
    nextTime(1, 1);
}

TEST_F(DiscService, PlayTrackTakesAPackedNumber) {
    play();
    m_unit.command(182, (2 << 16) + 3, 1);
    EXPECT_EQ(nextTrack(2, 3).json()["mediaid"], 5);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, PlayTrackTakesFileAndFolder) {
    play();
    m_unit.command(182, 2, 2);
    nextTrack(2, 2);
}

TEST_F(DiscService, PlayTrackTakesAPositionInThePlayingFolder) {
    play();
    m_unit.command(182, 2, 0);
    nextTrack(1, 2);
}

TEST_F(DiscService, PlayTrackOfTheCurrentItemStartsItAgain) {
    play();
    m_unit.command(185, 10);
    nextTime(10, 10);
    m_unit.command(182, 1, 0);
    nextTrack(1, 1);
    nextTime(0, 0);
}

TEST_F(DiscService, PlayTrackOfNothingIsRefusedAndPlayingGoesOn) {
    play();
    m_unit.command(182, 9, 9);
    m_unit.next("keyinvalid", [](const Published&) { return true; });
    nextTip(1);
    nextTime(1, 5);
    EXPECT_TRUE(m_unit.since("trackinfo").empty());
}

TEST_F(DiscService, RepeatModesAreSetAndSteppedThrough) {
    play();
    const struct {
        int command;
        int mode;
        int tip;
    } steps[] = {{1, 1, 7}, {2, 2, 8},  {4, 4, 10}, {8, 8, 9}, {2, 2, 8},
                 {0, 8, 9}, {0, 4, 10}, {0, 1, 7},  {0, 2, 8}};
    for (const auto& step : steps) {
        m_unit.command(9, step.command);
        m_unit.next("playstate", [&](const Published& each) { return each.json()["repeat"] == step.mode; });
        nextTip(step.tip);
    }
    m_unit.command(9, 3);
    nextTip(1);
}

TEST_F(DiscService, ShuffleModesAreSetAndSteppedThrough) {
    play();
    const int steps[][2] = {{1, 1}, {2, 2}, {4, 0}, {0, 1}, {0, 2}, {0, 0}};
    for (const auto& [command, mode] : steps) {
        m_unit.command(7, command);
        m_unit.next("playstate",
                    [mode = mode](const Published& each) { return each.json()["shuffle"] == mode; });
    }
    m_unit.command(7, 9);
    nextTip(1);
}

TEST_F(DiscService, PassageIsRepeatedBetweenTwoPresses) {
    play();
    m_unit.command(185, 10);
    nextTime(10, 10);
    m_unit.command(10);
    nextTime(11, 11);
    m_unit.command(10);
    nextTip(12);
    nextTime(10, 10);
    m_unit.command(10);
    nextTip(11);
    nextTime(13, 13);
}

TEST_F(DiscService, BrowsingIsAnsweredByTheCatalogueOfTheFolder) {
    play();
    m_unit.command(186, 2, 2);
    m_unit.next("updatedb", std::to_string(0x10000 + 2));
    m_unit.command(142, 4, 0);
    m_unit.next("updatedb", std::to_string(0x10000 + 1));
    nextTime(1, 20);
    EXPECT_TRUE(m_unit.since("mediatype").empty()) << "playing goes on meanwhile";
}

TEST(DiscServiceReading, BrowsingADiscThatIsStillReadIsAnsweredAsUnfinished) {
    // So many files that their tags take far longer to read than the command to come.
    constexpr int Files = 4000;
    TempFolder disc;
    place(toneFile("mp3", 1, "Root one", "Ann", "First", 1), disc / "0.mp3");
    for (int file = 1; file < Files; ++file) {
        std::filesystem::create_hard_link(disc / "0.mp3", disc / (std::to_string(file) + ".mp3"));
    }
    DiscUnit unit;
    unit.startService();
    unit.request({{"op", "insert"}, {"path", disc.path().string()}});
    unit.next("disc", "1");
    unit.command(186, 2, 5);
    unit.next("updatedb", "5");
    unit.next("updatedb", std::to_string(0x10000 + 1), 30s);
    unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "loaded"; });
    unit.command(186, 2, 5);
    unit.next("updatedb", std::to_string(0x10000 + 5));
}

TEST(DiscServiceReading, BrowsingAKindThatIsCompleteIsAnsweredSoWhileAnotherOneIsWritten) {
    // So many films that the command comes while they are written.
    constexpr int Films = 4000;
    TempFolder disc;
    place(toneFile("mp3", 1, "Root one", "Ann", "First", 1), disc / "0.mp3");
    writeFile(disc / "0.avi", "a film");
    for (int film = 1; film < Films; ++film) {
        std::filesystem::create_hard_link(disc / "0.avi", disc / (std::to_string(film) + ".avi"));
    }
    DiscUnit unit;
    unit.startService();
    unit.request({{"op", "insert"}, {"path", disc.path().string()}});
    unit.next("updatedb", std::to_string(0x10000 + 1), 30s);
    unit.command(186, 2, 5);
    const auto answer = unit.next(
        "updatedb", [](const Published& each) { return each.value != std::to_string(0x10000 + 1); });
    EXPECT_EQ(answer.value, std::to_string(0x10000 + 5));
}

TEST_F(DiscService, CommandsOfOtherDiscsAreRefused) {
    play();
    for (const int command : {11, 12, 18, 19, 21, 145, 183, 184, 188, 189}) {
        m_unit.command(command, 1, 1);
        nextTip(1);
    }
}

TEST_F(DiscService, UnknownCommandsDoNothing) {
    play();
    m_unit.command(9999);
    m_unit.command(-1);
    m_unit.command(1);
    nextTrack(1, 2);
}

TEST_F(DiscService, SourceOffSilencesAndSourceOnGoesOnWhereItWas) {
    play();
    m_unit.command(185, 12);
    nextTime(12, 12);
    m_unit.command(187, 0, 0);
    m_unit.nextState(PlayState::Stopped);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("discstate", "2", 300ms));
    m_unit.command(187, 1, 0);
    nextTrack(1, 1);
    m_unit.nextState(PlayState::Playing);
    nextTime(12, 14);
}
