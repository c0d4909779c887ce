#include "services/ctl/MonkeySteps.h"
#include "tests/system/SystemTest.h"

#include <signal.h>

#include <fstream>
#include <iterator>
#include <regex>

namespace zm::test {

/** The monkey on real programs, without a disc service and with a clock that the monkey moves. */
class MonkeyRun : public SystemTest {
protected:
    Words monkey(const std::string& seconds) {
        return {"zmctl", "--runtime", folder,  "monkey", "--seed",
                "7",     "--seconds", seconds, "--file", file()};
    }
    std::string file() { return folder + "/failed.zmctl"; }
    /** What the file repeats, without comments. */
    std::vector<std::string> kept() {
        std::ifstream stream(file());
        std::vector<std::string> result;
        for (std::string line; std::getline(stream, line);) {
            if (!line.starts_with("#")) {
                result.push_back(line.starts_with("try ") ? line.substr(4) : line);
            }
        }
        return result;
    }
};

TEST_F(MonkeyRun, PlaysForItsTimeAndLeavesARunningApplication) {
    startManual();
    Process playing(monkey("2"), folder);
    EXPECT_EQ(playing.line(), "seed 7");
    EXPECT_EQ(playing.wait(), 0) << playing.err();
    EXPECT_THAT(playing.out(), MatchesRegex("[0-9]+ steps, [0-9]+ refused\n"));
    must({"expect", "ps.app.state", "==", "running"});
    must({"expect", "ps.app.deaths", "==", "0"});
}

TEST_F(MonkeyRun, TouchesTheWholeOfALargerScreenAndSaysWhichInItsFile) {
    startManual({"--screen", "1280x720"});
    Process playing(monkey("60"), folder);
    ASSERT_EQ(playing.line(), "seed 7");
    const auto touchesFar = [this] {
        const std::string inputs = must({"record", "--all", "-"});
        const std::regex far("(touch|press|move|release) (9|1[0-2])[0-9]{2} ");
        return std::regex_search(inputs, far);
    };
    EXPECT_TRUE(eventually(touchesFar)) << "places that the usual screen does not have";
    must({"kill", "app"});
    EXPECT_EQ(playing.wait(), 1);
    std::ifstream stream(file());
    const std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    EXPECT_THAT(text, HasSubstr("zmbench --no-disc-service --manual-clock --screen 1280x720\n"));
}

TEST_F(MonkeyRun, NoticesAKilledApplicationAndItsFileRepeatsTheSteps) {
    startManual();
    Process playing(monkey("60"), folder);
    ASSERT_EQ(playing.line(), "seed 7");
    must({"kill", "app"});
    EXPECT_EQ(playing.wait(), 1);
    EXPECT_THAT(playing.err(), HasSubstr("zmctl: seed 7, step "));
    EXPECT_THAT(playing.err(), HasSubstr("\"zmctl run " + file() + "\" repeats it"));

    auto lines = kept();
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines.back(), "expect ps.app.deaths == 0");
    lines.resize(lines.size() - 2);
    ctl::MonkeySteps steps(7, {.discService = false, .manualClock = true});
    std::vector<std::string> expected;
    while (expected.size() < lines.size()) {
        const auto some = steps.next();
        expected.insert(expected.end(), some.begin(), some.end());
    }
    expected.resize(lines.size());
    EXPECT_EQ(lines, expected) << "the steps of this seed";

    EXPECT_THAT(mustFail({"run", file()}), HasSubstr("expected: ps.app.deaths == 0\nfound:    1"));
    endBench();
    startManual();
    const auto again = ctl({"run", file()});
    EXPECT_EQ(again.exit, 0) << "nobody kills the application now: " << again.err;
}

TEST_F(MonkeyRun, NoticesAnApplicationThatHangs) {
    startManual();
    Process playing(monkey("60"), folder);
    ASSERT_EQ(playing.line(), "seed 7");
    const int application = std::stoi(lines({"ps"}).at(0).substr(4));
    ASSERT_EQ(kill(application, SIGSTOP), 0);
    EXPECT_EQ(playing.wait(), 1);
    kill(application, SIGCONT);
    EXPECT_THAT(playing.err(), HasSubstr(" ms\n"));
    EXPECT_EQ(kept().back(), "expect screen.main.window >= 0 within 1000");
}

TEST_F(MonkeyRun, HasNothingToPlayWithWithoutAnApplication) {
    EXPECT_THAT(mustFail({"monkey", "--seconds", "1"}), HasSubstr("no bench runs in " + folder));
    startManual();
    must({"app", "quit"});
    must({"expect", "ps.app.state", "==", "not running", "within", "20000"});
    EXPECT_THAT(mustFail({"monkey", "--seconds", "1"}), HasSubstr("does not run"));
    EXPECT_THAT(mustFail({"monkey", "--seed", "x"}, 2), HasSubstr("usage: zmctl monkey"));
}

} // namespace zm::test
