// Resources that are not JSON at all, and the remedies that faults name.

#include "SceneFixture.h"

#include "platform/linux/toolkit/Resource.h"
#include "platform/linux/toolkit/ResourceHint.h"

namespace {

struct Broken {
    const char* name;
    const char* text;
    const char* message; ///< behind the file name
};

const Broken texts[] = {
    {"EmptyFile", "", ":1: found the end of the file, expected a value: "},
    {"List", "[1]", ":1: found a list of 1, expected an object with include, languages, "},
    {"MissingComma", "{\n\"texts\": {}\n\"parts\": {}}", ":3: found \"parts\", expected \",\" or \"}\""},
    {"MissingCommaInList", "{\"windows\": [1\n 2]}", ":2: found 2, expected \",\" or \"]\""},
    {"CommaTooMany", "{\"texts\": {},\n}",
     ":2: found }, expected a name in double quotes, or no comma before it"},
    {"CommaTooManyInList", "{\"windows\": [1,\n]}", ":2: found ], expected a value, or no comma before it"},
    {"NameWithoutQuotes", "{texts: 1}",
     ":1: found {te, expected a name in double quotes, or no comma before it"},
    {"SingleQuotes", "{\"texts\":\n'one'}", ":2: found ', expected a value: a text in double quotes, "},
    {"MissingColon", "{\"texts\"\n5}", ":2: found 5, expected \":\" between a name and its value"},
    {"MissingBracket", "{\"texts\": {}\n", ":1: found the end of the file, expected \",\" or \"}\""},
    {"BracketTooMany", "{}\n}", ":2: found }, expected nothing behind the last bracket"},
    {"OpenText", "{\"texts\": \"one\n}",
     ":1: found a text without its closing quote, expected it on the same line"},
    {"OpenComment", "{\n/* one\n}", ":3: found a comment without end, expected */ behind it"},
    {"HalfAComment", "{\n/ one\n}", ":2: found /, expected // or /* to begin a comment"},
    {"Backslash", "{\"texts\": \"C:\\disc\"}",
     R"(:1: found "C:\d, expected \\ for a backslash; also known are )"},
    {"OtherBytes",
     "{\n\"texts\": \"L\xE4"
     "den\"}",
     ":2: found bytes that are no UTF-8, expected the file in UTF-8"},
    {"CapitalTrue", "{\"texts\":\nTrue}",
     ":2: found T, expected a value: a text in double quotes, a number, true, "},
    {"HugeNumber", "{\"texts\": 1e999}", ":1: found 1e999, expected a smaller number"},
};

class ResourceSyntax : public testing::TestWithParam<Broken> {};

} // namespace

TEST_P(ResourceSyntax, isReportedWithFileLineAndRemedy) {
    const zm::test::TemporaryFolder folder;
    const std::string file = folder.write("broken.zmrc", GetParam().text);
    const auto result = zm::loadResource(file, 800, 480);
    ASSERT_FALSE(result);
    EXPECT_THAT(result.error(), testing::StartsWith(file + GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(All, ResourceSyntax, testing::ValuesIn(texts),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ResourceHints, nameTheNearestKnownName) {
    const std::vector<std::string> known = {"plain", "button", "title", "text"};
    EXPECT_EQ(zm::didYouMean("plian", known), " (did you mean \"plain\"?)");
    EXPECT_EQ(zm::didYouMean("titel", known), " (did you mean \"title\"?)");
    EXPECT_EQ(zm::didYouMean("txt", known), " (did you mean \"text\"?)");
    EXPECT_EQ(zm::didYouMean("Button", known), " (did you mean \"button\"?)");
    EXPECT_EQ(zm::didYouMean("scroll", known), "");
    EXPECT_EQ(zm::didYouMean("", known), "");
    EXPECT_EQ(zm::didYouMean("plain", {}), "");
    EXPECT_EQ(zm::didYouMean(std::string(100000, 'x'), known), "");
}

TEST(ResourceHints, aFolderIsNoResourceFile) {
    const zm::test::TemporaryFolder folder;
    const auto result = zm::loadResource(folder.path(), 800, 480);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), folder.path() + ": cannot be read, expected a resource file");
}
