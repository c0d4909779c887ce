#include "services/ctl/MonkeySteps.h"
#include "tests/system/SystemTest.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace zm::test {

/** Inputs of real programs, recorded and repeated. */
using testing::Not;

class Record : public SystemTest {
protected:
    std::string file(const std::string& name = "inputs.zmctl") { return folder + "/" + name; }
    static std::string content(const std::string& path) {
        std::ifstream stream(path);
        std::ostringstream text;
        text << stream.rdbuf();
        return text.str();
    }
    /** The lines of a script without comments and pauses. */
    static Words steps(const std::string& script) {
        Words result;
        std::istringstream stream(script);
        for (std::string line; std::getline(stream, line);) {
            if (!line.starts_with("#") && !line.starts_with("wait ")) {
                result.push_back(line);
            }
        }
        return result;
    }
    static int pauses(const std::string& script) {
        int sum = 0;
        std::istringstream stream(script);
        for (std::string line; std::getline(stream, line);) {
            sum += line.starts_with("wait ") ? std::stoi(line.substr(5)) : 0;
        }
        return sum;
    }
    std::string write(const std::string& script) {
        std::ofstream(file("given.zmctl")) << script;
        return file("given.zmctl");
    }
    /** Random input as a script whose steps may be refused. */
    static std::string monkeySteps(size_t count) {
        ctl::MonkeySteps steps(11, {.discService = false, .manualClock = true});
        std::string script;
        for (size_t done = 0; done < count;) {
            for (const auto& line : steps.next()) {
                script += (line.starts_with("expect") || line == "settle" ? "" : "try ") + line + "\n";
                ++done;
            }
        }
        return script;
    }
    /** On a fresh bench; gives the trace. */
    std::string replay(const std::string& script) {
        startManual();
        must({"replay", script, "--clock", "--trace", file("trace")});
        endBench();
        return content(file("trace"));
    }
};

TEST_F(Record, EveryInputIsAStepAndQuestionsAreNone) {
    startManual();
    must({"theme", "day"});
    must({"record", file()});
    must({"touch", "400", "240", "--hold", "900"});
    must({"press", "10", "10"});
    must({"release", "10", "10"});
    must({"key", "next"});
    must({"app", "pause"});
    must({"appdata", "--song='a b'"});
    must({"device", "parking", "0"});
    must({"time", "23:05", "12"});
    must({"language", "de"});
    must({"pps", "put", "zelmar/disc/device", "disc::1", "mediatype::2"});
    must({"clock", "advance", "100"});
    must({"screen"});
    must({"pps", "get", "zelmar/disc/device"});
    must({"requests"});
    mustFail({"eject"});
    mustFail({"key", "nxt"}, 2);
    EXPECT_EQ(must({"record", "--stop"}), file() + ": 13 inputs\n");
    must({"key", "previous"});
    const std::string script = content(file());
    EXPECT_THAT(script, HasSubstr("#   zmbench --no-disc-service --manual-clock\n"));
    EXPECT_THAT(script, HasSubstr("\n# refused: key nxt\n"));
    EXPECT_THAT(steps(script),
                ElementsAre("touch 400 240 --hold 900", "press 10 10", "release 10 10", "key next",
                            "app pause", "appdata '--song='\\''a b'\\'''", "device parking 0",
                            "time 23:05 12", "language de", "pps put zelmar/disc/device disc::1 mediatype::2",
                            "clock advance 100", "try eject"));
    // Whoever asks late gets the inputs from the beginning, and those that came later too.
    const auto all = steps(must({"record", "--all", "-"}));
    EXPECT_EQ(all.front(), "theme day");
    EXPECT_EQ(all.back(), "key previous");
}

TEST_F(Record, TheNextRecordCountsItsOwnInputs) {
    startManual();
    must({"record", file()});
    must({"key", "next"});
    must({"key", "next"});
    EXPECT_EQ(must({"record", "--stop"}), file() + ": 2 inputs\n");
    must({"record", file()});
    must({"key", "next"});
    EXPECT_EQ(must({"record", "--stop"}), file() + ": 1 input\n");
}

TEST_F(Record, TimesAreThoseBetweenTheInputs) {
    startManual();
    must({"record", "-"});
    must({"wait", "300"});
    must({"key", "next"});
    must({"wait", "400"});
    must({"key", "next"});
    const int sum = pauses(must({"record", "--stop"}));
    EXPECT_GE(sum, 700);
    EXPECT_LT(sum, 5000);
}

TEST_F(Record, WhatCannotBeRecordedSaysWhy) {
    startManual();
    EXPECT_THAT(mustFail({"record", "--stop"}), HasSubstr("nothing is being recorded"));
    EXPECT_THAT(mustFail({"record", "/nowhere/a"}), HasSubstr("/nowhere/a: No such file"));
    EXPECT_THAT(mustFail({"record", "--all", folder}), HasSubstr(folder + ": Is a directory"));
    EXPECT_THAT(mustFail({"record"}, 2), HasSubstr("usage: zmctl record FILE"));
    must({"record", file()});
    EXPECT_THAT(mustFail({"record", file("b")}), HasSubstr("recorded already to " + file()));
}

