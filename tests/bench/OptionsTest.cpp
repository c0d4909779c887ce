#include "services/bench/Options.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

namespace zm {

TEST(BenchOptions, HaveTheirDefaults) {
    setenv("ZM_RUNTIME", "/tmp/somewhere", 1);
    const auto options = parseBenchOptions({});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->unit.runtimeDir, "/tmp/somewhere");
    EXPECT_EQ(options->unit.catalogue, "/tmp/somewhere/discdb.sqlite");
    EXPECT_EQ(options->unit.launcher, LauncherMode::Active);
    EXPECT_EQ(options->unit.clock, ClockMode::Real);
    EXPECT_TRUE(options->unit.discService);
    EXPECT_TRUE(options->unit.discToFront);
    EXPECT_FALSE(parseBenchOptions({"--insert-stays"})->unit.discToFront);
    EXPECT_TRUE(options->web);
    EXPECT_EQ(options->port, std::nullopt);
    EXPECT_FALSE(options->open);
}

TEST(BenchOptions, AManualClockImpliesAPassiveLauncher) {
    const auto options = parseBenchOptions({"--manual-clock"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->unit.clock, ClockMode::Manual);
    EXPECT_EQ(options->unit.launcher, LauncherMode::Passive);
    EXPECT_TRUE(parseBenchOptions({"--manual-clock", "--launcher", "passive"}));
}

TEST(BenchOptions, PathsBecomeAbsolute) {
    const std::string here = std::filesystem::current_path();
    const auto options = parseBenchOptions(
        {"--runtime", "run", "--no-disc-service", "--catalogue", "../c.sqlite", "--resources", "pages"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->unit.runtimeDir, here + "/run");
    EXPECT_EQ(options->unit.resourceDir, here + "/pages");
    EXPECT_EQ(options->unit.catalogue, std::filesystem::path(here).parent_path().string() + "/c.sqlite");
}

TEST(BenchOptions, WhereDiscsWereLeftLiesInTheRuntimeFolderUnlessItIsSaid) {
    EXPECT_EQ(parseBenchOptions({})->unit.resume, "");
    EXPECT_EQ(parseBenchOptions({"--resume", "/data/discs"})->unit.resume, "/data/discs");
    EXPECT_NE(parseBenchOptions({"--resume", "x", "--no-disc-service"}).error().find("--resume"),
              std::string::npos);
}

TEST(BenchOptions, AnErrorNamesTheCulprit) {
    EXPECT_NE(parseBenchOptions({"--port", "70000"}).error().find("70000"), std::string::npos);
    EXPECT_NE(parseBenchOptions({"--colour"}).error().find("--colour"), std::string::npos);
    EXPECT_NE(parseBenchOptions({"--disc"}).error().find("--disc"), std::string::npos);
}

TEST(BenchOptions, AnEmptyPathIsRefused) {
    for (const std::string name : {"--runtime", "--disc", "--catalogue", "--resources", "--resume"}) {
        const auto options = parseBenchOptions({"--no-disc-service", name, ""});
        ASSERT_FALSE(options) << name;
        EXPECT_EQ(options.error(), name + ": wrong value \"\"");
    }
}

} // namespace zm
