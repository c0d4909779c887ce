#include "services/ctl/Script.h"
#include "services/ctl/ShellWords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

TEST(ShellWords, AreSplitAndQuotedAsInAShell) {
    EXPECT_THAT(*ctl::shellWords(R"(pps put  a 'b c' "d \"e\"" f\ g # comment)"),
                ElementsAre("pps", "put", "a", "b c", "d \"e\"", "f g"));
    EXPECT_TRUE(ctl::shellWords("")->empty());
    EXPECT_TRUE(ctl::shellWords("  # only a comment")->empty());
    EXPECT_THAT(*ctl::shellWords("a#b ''"), ElementsAre("a#b", ""));
    EXPECT_FALSE(ctl::shellWords("open 'quote"));
}

TEST(ShellWords, ALineGivesTheSameWordsAgain) {
    const std::vector<std::string> words = {"appdata", "--song=\"it's 100%\"", "", "#x", "a b", "中文"};
    EXPECT_EQ(*ctl::shellWords(ctl::shellLine(words)), words);
}

TEST(Script, HasACommandALineWithItsPlace) {
    const auto lines = ctl::parseScript("page", "# first\n\nkey 1\r\n  try touch 3 -4  # there\nwait 5");
    ASSERT_TRUE(lines) << lines.error();
    ASSERT_EQ(lines->size(), 3u);
    EXPECT_EQ(lines->at(0).place, "page:3");
    EXPECT_THAT(lines->at(0).words, ElementsAre("key", "1"));
    EXPECT_FALSE(lines->at(0).mayFail);
    EXPECT_EQ(lines->at(1).place, "page:4");
    EXPECT_THAT(lines->at(1).words, ElementsAre("touch", "3", "-4"));
    EXPECT_TRUE(lines->at(1).mayFail);
    EXPECT_EQ(lines->at(2).place, "page:5");
}

TEST(Script, AWrongLineIsNamedBeforeAnythingRuns) {
    for (const char* wrong :
         {"dance", "key 'open", "wait", "wait -1", "wait 1 2", "expect screen.main.window",
          "expect screen.main.window ~ 1", "run other", "monkey", "help", "try"}) {
        const auto lines = ctl::parseScript("page", std::string("key 1\n\n") + wrong + "\n");
        ASSERT_FALSE(lines) << wrong;
        EXPECT_THAT(lines.error(), StartsWith(std::string("page:3: ") + wrong + "\n"));
    }
    EXPECT_THAT(ctl::parseScript("page", "dance").error(), HasSubstr("there is no command \"dance\""));
}

} // namespace zm::test
