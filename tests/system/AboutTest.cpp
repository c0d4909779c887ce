#include "BuildPaths.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/system/Process.h"

#include <gmock/gmock.h>

namespace zm::test {

class Program : public testing::TestWithParam<const char*> {};

TEST_P(Program, TellsItsVersion) {
    TemporaryFolder folder;
    Process process({GetParam(), "--version"}, folder.path());
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.out(), std::string(GetParam()) + " " ZM_VERSION "\n");
    EXPECT_EQ(process.err(), "");
}

TEST_P(Program, TellsItsUsageOnStandardOutput) {
    for (const char* option : {"--help", "-h"}) {
        TemporaryFolder folder;
        Process process({GetParam(), option}, folder.path());
        EXPECT_EQ(process.wait(), 0) << option;
        EXPECT_THAT(process.out(), testing::StartsWith(std::string("usage: ") + GetParam())) << option;
        EXPECT_EQ(process.err(), "") << option;
    }
}

INSTANTIATE_TEST_SUITE_P(, Program,
                         testing::Values("zmbench", "zmctl", "zmdiscd", "zmdecode", "zmdvd", "zmcover",
                                         "zmfilm"),
                         [](const auto& program) { return std::string(program.param); });

/** Its options were settled long before this project's version: -v tells its own, all others its usage. */
TEST(PlatenProgram, HasOptionsOfItsOwn) {
    TemporaryFolder folder;
    for (const char* option : {"--help", "--version", "-h"}) {
        Process process({"Platen", option}, folder.path());
        EXPECT_EQ(process.wait(), 0) << option;
        EXPECT_THAT(process.out(), testing::HasSubstr("  -v    get version\n")) << option;
    }
    Process version({"Platen", "-v"}, folder.path());
    EXPECT_EQ(version.wait(), 0);
    EXPECT_EQ(version.out(), "Platen:V1.0.0.1BUILD2015-09-09\n");
}

} // namespace zm::test
