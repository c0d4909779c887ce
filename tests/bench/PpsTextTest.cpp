#include "services/bench/unit/PpsText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PpsText, EachObjectLineBeginsADelta) {
    EXPECT_THAT(bench::unit::ppsDeltas("@a\nx::1\ny::2\n@a\nx::1\n"),
                ElementsAre(ElementsAre("x::1", "y::2"), ElementsAre("x::1")));
}

TEST(PpsText, DeletedAttributesAreLinesNoticesAreNot) {
    EXPECT_THAT(bench::unit::ppsDeltas("#@a\n@a\n-x\n"), ElementsAre(ElementsAre("-x")));
    for (const char* notice : {"+@a\n", "-@a\n", "#@a\n", "*@a\n", "|@a\n", "@a\n", ""}) {
        EXPECT_THAT(bench::unit::ppsDeltas(notice), IsEmpty()) << notice;
    }
}

TEST(PpsText, AQualifierOfTheObjectIsNoAttribute) {
    EXPECT_THAT(bench::unit::ppsDeltas("[n]@a\n[n]x::1\n[i]set::1,\n"),
                ElementsAre(ElementsAre("[n]x::1", "[i]set::1,")));
}

TEST(PpsText, AValueMayHoldColonsAndSigns) {
    EXPECT_THAT(bench::unit::ppsDeltas("@a\nmail::me@here:1"), ElementsAre(ElementsAre("mail::me@here:1")));
    std::string value;
    EXPECT_TRUE(bench::unit::ppsValue("mail::me@here:1", "mail", value));
    EXPECT_EQ(value, "me@here:1");
}

TEST(PpsText, TheValueBelongsToExactlyThatAttribute) {
    std::string value = "before";
    EXPECT_FALSE(bench::unit::ppsValue("discstate::2", "disc", value));
    EXPECT_FALSE(bench::unit::ppsValue("-disc", "disc", value));
    EXPECT_FALSE(bench::unit::ppsValue("disc:", "disc", value));
    EXPECT_EQ(value, "before");
    EXPECT_TRUE(bench::unit::ppsValue("[n]disc:n:", "disc", value));
    EXPECT_EQ(value, "");
}

} // namespace zm::test
