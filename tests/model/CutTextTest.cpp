#include "CutText.h"

#include <gtest/gtest.h>

#include <string>

TEST(CutText, WhatFitsWithItsEndMarkIsWhole) {
    EXPECT_EQ(CutText("", 1), "");
    EXPECT_EQ(CutText("aé", 4), "aé");
}

TEST(CutText, ACharacterThatDoesNotFitIsLeftOutWhole) {
    EXPECT_EQ(CutText("aé", 3), "a");
    EXPECT_EQ(CutText("a字b", 5), "a字");
    EXPECT_EQ(CutText("a字b", 4), "a");
    EXPECT_EQ(CutText("a😀", 5), "a");
}

TEST(CutText, BytesThatBeginNoCharacterAreCutAnywhere) {
    EXPECT_EQ(CutText("\x80\x80\x80\x80\x80\x80", 6), "\x80\x80");
    EXPECT_EQ(CutText("\x80\x80\x80", 2), "");
}
