#include "tests/model/Arguments.h"
#include "tests/model/ModelTest.h"

#include "Options.h"
#include "Platen.h"
#include "ZMPath.h"

#include <getopt.h>
#include <unistd.h>

namespace zm::test {

using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::IsEmpty;

/** The program in a process whose standard output is its standard error, which can be matched. */
static int runProgram(const std::vector<const char*>& words) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    Arguments arguments(words);
    return PlatenMain(arguments.count(), arguments.values());
}

constexpr const char* USAGE = "^Platen:V1.0.0.1BUILD2015-09-09\n"
                              "  -v    get version\n"
                              "  -h    get help\n"
                              "  -m \\[MCU\\|MPU\\|\\.\\.\\.\\]   set packet name\n"
                              "  -c \\[install\\|uninstall\\]set command\n"
                              "  -f \\[/tmp/mcu.tar.gz\\]  set packet file\n"
                              "  -u \\[authtoken\\] set authtoken\n"
                              "  -p  monitor pps control\n$";

class StartUpTest : public ModelTest {};
using StartUpDeathTest = StartUpTest;

TEST_F(StartUpDeathTest, WithoutArgumentsItPrintsTheUsage) {
    EXPECT_EXIT(runProgram({"Platen"}), ExitedWithCode(0), USAGE);
}

TEST_F(StartUpDeathTest, TheVersionOptionPrintsNameAndVersion) {
    EXPECT_EXIT(runProgram({"Platen", "-v"}), ExitedWithCode(0), "^Platen:V1.0.0.1BUILD2015-09-09\n$");
}

TEST_F(StartUpDeathTest, OptionsLeadToTheUsageOnly) {
    EXPECT_EXIT(runProgram({"Platen", "-h"}), ExitedWithCode(0), USAGE);
    EXPECT_EXIT(runProgram({"Platen", "-p"}), ExitedWithCode(0), USAGE);
    EXPECT_EXIT(runProgram({"Platen", "-p", "disc"}), ExitedWithCode(0), USAGE);
    EXPECT_EXIT(runProgram({"Platen", "-m", "MCU"}), ExitedWithCode(0), USAGE);
    EXPECT_EXIT(runProgram({"Platen", "-c", "install"}), ExitedWithCode(0), USAGE);
    EXPECT_EXIT(runProgram({"Platen", "-f", "/tmp/x"}), ExitedWithCode(0), USAGE);
    EXPECT_EXIT(runProgram({"Platen", "-utoken"}), ExitedWithCode(0), USAGE);
}

TEST_F(StartUpDeathTest, UnknownOptionsAndMissingValuesPrintTheUsageToo) {
    const char* USAGE_AFTER_ERROR = "Platen: .*\nPlaten:V1.0.0.1BUILD2015-09-09\n  -v    get version\n";
    EXPECT_EXIT(runProgram({"Platen", "-x"}), ExitedWithCode(0), USAGE_AFTER_ERROR);
    EXPECT_EXIT(runProgram({"Platen", "-m"}), ExitedWithCode(0), USAGE_AFTER_ERROR);
    EXPECT_EXIT(runProgram({"Platen", "--song=x"}), ExitedWithCode(0), USAGE_AFTER_ERROR);
}

TEST_F(StartUpTest, AFirstArgumentThatIsNoOptionGoesOnAndResetsTheScan) {
    for (const char* first : {"disc", "", "-", "--", "disc"}) {
        Arguments arguments({"Platen", first, "-v", "--song=x"});
        get_options(arguments.count(), arguments.values());
        EXPECT_EQ(optind, 0);
        EXPECT_STREQ(arguments.values()[1], first) << "arguments keep their order";
    }
}

TEST_F(StartUpTest, TheSongParameterIsRead) {
    const std::tuple<std::vector<const char*>, bool, std::string> ROWS[] = {
        {{"Platen", "disc"}, false, ""},
        {{"Platen", "disc", "--song=Yellow"}, true, "Yellow"},
        {{"Platen", "disc", "--song", "Two words"}, true, "Two words"},
        {{"Platen", "disc", "--singer=x"}, false, ""},
        {{"Platen", "disc", "--song="}, true, ""},
    };
    for (const auto& [words, given, text] : ROWS) {
        Arguments arguments(words);
        std::string song;
        EXPECT_EQ(get_song(arguments.count(), arguments.values(), song), given)
            << testing::PrintToString(words);
        EXPECT_EQ(song, text);
    }
}

TEST_F(StartUpTest, PathsComeFromTheEnvironmentAsTheyAre) {
    unsetenv("ZM_RCC_PATH");
    unsetenv("ZM_FONT_PATH");
    EXPECT_STREQ(Oro::ZMCAR::GetZMRCCPath(), "/zmapps/rccs/");
    EXPECT_STREQ(Oro::ZMCAR::GetZMFontPath(), "/zmapps/fonts/");
    setenv("ZM_RCC_PATH", "/a", 1);
    setenv("ZM_FONT_PATH", "", 1);
    EXPECT_STREQ(Oro::ZMCAR::GetZMRCCPath(), "/a");
    EXPECT_STREQ(Oro::ZMCAR::GetZMFontPath(), "");
}

TEST_F(StartUpTest, WithoutAHeadUnitItEndsWithOneAndSaysSo) {
    setenv("ZM_RCC_PATH", "/nowhere/", 1);
    setenv("ZM_FONT_PATH", "/fonts/", 1);
    Arguments arguments({"Platen", "disc"});
    EXPECT_EQ(PlatenMain(arguments.count(), arguments.values()), 1);
    std::vector<std::string> lines;
    for (const auto& entry : m_log.readNew()) {
        if (entry.text.starts_with("_PLATEN_[main]")) {
            lines.push_back(std::to_string(entry.severity) + " " + entry.text);
        }
    }
    const std::string group = "1-" + std::to_string(getpid()) + "-zelmar-disc";
    EXPECT_THAT(
        lines,
        ElementsAre("5 _PLATEN_[main]-\\n\\n----------------Platen V1.0.0.1BUILD2015-09-09 : Sep  9 2015 "
                    "10:08:13 main begin --------------------\\n",
                    "6 _PLATEN_[main]-theApp.Init",
                    "6 _PLATEN_[main]-" + group + ", zmdisc, DISC.zmrc_device, /nowhere/, /fonts/, 800, 480",
                    "2 _PLATEN_[main]-==========view init error=========="));
}

} // namespace zm::test
