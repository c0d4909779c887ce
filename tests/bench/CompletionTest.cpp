#include "services/ctl/Completion.h"

#include "services/ctl/CommandTexts.h"
#include "services/ctl/Names.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace zm::test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

using Words = std::vector<std::string>;

// What is offered for the last word.
Words offered(const Words& words) {
    return ctl::completions(ctl::Client("/nowhere"), words);
}

} // namespace

TEST(Completion, OffersEveryCommandName) {
    Words names{"--runtime"};
    for (const auto& text : ctl::commandTexts()) {
        names.emplace_back(text.name);
    }
    EXPECT_THAT(offered({""}), UnorderedElementsAreArray(names));
    EXPECT_THAT(offered({}), UnorderedElementsAreArray(names));
    EXPECT_THAT(offered({"app"}), ElementsAre("app", "appdata"));
}

TEST(Completion, OffersTheWordsThatAFormHasAtThatPlace) {
    EXPECT_THAT(offered({"app", "p"}), ElementsAre("pause"));
    EXPECT_THAT(offered({"disc", ""}), ElementsAre("--json", "fault"));
    EXPECT_THAT(offered({"disc", "fault", "no"}), ElementsAre("noanswer", "none"));
    EXPECT_THAT(offered({"screen", ""}), ElementsAre("--text", "main", "osd"));
    EXPECT_THAT(offered({"time", "1:00", ""}), ElementsAre("12", "24"));
    EXPECT_THAT(offered({"help", "mon"}), ElementsAre("monkey"));
    EXPECT_THAT(offered({"expect", "screen.main.window", ">"}), ElementsAre(">", ">="));
    EXPECT_THAT(offered({"app", "dance", ""}), IsEmpty());
    EXPECT_THAT(offered({"ps", ""}), IsEmpty());
}

TEST(Completion, OffersTheNamesOfKeysDevicesAndLanguages) {
    auto keys = ctl::namesOf(ctl::hardKeys());
    std::sort(keys.begin(), keys.end());
    EXPECT_THAT(offered({"key", ""}), ElementsAreArray(keys));
    EXPECT_THAT(offered({"key", "ne"}), ElementsAre("next"));
    EXPECT_THAT(offered({"device", "--silent", "pa"}), ElementsAre("parking"));
    EXPECT_THAT(offered({"device", "parking", ""}), ElementsAre("--silent", "fail"));
    EXPECT_THAT(offered({"language", ""}), ElementsAre("ar", "de", "en", "zh"));
}

TEST(Completion, OffersAnOptionOnceAndNothingForItsNumber) {
    EXPECT_THAT(offered({"touch", "1", "2", ""}), ElementsAre("--hold"));
    EXPECT_THAT(offered({"touch", "1", "2", "--hold", ""}), IsEmpty());
    EXPECT_THAT(offered({"touch", "1", "2", "--hold", "800", ""}), IsEmpty());
    EXPECT_THAT(offered({"monkey", "--seed", "3", ""}), ElementsAre("--file", "--seconds"));
    EXPECT_THAT(offered({"pps", ""}), ElementsAre("get", "history", "ls", "put", "watch"));
}

TEST(Completion, OffersFilesWhereAFileIsMeant) {
    const TemporaryFolder temporary;
    const std::string folder = temporary.path() + "/";
    std::filesystem::create_directory(folder + "discs");
    std::ofstream(folder + "disc.iso") << "x";
    std::ofstream(folder + ".hidden") << "x";
    EXPECT_THAT(offered({"insert", folder + "di"}), ElementsAre(folder + "disc.iso", folder + "discs/"));
    EXPECT_THAT(offered({"insert", folder}), ElementsAre(folder + "disc.iso", folder + "discs/"));
    EXPECT_THAT(offered({"--runtime", folder + "d"}), ElementsAre(folder + "discs/"));
    EXPECT_THAT(offered({"--runtime", folder, "app", "sh"}), ElementsAre("showonly"));
}

TEST(Completion, HasAScriptForThreeShells) {
    for (const char* shell : {"bash", "zsh", "fish"}) {
        ASSERT_NE(ctl::completionScript(shell), nullptr) << shell;
        EXPECT_THAT(std::string(ctl::completionScript(shell)), testing::HasSubstr("complete")) << shell;
    }
    EXPECT_EQ(ctl::completionScript("csh"), nullptr);
}

} // namespace zm::test
