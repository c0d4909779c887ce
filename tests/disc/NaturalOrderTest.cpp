#include "services/disc/text/NaturalOrder.h"

#include <gtest/gtest.h>

using zm::disc::text::compareNatural;

namespace {

void expectBefore(std::string_view a, std::string_view b) {
    EXPECT_LT(compareNatural(a, b), 0) << a << " before " << b;
    EXPECT_GT(compareNatural(b, a), 0) << b << " after " << a;
}

} // namespace

TEST(NaturalOrder, TwoComesBeforeTen) {
    expectBefore("2.mp3", "10.mp3");
    expectBefore("Track 2", "Track 10");
    expectBefore("a9b", "a10a");
}

TEST(NaturalOrder, NumbersOfAnyLengthAreCompared) {
    expectBefore("x99999999999999999999998", "x99999999999999999999999");
    expectBefore("x9", "x99999999999999999999999999999999");
}

TEST(NaturalOrder, LeadingZerosDoNotCountButKeepTheOrderTotal) {
    expectBefore("track 2", "track 03");
    expectBefore("02 a", "2 b");
    EXPECT_NE(compareNatural("02", "2"), 0);
    EXPECT_EQ(compareNatural("02", "02"), 0);
}

TEST(NaturalOrder, CaseOfLettersDoesNotCount) {
    expectBefore("alpha", "Beta");
    expectBefore("Alpha", "beta");
    expectBefore("\xC3\xA9t\xC3\xA9", "\xC3\x89t\xC3\xA9 2"); // an accented capital beside its small letter
}

TEST(NaturalOrder, ShorterComesFirst) {
    expectBefore("", "a");
    expectBefore("song", "song 1");
}

TEST(NaturalOrder, BytesThatAreNoUtf8AreOrderedToo) {
    expectBefore("a\x80", "a\xFF");
    EXPECT_EQ(compareNatural("\xFF\xFE", "\xFF\xFE"), 0);
}
