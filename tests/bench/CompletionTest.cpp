#include "BuildPaths.h"
#include "services/ctl/CommandTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

namespace zm {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

const std::string Script = ZM_SOURCE_DIR "/services/ctl/zmctl.bash";

std::vector<std::string> bash(const std::string& code) {
    const std::string command = "bash -euc '. " + Script + "; " + code + "'";
    FILE* pipe = popen(command.c_str(), "r");
    std::vector<std::string> lines(1);
    for (int character; pipe && (character = std::fgetc(pipe)) != EOF;) {
        if (character == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += static_cast<char>(character);
        }
    }
    EXPECT_EQ(pclose(pipe), 0) << code;
    lines.pop_back();
    return lines;
}

// What is offered behind "zmctl WORDS"; the last word is the one being written.
std::vector<std::string> offered(const std::string& words) {
    return bash("COMP_WORDS=(zmctl " + words +
                "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zmctl; "
                "for word in \"${COMPREPLY[@]}\"; do echo \"$word\"; done");
}

} // namespace

TEST(Completion, KnowsExactlyTheFormsOfAllCommands) {
    std::vector<std::string> forms;
    for (const auto& text : commandTexts()) {
        std::istringstream usage{std::string(text.usage)};
        for (std::string form; std::getline(usage, form);) {
            forms.push_back(form);
        }
    }
    auto known = bash("echo \"$_zmctl_forms\"");
    std::erase(known, "");
    EXPECT_THAT(known, testing::ElementsAreArray(forms)) << Script << " is to follow the command texts";
}

TEST(Completion, OffersEveryCommandName) {
    std::vector<std::string> names{"--runtime"};
    for (const auto& text : commandTexts()) {
        names.emplace_back(text.name);
    }
    EXPECT_THAT(offered("\"\""), UnorderedElementsAreArray(names));
    EXPECT_THAT(offered("app"), ElementsAre("app", "appdata"));
}

TEST(Completion, OffersTheWordsThatAFormHasAtThatPlace) {
    EXPECT_THAT(offered("app p"), ElementsAre("pause"));
    EXPECT_THAT(offered("disc \"\""), ElementsAre("fault"));
    EXPECT_THAT(offered("disc fault no"), ElementsAre("noanswer", "none"));
    EXPECT_THAT(offered("screen \"\""), ElementsAre("main", "osd"));
    EXPECT_THAT(offered("time 1:00 \"\""), ElementsAre("12", "24"));
    EXPECT_THAT(offered("help mon"), ElementsAre("monkey"));
    EXPECT_THAT(offered("expect screen.main.window \">\""), ElementsAre(">", ">="));
    EXPECT_THAT(offered("app dance \"\""), IsEmpty());
    EXPECT_THAT(offered("ps \"\""), IsEmpty());
}

TEST(Completion, OffersAnOptionOnceAndNothingForItsNumber) {
    EXPECT_THAT(offered("touch 1 2 \"\""), ElementsAre("--hold"));
    EXPECT_THAT(offered("touch --hold \"\""), IsEmpty());
    EXPECT_THAT(offered("monkey --seed 3 \"\""), ElementsAre("--file", "--seconds"));
    EXPECT_THAT(offered("pps \"\""), ElementsAre("get", "ls", "put", "watch"));
}

TEST(Completion, OffersFilesWhereAFileIsMeant) {
    EXPECT_THAT(offered("run " + Script.substr(0, Script.size() - 2)), ElementsAre(Script));
    EXPECT_THAT(offered("--runtime " ZM_SOURCE_DIR "/services/ct"),
                ElementsAre(ZM_SOURCE_DIR "/services/ctl"));
}

} // namespace zm
