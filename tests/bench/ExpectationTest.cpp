#include "services/ctl/Expectation.h"
#include "services/ctl/AnswerData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace zm::test {

namespace {

using Words = std::vector<std::string>;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string Screen = R"({"main":{"window":6,"shown":[4,6],"visible":true,"title":"Blue Song 7",)"
                           R"("windows":{"6":{"items":{"2065":{"text":"Song","icons":{"0":140}}}}}}})";

bool holds(const Words& words, const std::string& output = Screen) {
    const auto expectation = ctl::Expectation::parse(words);
    EXPECT_TRUE(expectation) << (expectation ? "" : expectation.error());
    return expectation && expectation->holds(expectation->find(output));
}

std::string fault(const Words& words) {
    const auto expectation = ctl::Expectation::parse(words);
    return expectation ? "" : expectation.error();
}

} // namespace

TEST(Expectation, EachOperatorComparesAsItsSignSays) {
    const struct {
        const char* op;
        bool holdsFor5;
        bool holdsFor6;
        bool holdsFor7;
    } rows[] = {{"==", false, true, false}, {"!=", true, false, true}, {"<", false, false, true},
                {"<=", false, true, true},  {">", true, false, false}, {">=", true, true, false}};
    for (const auto& row : rows) {
        EXPECT_EQ(holds({"screen.main.window", row.op, "5"}), row.holdsFor5) << row.op;
        EXPECT_EQ(holds({"screen.main.window", row.op, "6"}), row.holdsFor6) << row.op;
        EXPECT_EQ(holds({"screen.main.window", row.op, "7"}), row.holdsFor7) << row.op;
    }
}

TEST(Expectation, NumbersAreComparedAsNumbersAndTextsAsTexts) {
    EXPECT_TRUE(holds({"screen.main.window", "==", "6.0"}));
    EXPECT_TRUE(holds({"screen.main.window", "<", "10"}));
    EXPECT_TRUE(holds({"screen.main.visible", "==", "true"}));
    EXPECT_TRUE(holds({"screen.main.windows.6.items.2065.text", "==", "Song"}));
    EXPECT_FALSE(holds({"screen.main.windows.6.items.2065.text", "<", "10"}));
    for (const char* title : {"NaN", "-nan", "inf", "Infinity"}) {
        auto output = Screen;
        output.replace(output.find("\"Song\""), 6, '"' + std::string(title) + '"');
        EXPECT_TRUE(holds({"screen.main.windows.6.items.2065.text", "==", title}, output)) << title;
        EXPECT_NE(fault({"screen.main.window", "<", title}), "") << title;
    }
}

TEST(Expectation, ContainsLooksForAPartOfATextOrAnElementOfAList) {
    EXPECT_TRUE(holds({"screen.main.title", "contains", "e Song"}));
    EXPECT_FALSE(holds({"screen.main.title", "contains", "song"}));
    EXPECT_TRUE(holds({"screen.main.shown", "contains", "4"}));
    EXPECT_FALSE(holds({"screen.main.shown", "contains", "46"}));
}

TEST(Expectation, MatchesFindsARegularExpressionAnywhere) {
    EXPECT_TRUE(holds({"screen.main.title", "matches", "S.ng [0-9]$"}));
    EXPECT_FALSE(holds({"screen.main.title", "matches", "^Song"}));
}

TEST(Expectation, ListsCountFromBothEndsAndKnowTheirSize) {
    EXPECT_TRUE(holds({"screen.main.shown.0", "==", "4"}));
    EXPECT_TRUE(holds({"screen.main.shown.-1", "==", "6"}));
    EXPECT_TRUE(holds({"screen.main.shown.size", "==", "2"}));
}

TEST(Expectation, AMissingValueFulfilsNothing) {
    for (const char* path : {"screen.main.shown.2", "screen.main.shown.-3", "screen.main.shown.x",
                             "screen.rear.window", "screen.main.window.deep"}) {
        EXPECT_FALSE(holds({path, "!=", "1"})) << path;
        EXPECT_FALSE(holds({path, "contains", ""})) << path;
    }
    EXPECT_FALSE(holds({"screen.main.window", "!=", "1"}, "no JSON"));
}

TEST(Expectation, PpsAttributesAreTextsAndThoseInJsonAreData) {
    const std::string output = "discstate::2\nname::a:b\nzmcmd:json:{\"cmd\":5,\"param1\":-1}\n-gone\n";
    EXPECT_TRUE(holds({"pps.zelmar/disc/status.discstate", "==", "2"}, output));
    EXPECT_TRUE(holds({"pps.zelmar/disc/status.name", "==", "a:b"}, output));
    EXPECT_TRUE(holds({"pps.zelmar/disc/control.zmcmd.param1", "==", "-1"}, output));
    EXPECT_THAT(ctl::Expectation::parse({"pps.zelmar/disc/status.discstate", "==", "2"})->command(),
                ElementsAre("pps", "get", "zelmar/disc/status"));
}

TEST(Expectation, RequestsAreAListAndProcessesHaveTheirDeaths) {
    const std::string requests = "{\"op\":\"ToBeep\"}\n{\"op\":\"QueryLauncher\",\"app\":\"zmhome\"}\n";
    EXPECT_TRUE(holds({"requests.-1.app", "==", "zmhome"}, requests));
    EXPECT_TRUE(holds({"requests.size", "==", "0"}, ""));
    const std::string processes = "disc - died, about to start again (deaths: 2)\napp 4711 running\n";
    EXPECT_EQ(ctl::processesData(processes)["disc"],
              (nlohmann::json{{"pid", 0}, {"state", "died, about to start again"}, {"deaths", 2}}));
    EXPECT_TRUE(holds({"ps.app.state", "==", "running"}, processes));
    EXPECT_TRUE(holds({"ps.app.deaths", "==", "0"}, processes));
}

TEST(Expectation, TheTimeLimitIsTwoSecondsUnlessSaid) {
    using namespace std::chrono_literals;
    EXPECT_EQ(ctl::Expectation::parse({"screen.main.window", "==", "1"})->limit(), 2000ms);
    EXPECT_EQ(ctl::Expectation::parse({"screen.main.window", "==", "1", "within", "0"})->limit(), 0ms);
}

TEST(Expectation, AWrongPartIsNamed) {
    EXPECT_THAT(fault({"screen.main.window", "=="}), HasSubstr("PATH OP VALUE [within MS]"));
    EXPECT_THAT(fault({"screen.main.window", "==", "1", "after", "5"}), HasSubstr("PATH OP VALUE"));
    EXPECT_THAT(fault({"window.main", "==", "1"}), HasSubstr("\"window.main\""));
    EXPECT_THAT(fault({"screen", "==", "1"}), HasSubstr("\"screen\""));
    EXPECT_THAT(fault({"pps.zelmar/disc/status", "==", "1"}), HasSubstr("pps.OBJ.ATTRIBUTE"));
    EXPECT_THAT(fault({"screen.main.window", "is", "1"}), HasSubstr("\"is\""));
    EXPECT_THAT(fault({"screen.main.window", "<", "x"}), HasSubstr("\"x\" is no number"));
    EXPECT_THAT(fault({"screen.main.title", "matches", "("}), HasSubstr("no regular expression"));
    EXPECT_THAT(fault({"screen.main.window", "==", "1", "within", "-1"}), HasSubstr("\"-1\""));
}

} // namespace zm::test
