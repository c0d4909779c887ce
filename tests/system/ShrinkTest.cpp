#include "services/ctl/MonkeySteps.h"
#include "tests/system/SystemTest.h"

#include <chrono>
#include <fstream>
#include <sstream>

namespace zm::test {

using testing::Not;

/** Long scripts of which few steps matter. */
class ShrinkRun : public SystemTest {
protected:
    std::string file(const std::string& name = "long.zmctl") { return folder + "/" + name; }
    void write(const Words& lines) {
        std::ofstream stream(file());
        stream << "# a head\n#   zmbench --no-disc-service --manual-clock\n";
        for (const auto& line : lines) {
            stream << line << "\n";
        }
    }
    Words shrink(const std::string& until) { return {"shrink", file(), "--until", until}; }
    /** What the smaller script does, without "try" and settling. */
    Words steps() {
        std::ifstream stream(file("long-small.zmctl"));
        Words result;
        for (std::string line; std::getline(stream, line);) {
            if (!line.starts_with("#") && line != "settle") {
                result.push_back(line.starts_with("try ") ? line.substr(4) : line);
            }
        }
        return result;
    }
    static Words monkey(size_t count) {
        ctl::MonkeySteps random(5, {.discService = false, .manualClock = true});
        Words result;
        while (result.size() < count) {
            for (const auto& line : random.next()) {
                if (!line.starts_with("expect") && !line.starts_with("app quit")) {
                    result.push_back(line);
                }
            }
        }
        return result;
    }
};

TEST_F(ShrinkRun, FiveHundredStepsAreReducedToThoseThatMatter) {
    Words lines = monkey(496);
    // The parking page needs a film that plays in front and a car that drives; all are somewhere in there.
    lines.insert(lines.begin() + 398, "app resume");
    lines.insert(lines.begin() + 400,
                 "pps put zelmar/disc/device disc::1 mixedtype::14 mediatype::3 videomode::1");
    lines.insert(lines.begin() + 402, "pps put zelmar/disc/status discstate::2");
    lines.insert(lines.begin() + 404, "device 2 0");
    write(lines);
    const auto begin = std::chrono::steady_clock::now();
    Process shrinking({"zmctl", "shrink", file(), "--until", "screen.main.window == 10"}, folder);
    EXPECT_EQ(shrinking.wait(std::chrono::minutes(2)), 0) << shrinking.err();
    const std::string said = shrinking.out();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    RecordProperty("seconds", static_cast<int>(took.count()));
    ASSERT_THAT(steps(), Not(IsEmpty()));
    EXPECT_LE(steps().size(), 11u) << "with the expectation";
    EXPECT_EQ(steps().back(), "expect screen.main.window == 10");
    EXPECT_LT(took.count(), 120);
    EXPECT_THAT(said, StartsWith(file("long-small.zmctl") + ": "));
    EXPECT_THAT(said, HasSubstr(" of 500 steps, found in "));
    // It says itself how it is repeated.
    startManual();
    must({"run", file("long-small.zmctl")});
}

TEST_F(ShrinkRun, WordsForTheBenchAndAnotherNameCanBeGiven) {
    write({"theme day", "eject", "key next"});
    must({"shrink", file(), "--until", "pps.zelmar/disc/control.zmcmd.cmd > 0", "--to", file("other"),
          "--bench", "--no-disc-service --launcher passive"});
    std::ifstream stream(file("other"));
    std::string head;
    std::getline(stream, head);
    EXPECT_THAT(head, StartsWith("# 1 of the 3 steps of " + file()));
    std::getline(stream, head);
    EXPECT_EQ(head, "#   zmbench --no-disc-service --launcher passive");
    std::getline(stream, head);
    EXPECT_EQ(head, "try key next");
}

TEST_F(ShrinkRun, WhatCannotBeReducedSaysWhy) {
    write({"theme day", "key next"});
    EXPECT_THAT(mustFail(shrink("screen.main.window == 17")),
                HasSubstr(file() + ": \"screen.main.window == 17\" held after none of its 2 steps"));
    EXPECT_THAT(mustFail(shrink("ps.app.deaths == 0")), HasSubstr("holds on a fresh bench already"));
    EXPECT_THAT(mustFail(shrink("screen.main.window =="), 2), HasSubstr("PATH OP VALUE"));
    EXPECT_THAT(mustFail({"shrink", file()}, 2), HasSubstr("--until"));
    EXPECT_THAT(mustFail({"shrink", file("none"), "--until", "ps.app.deaths > 0"}),
                HasSubstr("No such file"));
    write({"theme day", "dance"});
    EXPECT_THAT(mustFail(shrink("ps.app.deaths > 0"), 2), HasSubstr(file() + ":4: dance"));
    write({"theme day"});
    EXPECT_THAT(mustFail({"shrink", file(), "--until", "ps.app.deaths > 0", "--bench", "--dance"}),
                HasSubstr("unknown argument \"--dance\""));
}

} // namespace zm::test
