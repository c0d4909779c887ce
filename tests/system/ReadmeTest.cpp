#include "BuildPaths.h"
#include "tests/system/SystemTest.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>

namespace zm::test {

namespace {

/** The commands of the section "A look around" as they are printed. */
Words printedSequence() {
    std::ifstream stream(ZM_SOURCE_DIR "/README.md");
    Words commands;
    bool section = false;
    bool code = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("## ")) {
            section = line == "## A look around";
        } else if (section && line.starts_with("```")) {
            code = line == "```sh";
        } else if (section && code) {
            commands.push_back(line);
        }
    }
    return commands;
}

} // namespace

/** What a new user tries first. */
using Readme = SystemTest;

TEST_F(Readme, TheSequenceRunsAsPrinted) {
    // As "./dev run" does; it takes its time only where there is none yet.
    const std::string demo = ZM_BINARY_DIR "/demo";
    ASSERT_EQ(std::system(("cd " ZM_SOURCE_DIR " && resources/make-demo-disc " + demo + " >&2").c_str()), 0);
    startBench({"--no-web", "--disc", demo});
    const Words commands = printedSequence();
    ASSERT_GE(commands.size(), 10u);
    // Paths are those of the project's folder; this build may lie elsewhere and the picture goes to the test's folder.
    const std::string place = "cd " + folder + "; mkdir -p build; ln -sfn " ZM_BINARY_DIR "/bin build/bin; ";
    std::map<std::string, std::string> shown; // by command without its comment
    for (const std::string& command : commands) {
        EXPECT_TRUE(command.starts_with("build/bin/zmctl ")) << command;
        std::ofstream(folder + "/step") << place + "timeout 60 " + command + "\n";
        const int status = std::system(("sh " + folder + "/step >" + folder + "/out 2>&1").c_str());
        std::ifstream out(folder + "/out");
        std::string text(std::istreambuf_iterator<char>(out), {});
        EXPECT_EQ(status, 0) << command << "\n" << text;
        const std::string bare = command.substr(0, command.find(" #"));
        shown[bare.substr(0, bare.find_last_not_of(' ') + 1)] = text;
    }
    // What its reader is told to see.
    EXPECT_THAT(shown["build/bin/zmctl screen --text"], HasSubstr("Harbour Lights"));
    EXPECT_THAT(shown["build/bin/zmctl pps get zelmar/disc/playing"], HasSubstr("ID3:json:{"));
    EXPECT_THAT(shown["build/bin/zmctl pps watch zelmar/disc/playing -t 2"], HasSubstr("playtime:json:{"));
    EXPECT_THAT(shown["build/bin/zmctl screen main 6"], StartsWith("{"));
    EXPECT_THAT(shown["build/bin/zmctl log --time -n 20"], HasSubstr("DiscView"));
    std::ifstream picture(folder + "/screen.png", std::ios::binary);
    EXPECT_TRUE(picture.good());
}

} // namespace zm::test
