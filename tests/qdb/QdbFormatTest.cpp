#include "platform/linux/qdb/QdbFormat.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace zm::test {

static std::string format(const char* text, ...) {
    va_list args;
    va_start(args, text);
    std::string result = qdbFormat(text, args);
    va_end(args);
    return result;
}

TEST(QdbFormat, TextWithoutConversionsStaysAsItIs) {
    EXPECT_EQ(format("SELECT 1"), "SELECT 1");
    EXPECT_EQ(format(""), "");
}

TEST(QdbFormat, NumbersAndTextsArePrinted) {
    EXPECT_EQ(format("%d %i %u %x %X %o %c", -1, 2, 3u, 255, 255, 8, 'z'), "-1 2 3 ff FF 10 z");
    EXPECT_EQ(format("%s,%s", "a", "b"), "a,b");
    EXPECT_EQ(format("%.2f %e %g", 1.5, 1.5, 1.5), "1.50 1.500000e+00 1.5");
    EXPECT_EQ(format("%Lf %lf %lg", 2.5L, 2.5, 0.5), "2.500000 2.500000 0.5");
    EXPECT_EQ(format("%p", nullptr), "(nil)");
}

TEST(QdbFormat, WidthsPrecisionsAndSizesCount) {
    EXPECT_EQ(format("%5d|%-5d|%05d|%+d|%#x", 42, 42, 42, 42, 42), "   42|42   |00042|+42|0x2a");
    EXPECT_EQ(format("%*d|%-*d|%*d", 4, 7, 4, 7, -4, 7), "   7|7   |7   ");
    EXPECT_EQ(format("%.2s|%.*s|%6s|%-6s|%*s", "abcd", 3, "abcd", "ab", "ab", -4, "ab"),
              "ab|abc|    ab|ab    |ab  ");
    EXPECT_EQ(format("%ld %lld %zu %hd %hhd %jd %td", -5000000000L, -5000000000LL, size_t{7}, 70000, 300,
                     intmax_t{-9}, ptrdiff_t{4}),
              "-5000000000 -5000000000 7 4464 44 -9 4");
}

TEST(QdbFormat, DoubledPerCentSignsAreOne) {
    EXPECT_EQ(format("LIKE '%%name%%'"), "LIKE '%name%'");
}

TEST(QdbFormat, QuotesAreDoubled) {
    EXPECT_EQ(format("'%q'", "it's 'so'"), "'it''s ''so'''");
    EXPECT_EQ(format("%Q", "it's"), "'it''s'");
    EXPECT_EQ(format("%Q", static_cast<const char*>(nullptr)), "NULL");
    EXPECT_EQ(format("%q,%s", static_cast<const char*>(nullptr), static_cast<const char*>(nullptr)),
              "(null),(null)");
}

TEST(QdbFormat, ATextMayBeGivenAway) {
    EXPECT_EQ(format("<%z>", strdup("freed")), "<freed>"); // a leak checker would report it
}

TEST(QdbFormat, UnknownConversionsStandForThemselves) {
    EXPECT_EQ(format("50%! done, %y %", 1), "50%! done, %y %");
    EXPECT_EQ(format("%n"), "%n");
    EXPECT_EQ(format("100 %"), "100 %");
    EXPECT_EQ(format("%5"), "%5");
    EXPECT_EQ(format("%ls %k %d", 7), "%ls %k 7") << "they take no argument";
}

TEST(QdbFormat, HugeWidthsAreBounded) {
    EXPECT_EQ(format("%99999999999d", 1).size(), 1'000'000u);
    EXPECT_EQ(format("%.99999999999s", "abc"), "abc");
}

TEST(QdbFormat, DataIsNotAFormat) {
    EXPECT_EQ(format("%s", "100%n %s %d"), "100%n %s %d");
}

} // namespace zm::test
