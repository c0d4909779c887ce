#include "services/ctl/Names.h"

#include "BuildPaths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace zm::test {

namespace {

std::string content(const std::string& file) {
    std::ifstream stream(std::string(ZM_SOURCE_DIR) + "/" + file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

} // namespace

TEST(Names, TheManualListsEveryKeyAndVehicleValue) {
    const std::string manual = content("docs/bench.md");
    for (const auto rows : {ctl::hardKeys(), ctl::vehicleDevices()}) {
        for (const auto& row : rows) {
            const std::string line = "| `" + std::string(row.name) + "` | " + std::to_string(row.number) +
                                     " | " + std::string(row.meaning) + " |\n";
            EXPECT_THAT(manual, testing::HasSubstr(line));
        }
    }
}

TEST(Names, ThePageHasEveryKey) {
    const std::string page = content("web/keys.js");
    std::set<int> onPage;
    const std::regex code("code: (\\d+)");
    for (std::sregex_iterator at(page.begin(), page.end(), code), end; at != end; ++at) {
        onPage.insert(std::stoi((*at)[1]));
    }
    std::set<int> known;
    for (const auto& row : ctl::hardKeys()) {
        known.insert(row.number);
    }
    EXPECT_EQ(onPage, known);
}

TEST(Names, NoComputerKeyStandsForTwoHardKeys) {
    EXPECT_EQ(ctl::findShortcut("n")->number, 20);
    EXPECT_EQ(ctl::findShortcut("MediaTrackNext")->number, 20);
    EXPECT_EQ(ctl::findShortcut("q"), nullptr);
    EXPECT_EQ(ctl::findShortcut(""), nullptr);
    std::set<std::string> all;
    for (const auto& row : ctl::hardKeys()) {
        std::istringstream keys{std::string(row.shortcuts)};
        for (std::string key; keys >> key;) {
            EXPECT_TRUE(all.insert(key).second) << key;
            EXPECT_EQ(ctl::findShortcut(key), &row) << key;
        }
    }
    EXPECT_GE(all.size(), 17U);
}

TEST(Names, LanguagesAreThoseOfThePages) {
    std::string list;
    for (const auto& code : ctl::languages()) {
        list += (list.empty() ? "\"" : ", \"") + code + "\"";
    }
    EXPECT_THAT(content("resources/shared/styles.zmrc"), testing::HasSubstr("\"languages\": [" + list + "]"));
}

TEST(Names, AnUnknownOneNamesTheNearest) {
    EXPECT_EQ(ctl::unknownWord("key", "nxt", {"next", "enter"}),
              "there is no key \"nxt\"; did you mean \"next\"?");
    EXPECT_EQ(ctl::unknownWord("key", "parked", {"parking"}),
              "there is no key \"parked\"; did you mean \"parking\"?");
    EXPECT_EQ(ctl::unknownWord("key", "x", {"next", "enter"}), "there is no key \"x\"; there is next, enter");
    EXPECT_EQ(ctl::unknownNumber("page", 7, std::vector<int>{1, 6, 17}),
              "there is no page 7; the nearest is 6");
    EXPECT_EQ(ctl::unknownNumber("page", -2147483647, std::vector<int>{17, 1}),
              "there is no page -2147483647; the nearest is 1");
    EXPECT_EQ(ctl::unknownNumber("page", 7, std::vector<int>{}), "there is no page 7");
}

} // namespace zm::test
