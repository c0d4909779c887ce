#include "services/ctl/CommandForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(CommandForm, KnowsWhatComesNext) {
    const CommandForm form("device [--silent] ID|NAME VALUE|fail");
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
    const CommandForm form("log [-n N] [--follow]");
    EXPECT_THAT(form.behind({"log", "-n"}).kinds, ElementsAre("N"));
    EXPECT_THAT(form.behind({"log", "-n", "3"}).words, ElementsAre("--follow"));
    EXPECT_THAT(form.behind({"log", "-n", "3", "--follow"}).words, IsEmpty());
}

TEST(CommandForm, ARepeatedWordMayComeAgainAndAnOptionalOneBeLeftOut) {
    EXPECT_TRUE(CommandForm("pps put OBJ LINE...").behind({"pps", "put", "a", "b", "c", "d"}).fits);
    const CommandForm screen("screen [main|osd] [WINDOW]");
    EXPECT_TRUE(screen.behind({"screen"}).mayEnd);
    EXPECT_TRUE(screen.behind({"screen", "6"}).fits);
    EXPECT_FALSE(screen.behind({"screen", "6", "7"}).fits);
}

TEST(CommandForm, AWordThatFitsNoFormIsNamedWithTheNearest) {
    EXPECT_THAT(
        wrongUsageText({"app", "puase"}, ""),
        StartsWith(
            "zmctl: there is no \"zmctl app\" with \"puase\"; did you mean \"pause\"?\nusage: zmctl app"));
    EXPECT_THAT(wrongUsageText({"touch", "1"}, ""), StartsWith("usage: zmctl touch"))
        << "nothing is wrong but missing";
    EXPECT_THAT(wrongUsageText({"touch", "x", "1"}, "because"), StartsWith("zmctl: because\nusage:"));
}

} // namespace zm
