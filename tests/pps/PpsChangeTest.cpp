#include "platform/linux/pps/PpsChange.h"

#include <gtest/gtest.h>

namespace zm::test {

namespace {

TEST(PpsChanges, WhatIsEncodedIsDecoded) {
    const PpsChanges changes{{{7, "@a\nx::1\n"}, {9, ""}}, 12};
    const auto decoded = PpsChanges::decode(changes.encoded());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->upTo, 12U);
    EXPECT_EQ(decoded->text(), "@a\nx::1\n");
    ASSERT_EQ(decoded->changes.size(), 2U);
    EXPECT_EQ(decoded->changes[1].number, 9U);
}

TEST(PpsChanges, AnAnswerThatWasCutIsAnError) {
    for (const char* bad : {"", "5", "5x\n", "\n", "5\n7", "5\n7 ", "5\n7 3", "5\n7 3\nab", "5\n7 x\n",
                            "5\n 3\nabc", "5\n7 99999999999999999999999\nabc"}) {
        EXPECT_FALSE(PpsChanges::decode(bad)) << bad;
    }
    EXPECT_TRUE(PpsChanges::decode("5\n"));
    EXPECT_TRUE(PpsChanges::decode("5\n7 3\nabc"));
}

} // namespace

} // namespace zm::test
