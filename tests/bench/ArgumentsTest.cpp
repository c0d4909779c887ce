#include "services/ctl/Arguments.h"

#include <gtest/gtest.h>

namespace zm::test {

TEST(Arguments, NumbersMayBeNegative) {
    ctl::Arguments arguments({"7", "-52"});
    EXPECT_EQ(arguments.number(), 7);
    EXPECT_EQ(arguments.number(), -52);
    EXPECT_TRUE(arguments.complete());
}

TEST(Arguments, OptionsAreTakenWhereverTheyStand) {
    ctl::Arguments arguments({"100", "--hold", "800", "200"});
    EXPECT_EQ(arguments.number("--hold", 0), 800);
    EXPECT_EQ(arguments.number(), 100);
    EXPECT_EQ(arguments.number(), 200);
    EXPECT_TRUE(arguments.complete());
}

TEST(Arguments, AnOptionWithoutItsValueIsWrong) {
    ctl::Arguments arguments({"--hold"});
    EXPECT_EQ(arguments.option("--hold"), std::nullopt);
    EXPECT_FALSE(arguments.complete());
}

TEST(Arguments, AnOptionNumberBelowItsLeastIsWrong) {
    ctl::Arguments arguments({"-n", "0"});
    arguments.number("-n", 1);
    EXPECT_FALSE(arguments.complete());
}

TEST(Arguments, SecondsMayHaveAFraction) {
    ctl::Arguments arguments({"-t", "0.25"});
    EXPECT_EQ(arguments.seconds("-t"), 250);
    EXPECT_TRUE(arguments.complete());
    for (const char* wrong : {"-1", "x", "", "nan", "1e30", "1s"}) {
        ctl::Arguments other({"-t", wrong});
        other.seconds("-t");
        EXPECT_FALSE(other.complete()) << wrong;
    }
}

TEST(Arguments, WhatIsNoWholeNumberIsWrong) {
    for (const char* wrong : {"", "x", "1x", "1.5", "+1", " 1", "99999999999", "--"}) {
        ctl::Arguments arguments({wrong});
        arguments.number();
        EXPECT_FALSE(arguments.complete()) << wrong;
    }
}

TEST(Arguments, MissingAndSupernumerousWordsAreWrong) {
    ctl::Arguments missing({});
    missing.word();
    EXPECT_FALSE(missing.complete());
    ctl::Arguments more({"a", "b"});
    more.word();
    EXPECT_FALSE(more.complete());
    ctl::Arguments rest({"a"});
    rest.word();
    rest.rest();
    EXPECT_FALSE(rest.complete());
}

TEST(Arguments, ARepeatedOptionIsALeftOverWord) {
    ctl::Arguments arguments({"--clear", "--clear"});
    EXPECT_TRUE(arguments.flag("--clear"));
    EXPECT_FALSE(arguments.complete());
}

} // namespace zm::test
