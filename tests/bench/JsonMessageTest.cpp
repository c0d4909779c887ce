#include "base/JsonMessage.h"
#include "services/bench/commands/Request.h"

#include "services/bench/web/Screen.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace zm::test {

namespace {

using namespace std::string_view_literals;

std::string nested(int levels) {
    return "{\"t\":" + std::string(static_cast<size_t>(levels) - 1, '[') +
           std::string(static_cast<size_t>(levels) - 1, ']') + "}";
}

using Words = std::vector<std::string>;

} // namespace

TEST(JsonMessage, IsAnObject) {
    EXPECT_EQ(parseMessage(R"({"t":"sync"})"), (Json{{"t", "sync"}}));
    for (const char* text : {"", "null", "[1]", "\"t\"", "{\"t\":1", "{\"t\":1}}", "{\"t\":\xff}"}) {
        EXPECT_TRUE(parseMessage(text).is_discarded()) << text;
    }
}

TEST(JsonMessage, ANulDoesNotEndTheText) {
    for (const auto text : {"{\"t\":1}\0"sv, "{\"t\":1}\0{}"sv, "{\"t\":1\0}"sv}) {
        EXPECT_TRUE(parseMessage(text).is_discarded());
    }
}

TEST(JsonMessage, MayBeNestedSixtyFourLevelsDeep) {
    EXPECT_TRUE(parseMessage(nested(64)).is_object());
    EXPECT_TRUE(parseMessage(nested(65)).is_discarded());
    EXPECT_TRUE(parseMessage(nested(30000)).is_discarded());
}

TEST(JsonMessage, BracketsInsideTextsAreNoNesting) {
    const std::string brackets(1000, '[');
    EXPECT_EQ(parseMessage("{\"t\":\"\\\"" + brackets + "\\\\\"}")["t"], "\"" + brackets + "\\");
    const std::string flat = "{\"t\":[" + [] {
        std::string lists;
        for (int i = 0; i < 100; ++i) {
            lists += "[],";
        }
        return lists;
    }() + "0]}";
    EXPECT_EQ(parseMessage(flat)["t"].size(), 101u);
}

TEST(PageCommand, KeepsTouchesInsideTheScreen) {
    EXPECT_EQ(bench::web::pageCommand({{"t", "touch"}, {"x", 1e300}, {"y", -5}, {"hold", 900}}),
              (Words{"touch", "799", "0", "--hold", "900"}));
    EXPECT_EQ(bench::web::pageCommand({{"t", "release"}, {"x", "7"}}), (Words{"release", "0", "0"}));
    EXPECT_TRUE(bench::web::pageCommand({{"t", "eject"}}).empty());
    EXPECT_TRUE(bench::web::pageCommand({{"t", 5}}).empty());
    EXPECT_TRUE(bench::web::pageCommand(Json::object()).empty());
}

} // namespace zm::test