TEST_F(Record, ABenchThatEndsLeavesAWholeRecord) {
    startManual();
    must({"record", file()});
    must({"key", "next"});
    endBench();
    EXPECT_THAT(steps(content(file())), ElementsAre("key next"));
}

// With the environment variable PLATEN_REPLAYS=100 a hundred times.
TEST_F(Record, OnTheStoppedClockPagesCommandsAndPicturesAreTheSameEachTime) {
    startManual();
    playMusic();
    must({"click", "main", "6", "6523", "1"});
    must({"key", "up"});
    must({"clock", "advance", "9000"});
    must(
        {"pps", "put", "zelmar/disc/playing", "ID3:json:{\"title\":\"Fog\",\"artist\":\"\",\"album\":\"\"}"});
    must({"device", "parking", "0"});
    must({"run", write(monkeySteps(80))});
    must({"record", "--all", file()});
    endBench();
    ASSERT_GT(steps(content(file())).size(), 20u);

    const std::string first = replay(file());
    EXPECT_THAT(first, HasSubstr("\\\"cmd\\\":5")) << "the button that pauses";
    EXPECT_THAT(first, HasSubstr("\"main\":6"));
    const char* times = std::getenv("PLATEN_REPLAYS");
    for (int left = times ? std::stoi(times) : 3; left > 1; --left) {
        ASSERT_EQ(replay(file()), first) << "replay " << left << " from the end";
    }
    // What differs is seen: one input less leaves another picture.
    const std::string script = content(file());
    const auto cut = script.find("click main 6 6523 1\n");
    ASSERT_NE(cut, std::string::npos);
    const std::string other =
        replay(write(script.substr(0, cut) + script.substr(script.find('\n', cut) + 1)));
    EXPECT_NE(other, first);
    EXPECT_THAT(other, Not(HasSubstr("click main 6 6523 1")));
}

TEST_F(Record, PausesPassInRealTimeFasterOrOnTheClock) {
    const std::string script = write("key next\nwait 600\nkey next\nwait 600\n");
    startManual();
    const auto took = [&](const Words& options) {
        Words words{"replay", script};
        words.insert(words.end(), options.begin(), options.end());
        const auto begin = std::chrono::steady_clock::now();
        must(words);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    EXPECT_GE(took({}), 1.2);
    EXPECT_GE(took({"--speed", "4"}), 0.3);
    // The clock moved by the pauses: the record of what the replay did has them as steps.
    must({"record", "-"});
    took({"--clock"});
    EXPECT_THAT(steps(must({"record", "--stop"})),
                ElementsAre("key next", "settle", "clock advance 600", "settle", "key next", "settle",
                            "clock advance 600", "settle"));
    // A script that moves the clock itself has said when time passes.
    write("key next\nwait 600\nclock advance 5\n");
    must({"record", "-"});
    took({"--clock"});
    EXPECT_THAT(steps(must({"record", "--stop"})),
                ElementsAre("key next", "settle", "settle", "clock advance 5", "settle"));
}

TEST_F(Record, AWrongLineOfARecordIsNamedBeforeAnythingIsDone) {
    startManual();
    EXPECT_THAT(mustFail({"replay", file("none")}), HasSubstr(file("none") + ": No such file"));
    EXPECT_THAT(mustFail({"replay", write("theme day\ntouch 1\n")}, 2),
                StartsWith(file("given.zmctl") + ":2: touch 1\nzmctl: \"zmctl touch 1\" is not complete"));
    EXPECT_THAT(mustFail({"replay", write("theme day\ndance\n")}, 2),
                StartsWith(file("given.zmctl") + ":2: dance\n"));
    EXPECT_THAT(steps(must({"record", "--all", "-"})), IsEmpty());
    EXPECT_THAT(mustFail({"replay", write("theme day\neject\n")}),
                StartsWith(file("given.zmctl") + ":2: eject\nzmctl: this bench runs without a disc"));
    EXPECT_THAT(mustFail({"replay", write("theme day\n"), "--speed", "0"}, 2), HasSubstr("a number above 0"));
    EXPECT_THAT(mustFail({"replay", write("theme day\n"), "--trace", "/nowhere/t"}), HasSubstr("/nowhere/t"));
    endBench();
    startBench({"--no-web", "--no-disc-service"});
    EXPECT_THAT(mustFail({"replay", write("theme day\n"), "--clock"}), HasSubstr("--manual-clock"));
}

TEST_F(Record, TheHistoryOfObjectsHasNumberTimeAndLines) {
    startManual();
    must({"pps", "put", "a/b", "x::1", "y::2"});
    must({"pps", "put", "a/c", "z::1"});
    settle();
    EXPECT_THAT(must({"pps", "history", "a/b"}), MatchesRegex("[0-9]+ [0-9]+\\.[0-9]{3} a/b  x::1  y::2\n"));
    EXPECT_THAT(must({"pps", "history", "-n", "1"}), HasSubstr(" a/c  z::1\n"));
}

TEST_F(Record, TheDigestIsThatOfThePicture) {
    startManual();
    const std::string night = must({"shot", "--digest"});
    EXPECT_THAT(night, MatchesRegex("[0-9a-f]{64}\n"));
    EXPECT_EQ(must({"shot", "--digest"}), night);
    must({"theme", "day"});
    settle();
    EXPECT_NE(must({"shot", "--digest"}), night);
}

} // namespace zm::test
