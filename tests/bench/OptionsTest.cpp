#include "services/bench/Options.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

namespace zm::test {

TEST(BenchOptions, HaveTheirDefaults) {
    setenv("ZM_RUNTIME", "/tmp/somewhere", 1);
    const auto options = bench::parseOptions({});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->unit.runtimeDir, "/tmp/somewhere");
    EXPECT_EQ(options->unit.catalogue, "/tmp/somewhere/discdb.sqlite");
    EXPECT_EQ(options->unit.launcher, bench::unit::LauncherMode::Active);
    EXPECT_EQ(options->unit.clock, bench::unit::ClockMode::Real);
    EXPECT_TRUE(options->unit.discService);
    EXPECT_TRUE(options->unit.discToFront);
    EXPECT_FALSE(bench::parseOptions({"--insert-stays"})->unit.discToFront);
    EXPECT_TRUE(options->web);
    EXPECT_EQ(options->port, std::nullopt);
    EXPECT_FALSE(options->open);
}

TEST(BenchOptions, AManualClockImpliesAPassiveLauncher) {
    const auto options = bench::parseOptions({"--manual-clock"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->unit.clock, bench::unit::ClockMode::Manual);
    EXPECT_EQ(options->unit.launcher, bench::unit::LauncherMode::Passive);
    EXPECT_TRUE(bench::parseOptions({"--manual-clock", "--launcher", "passive"}));
}

TEST(BenchOptions, TheScreenHasOneOfThreeSizes) {
    EXPECT_EQ(bench::parseOptions({})->unit.screen, (ScreenSize{800, 480}));
    EXPECT_EQ(bench::parseOptions({"--screen", "1024x600"})->unit.screen, (ScreenSize{1024, 600}));
    EXPECT_EQ(bench::parseOptions({"--screen", "1280x720"})->unit.screen, (ScreenSize{1280, 720}));
    for (const std::string refused : {"1280x800", "1024", "1024X600", " 1024x600", ""}) {
        const auto options = bench::parseOptions({"--screen", refused});
        ASSERT_FALSE(options) << refused;
        EXPECT_EQ(options.error(), "--screen: \"" + refused +
                                       "\" is no size of a screen that the pages are made for, expected "
                                       "800x480, 1024x600 or 1280x720");
    }
}

TEST(BenchOptions, TheStartLineNamesAnUnusualScreenOnly) {
    EXPECT_EQ(bench::startLine(*bench::parseOptions({})), "zmbench");
    EXPECT_EQ(bench::startLine(*bench::parseOptions({"--screen", "1280x720"})), "zmbench --screen 1280x720");
}

TEST(BenchOptions, PathsBecomeAbsolute) {
    const std::string here = std::filesystem::current_path();
    const auto options = bench::parseOptions(
        {"--runtime", "run", "--no-disc-service", "--catalogue", "../c.sqlite", "--resources", "pages"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->unit.runtimeDir, here + "/run");
    EXPECT_EQ(options->unit.resourceDir, here + "/pages");
    EXPECT_EQ(options->unit.catalogue, std::filesystem::path(here).parent_path().string() + "/c.sqlite");
}

TEST(BenchOptions, WhereDiscsWereLeftLiesInTheRuntimeFolderUnlessItIsSaid) {
    EXPECT_EQ(bench::parseOptions({})->unit.resume, "");
    EXPECT_EQ(bench::parseOptions({"--resume", "/data/discs"})->unit.resume, "/data/discs");
    EXPECT_NE(bench::parseOptions({"--resume", "x", "--no-disc-service"}).error().find("--resume"),
              std::string::npos);
}

TEST(BenchOptions, TheHeadOfARecordHasWhatDecidesOverWhatIsPlayed) {
    const std::vector<std::string> words = {"--disc",   "/music",          "--manual-clock",
                                            "--resume", "/data/left here", "--drive",
                                            "/dev/sr0", "--audio-device",  "none"};
    const std::string line = bench::startLine(*bench::parseOptions(words));
    for (const char* part : {"--resume '/data/left here'", "--drive /dev/sr0", "--audio-device none"}) {
        EXPECT_NE(line.find(part), std::string::npos) << line;
    }
    EXPECT_EQ(bench::startLine(*bench::parseOptions({"--no-web"})), "zmbench");
}

TEST(BenchOptions, AnErrorNamesTheCulprit) {
    EXPECT_NE(bench::parseOptions({"--port", "70000"}).error().find("70000"), std::string::npos);
    EXPECT_NE(bench::parseOptions({"--colour"}).error().find("--colour"), std::string::npos);
    EXPECT_NE(bench::parseOptions({"--disc"}).error().find("--disc"), std::string::npos);
}

TEST(BenchOptions, MotionIsOnUnlessItIsSaid) {
    EXPECT_TRUE(bench::parseOptions({})->unit.motion);
    EXPECT_TRUE(bench::parseOptions({"--motion", "on"})->unit.motion);
    const auto off = bench::parseOptions({"--motion", "off"});
    EXPECT_FALSE(off->unit.motion);
    EXPECT_EQ(bench::startLine(*off), "zmbench --motion off");
    EXPECT_NE(bench::parseOptions({"--motion", "slow"}).error().find("slow"), std::string::npos);
}

TEST(BenchOptions, AnEmptyPathIsRefused) {
    for (const std::string name : {"--runtime", "--disc", "--catalogue", "--resources", "--resume"}) {
        const auto options = bench::parseOptions({"--no-disc-service", name, ""});
        ASSERT_FALSE(options) << name;
        EXPECT_EQ(options.error(), name + ": wrong value \"\"");
    }
}

} // namespace zm::test
