#include "services/ctl/MonkeySteps.h"
#include "services/ctl/Script.h"
#include "services/ctl/ShellWords.h"
#include "tests/support/Decoder.h"
#include "tests/support/Harness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace zm::test {

namespace {

constexpr int Many = 3000;

std::vector<std::string> lines(unsigned seed, ctl::MonkeyWorld world = {}) {
    ctl::MonkeySteps steps(seed, world);
    std::vector<std::string> result;
    for (int i = 0; i < Many; ++i) {
        const auto some = steps.next();
        result.insert(result.end(), some.begin(), some.end());
    }
    return result;
}

std::set<std::string> commands(const std::vector<std::string>& lines) {
    std::set<std::string> result;
    for (const auto& line : lines) {
        result.insert(ctl::shellWords(line)->at(0));
    }
    return result;
}

} // namespace

TEST(MonkeySteps, AreTheSameForTheSameSeedAndOthersForAnother) {
    EXPECT_EQ(lines(7), lines(7));
    EXPECT_NE(lines(7), lines(8));
}

TEST(MonkeySteps, AreTheSameOnEveryMachine) {
    // The standard fixes the ten thousandth number of the generator's default seed: 4123659995.
    ctl::MonkeySteps steps(5489, {});
    for (int i = 1; i < 10000; ++i) {
        steps.below(2);
    }
    EXPECT_EQ(steps.below(1000000), 659995);
}

TEST(MonkeySteps, AreLinesOfAScript) {
    for (const ctl::MonkeyWorld world : {ctl::MonkeyWorld{true, false}, ctl::MonkeyWorld{false, true}}) {
        std::string text;
        for (const auto& line : lines(3, world)) {
            text += line + "\n";
        }
        const auto script = ctl::parseScript("monkey", text);
        EXPECT_TRUE(script) << script.error();
    }
}

TEST(MonkeySteps, ComeFromAllSubjects) {
    using testing::Contains;
    const auto withDisc = commands(lines(1));
    for (const char* name : {"touch", "drag", "press", "move", "release", "key", "app", "appdata", "device",
                             "time", "language", "theme", "insert", "eject", "disc", "wait"}) {
        EXPECT_THAT(withDisc, Contains(name));
    }
}

TEST(MonkeySteps, UseOnlyWhatTheBenchOffers) {
    using testing::Contains;
    using testing::Not;
    const auto withDisc = commands(lines(1, {.discService = true, .manualClock = false}));
    EXPECT_THAT(withDisc, Not(Contains("pps")));
    EXPECT_THAT(withDisc, Not(Contains("clock")));
    const auto alone = commands(lines(1, {.discService = false, .manualClock = true}));
    EXPECT_THAT(alone, Not(Contains("insert")));
    EXPECT_THAT(alone, Not(Contains("disc")));
    EXPECT_THAT(alone, Contains("pps"));
    EXPECT_THAT(alone, Contains("clock"));
}

TEST(MonkeySteps, WriteWhatTheApplicationReads) {
    std::set<std::string> writes;
    for (const auto& line : lines(1, {.discService = false, .manualClock = true})) {
        if (line.starts_with("pps put ")) {
            writes.insert(line);
        }
    }
    ASSERT_GT(writes.size(), 20u);
    Unit unit;
    for (const auto& line : writes) {
        const auto heard = unit.viewMessages().size();
        unit.act(*ctl::shellWords(line));
        EXPECT_GT(unit.viewMessages().size(), heard) << line;
    }
}

/** Random input into the unit of the tests, which compares the picture with one
 * drawn anew after each line. */
class MonkeyPicture : public testing::TestWithParam<unsigned> {};

TEST_P(MonkeyPicture, IsWhatThePagesSayAfterEveryStep) {
    // What belongs to real programs, or would end the application that runs inside this test.
    const std::set<std::string> left = {"wait", "expect", "settle"};
    const std::set<std::string> ends = {"app quit", "app start"};
    constexpr int Steps = 400;
    Catalogue catalogue;
    for (const auto type : {Catalogue::Music, Catalogue::Video, Catalogue::Picture}) {
        catalogue.folder(1, 0, type, "root", 1, 3);
        catalogue.folder(2, 1, type, "Albums", 0, 9);
        for (int file = 1; file <= 9; ++file) {
            catalogue.file(file, file % 3 ? 2 : 1, type, "Name " + std::to_string(file));
        }
    }
    Unit unit({.catalogue = catalogue.path()});
    Decoder decoder(unit);
    decoder.showBars();
    ctl::MonkeySteps steps(GetParam(), {.discService = false, .manualClock = true});
    for (int i = 0; i < Steps && !testing::Test::HasFailure(); ++i) {
        for (const auto& line : steps.next()) {
            const auto words = *ctl::shellWords(line);
            if (!left.contains(words[0]) && !ends.contains(line)) {
                SCOPED_TRACE("step " + std::to_string(i));
                unit.run(words); // may be refused
                unit.settle();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seed, MonkeyPicture, testing::Range(1u, 7u));

} // namespace zm::test
