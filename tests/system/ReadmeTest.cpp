#include "BuildPaths.h"
#include "tests/system/MusicFolder.h"
#include "tests/system/SystemTest.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

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
    // "./dev test" makes the demonstration disc, which takes its time; a build without it plays another disc.
    const bool demo = std::filesystem::exists(ZM_BINARY_DIR "/demo/.complete");
    writeMusicFolder(folder + "/songs", 3);
    startBench({"--no-web", "--disc", folder + "/songs"});
    const Words commands = printedSequence();
    ASSERT_GE(commands.size(), 10u);
    // Paths are those of the project's folder; this build may lie elsewhere and the picture goes to the test's folder.
    const std::string place = "cd " + folder + "; mkdir -p build; ln -sfn " ZM_BINARY_DIR "/bin build/bin; ";
    for (std::string command : commands) {
        if (const auto at = command.find("--demo"); at != std::string::npos && !demo) {
            command.replace(at, 6, folder + "/songs");
        }
        EXPECT_TRUE(command.starts_with("build/bin/zmctl ")) << command;
        std::ofstream(folder + "/step") << place + "timeout 60 " + command + "\n";
        EXPECT_EQ(std::system(("sh " + folder + "/step >" + folder + "/out 2>&1").c_str()), 0)
            << command << [&] {
                   std::ifstream out(folder + "/out");
                   return "\n" + std::string(std::istreambuf_iterator<char>(out), {});
               }();
    }
    std::ifstream picture(folder + "/screen.png", std::ios::binary);
    EXPECT_TRUE(picture.good());
}

} // namespace zm::test
