#include "services/bench/commands/Request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zm::test {

using Words = std::vector<std::string>;
using testing::HasSubstr;

/** A command as it comes over the control socket. */
TEST(CommandRequest, HasWordsAndMayNameVersionAndFolder) {
    const auto whole = bench::commands::parseRequest(R"({"v":1,"argv":["touch","100","200"],"cwd":"/home"})");
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->words, (Words{"touch", "100", "200"}));
    EXPECT_EQ(whole->cwd, "/home");
    EXPECT_EQ(bench::commands::parseRequest(R"({"argv":["ps"]})")->cwd, "");
    EXPECT_TRUE(bench::commands::parseRequest(R"({"argv":[]})")->words.empty());
}

TEST(CommandRequest, OfAnotherVersionNamesBoth) {
    for (const char* version : {"2", "0", "\"1\"", "null", "1.5"}) {
        const auto request =
            bench::commands::parseRequest(std::string(R"({"v":)") + version + R"(,"argv":["ps"],"new":1})");
        ASSERT_FALSE(request) << version;
        EXPECT_EQ(request.error(), std::string("version ") + version +
                                       " of the control protocol is not known; this bench speaks 1");
    }
}

TEST(CommandRequest, WithAnUnknownMemberNamesIt) {
    const auto request = bench::commands::parseRequest(R"({"argv":["ps"],"timeout":5})");
    ASSERT_FALSE(request);
    EXPECT_THAT(request.error(), HasSubstr("no member \"timeout\""));
}

TEST(CommandRequest, TakesNothingButAListOfTexts) {
    for (const char* text : {"", "[]", "7", "{"}) {
        const auto request = bench::commands::parseRequest(text);
        ASSERT_FALSE(request) << text;
        EXPECT_THAT(request.error(), HasSubstr("a command is {\"v\":1")) << text;
    }
    for (const char* text : {"{}", R"({"argv":null})", R"({"argv":"ps"})", R"({"argv":["touch",100]})",
                             R"({"argv":{"0":"ps"}})", R"({"argv":["ps",["ps"]]})"}) {
        const auto request = bench::commands::parseRequest(text);
        ASSERT_FALSE(request) << text;
        EXPECT_THAT(request.error(), HasSubstr("\"argv\" is no list of texts")) << text;
    }
    const auto request = bench::commands::parseRequest(R"({"argv":["ps"],"cwd":7})");
    ASSERT_FALSE(request);
    EXPECT_THAT(request.error(), HasSubstr("\"cwd\" is no text"));
}

} // namespace zm::test
