#include "parts/WideText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

template <class... Arguments>
std::wstring format(const wchar_t* text, const Arguments&... arguments) {
    wchar_t buffer[WIDE_TEXT_SIZE];
    FormatWide(buffer, text, arguments...);
    return buffer;
}

} // namespace

TEST(WideText, FormatsTheTextsOfBothViews) {
    EXPECT_EQ(format(L"%d/%d", 3, 12), L"3/12");
    EXPECT_EQ(format(L"--/%d", 12), L"--/12");
    EXPECT_EQ(format(L"%02d:%02d:%02d", 1, 2, 3), L"01:02:03");
    EXPECT_EQ(format(L"%0.2d:%0.2d", 7, 5), L"07:05");
    EXPECT_EQ(format(L"%4.1f", 0.5), L" 0.5");
    EXPECT_EQ(format(L"%4.1f", -40.0), L"-40.0");
    EXPECT_EQ(format(L"%.0f", 7.0), L"7");
    EXPECT_EQ(format(L"%d  %s", 12, "name"), L"12  name");
    EXPECT_EQ(format(L"%d/%d %s %s %s", 1, 2, "a", std::string("b"), ""), L"1/2 a b ");
    EXPECT_EQ(format(L"plain"), L"plain");
    EXPECT_EQ(format(L""), L"");
}

TEST(WideText, NumbersReachTheirLimits) {
    EXPECT_EQ(format(L"%d", std::numeric_limits<int>::min()), L"-2147483648");
    EXPECT_EQ(format(L"%4.1f", std::numeric_limits<double>::max()).size(), 259u);
}

TEST(WideText, TextsAreUtf8) {
    EXPECT_EQ(format(L"%s", "é字😀"), L"é字😀");
    EXPECT_EQ(format(L"%s", "\xC3"), L"\xFFFD");
    EXPECT_EQ(format(L"%s", "\xFF\xFEz"), L"\xFFFD\xFFFDz");
    EXPECT_EQ(format(L"%s", "\xE5\xAD"
                            "a"),
              L"\xFFFD"
              L"a")
        << "a cut character is replaced once";
    EXPECT_EQ(format(L"%s", "\xC0\x80"), L"\xFFFD\xFFFD") << "overlong";
    EXPECT_EQ(format(L"%s", "\xED\xA0\x80"), L"\xFFFD\xFFFD\xFFFD") << "a surrogate";
    EXPECT_EQ(format(L"%s", "\xF4\x90\x80\x80"), L"\xFFFD\xFFFD\xFFFD\xFFFD") << "beyond the last character";
}

TEST(WideText, MissingTextIsEmpty) {
    EXPECT_EQ(format(L"<%s>", static_cast<const char*>(nullptr)), L"<>");
}

TEST(WideText, TooLongTextsAreCutAndEnded) {
    const std::string text(1000, 'x');
    EXPECT_EQ(format(L"%s", text), std::wstring(WIDE_TEXT_SIZE - 1, L'x'));
    wchar_t small[4] = {L'?', L'?', L'?', L'?'};
    FormatWide(small, L"%d", 123456);
    EXPECT_STREQ(small, L"123");
    wchar_t guarded[] = {L'?', L'?', L'?', L'?', L'!'};
    FormatWide(guarded, 4, L"%s", {WideArgument("éèêëē")});
    EXPECT_EQ(std::wstring(guarded, 5), std::wstring(L"éèê\0!", 5)) << "nothing is written behind it";
}

TEST(WideText, NothingIsWrittenBehindAFullBuffer) {
    wchar_t buffer[4] = {L'#', L'#', L'#', L'#'};
    EXPECT_EQ((FormatWide(buffer, L"abcdef"), std::wstring(buffer)), L"abc");
    EXPECT_EQ((FormatWide(buffer, L"%d%s", 123456, "é"), std::wstring(buffer)), L"123");
    EXPECT_EQ((FormatWide(buffer, L"%s-", "éèàü"), std::wstring(buffer)), L"éèà");
}

TEST(WideText, HexadecimalNumbersAreWrittenAsSuch) {
    EXPECT_EQ(format(L"0x%x", 0xAB), L"0xab");
    EXPECT_EQ(format(L"%04x|", 255), L"00ff|");
}

TEST(WideText, ConversionsWithoutTheirArgumentStandForNothing) {
    EXPECT_EQ(format(L"%d|%s|%d", 1), L"1||");
    EXPECT_EQ(format(L"%d|%s", "text", 2), L"|");
    EXPECT_EQ(format(L"100%"), L"100");
}
