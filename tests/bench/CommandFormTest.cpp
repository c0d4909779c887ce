#include "services/ctl/CommandForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(CommandForm, KnowsWhatComesNext) {
    const ctl::CommandForm form("device [--silent] ID|NAME VALUE|fail");
    EXPECT_THAT(form.behind({}).words, ElementsAre("device"));
    const auto id = form.behind({"device"});
    EXPECT_THAT(id.kinds, ElementsAre("ID", "NAME"));
    EXPECT_THAT(id.words, ElementsAre("--silent"));
    EXPECT_FALSE(id.mayEnd);
    EXPECT_THAT(form.behind({"device", "--silent", "7"}).words, ElementsAre("fail"));
    EXPECT_TRUE(form.behind({"device", "7", "1"}).mayEnd);
    EXPECT_FALSE(form.behind({"device", "7", "1", "2"}).fits);
}

TEST(CommandForm, AnOptionHasItsValueAndIsOfferedOnce) {
    const ctl::CommandForm form("log [-n N] [--follow]");
    EXPECT_THAT(form.behind({"log", "-n"}).kinds, ElementsAre("N"));
    EXPECT_THAT(form.behind({"log", "-n", "3"}).words, ElementsAre("--follow"));
    EXPECT_THAT(form.behind({"log", "-n", "3", "--follow"}).words, IsEmpty());
}

TEST(CommandForm, ARepeatedWordMayComeAgainAndAnOptionalOneBeLeftOut) {
    EXPECT_TRUE(ctl::CommandForm("pps put OBJ LINE...").behind({"pps", "put", "a", "b", "c", "d"}).fits);
    const ctl::CommandForm screen("screen [main|osd] [WINDOW]");
    EXPECT_TRUE(screen.behind({"screen"}).mayEnd);
    EXPECT_TRUE(screen.behind({"screen", "6"}).fits);
    EXPECT_FALSE(screen.behind({"screen", "6", "7"}).fits);
}

TEST(CommandForm, AWordThatFitsNoFormIsNamedWithTheNearest) {
    EXPECT_THAT(ctl::wrongUsageText({"app", "puase"}, ""),
                StartsWith("zmctl: \"puase\" does not fit behind \"zmctl app\"; did you mean "
                           "\"pause\"?\nusage: zmctl app"));
    EXPECT_THAT(ctl::wrongUsageText({"touch", "1", "2"}, "because"), StartsWith("zmctl: because\nusage:"));
}

TEST(CommandForm, SaysWhatFitsWhereNothingIsNear) {
    const std::vector<std::pair<std::vector<std::string>, const char*>> rows = {
        {{"touch", "4", "x"}, R"("x" does not fit behind "zmctl touch 4"; what fits is Y (a whole number))"},
        {{"touch", "1"}, R"("zmctl touch 1" is not complete; what fits behind it is Y (a whole number))"},
        {{"touch", "99999999999", "1"},
         R"("99999999999" does not fit behind "zmctl touch"; it is too large)"},
        {{"touch", "1", "2", "--hold"},
         R"("zmctl touch 1 2 --hold" is not complete; what fits behind it is MS (a whole number, 0 or more))"},
        {{"touch", "1", "2", "--hold", "3", "--hold", "4"},
         R"("--hold" does not fit behind "zmctl touch 1 2 --hold 3"; nothing follows there)"},
        {{"time", "25:00"},
         R"("25:00" does not fit behind "zmctl time"; what fits is HH:MM (a time such as 23:05))"},
        {{"device", "parking", "x"},
         R"("x" does not fit behind "zmctl device parking"; what fits is fail, NUMBER (a whole number))"},
        {{"screen", "mian"}, R"("mian" does not fit behind "zmctl screen"; did you mean "main"?)"},
        {{"log", "-n", "abc"},
         R"("abc" does not fit behind "zmctl log -n"; what fits is N (a whole number, 0 or more))"},
        {{"theme", "dark"}, R"("dark" does not fit behind "zmctl theme"; did you mean "night"?)"},
        {{"eject", "now"}, R"("now" does not fit behind "zmctl eject"; nothing follows there)"},
        {{"insert", "--dem"}, R"("--dem" does not fit behind "zmctl insert"; did you mean "--demo"?)"},
        {{"catalogue", "hold", "-1"},
         R"("-1" does not fit behind "zmctl catalogue hold"; what fits is ROWS (a whole number, 0 or more))"},
        {{"settle", "-t", "soon"},
         R"("soon" does not fit behind "zmctl settle -t"; what fits is SECONDS (seconds, 0 or more))"},
        {{"pps", "watch", "a", "-n", "0"},
         R"("0" does not fit behind "zmctl pps watch a -n"; what fits is COUNT (a whole number, 1 or more))"},
        {{"pps", "put", "a"}, R"("zmctl pps put a" is not complete; what fits behind it is LINE)"},
        {{"shot", ""},
         R"("" does not fit behind "zmctl shot"; what fits is FILE.jpg (a path), FILE.png (a path))"},
    };
    for (const auto& [words, sentence] : rows) {
        EXPECT_EQ(ctl::whyUnfit(words), sentence);
    }
    EXPECT_EQ(ctl::whyUnfit({"touch", "1", "2", "--hold", "3"}), "");
    EXPECT_EQ(ctl::whyUnfit({"insert", "--demo", "--wait"}), "");
    EXPECT_EQ(ctl::whyUnfit({"expect", "ps.app.state", "==", "running"}), "");
    EXPECT_EQ(ctl::whyUnfit({"expect", "ps.app.state", "==", "running", "within", "5"}), "");
    EXPECT_EQ(ctl::whyUnfit({"complete"}), "");
    EXPECT_EQ(ctl::whyUnfit({"pps", "put", "a", "b::1", "-c"}), "");
}

TEST(CommandForm, ANameThatNoCommandHasIsTakenForWhatCommandsUnderstand) {
    EXPECT_THAT(ctl::unknownCommandText("scren"), HasSubstr("did you mean \"screen\"?"));
    EXPECT_THAT(ctl::unknownCommandText("next"), HasSubstr("did you mean \"key next\"?"));
    EXPECT_THAT(ctl::unknownCommandText("resume"), HasSubstr("did you mean \"app resume\"?"));
    EXPECT_THAT(ctl::unknownCommandText("screenshot"), HasSubstr("did you mean \"shot\"?"));
    EXPECT_EQ(ctl::unknownCommandText("xyzzy"),
              "zmctl: there is no command \"xyzzy\"; \"zmctl help\" lists them");
}

} // namespace zm::test
