#include "base/Paths.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zm::test {

class PathsTest : public testing::Test {
protected:
    PathsTest() {
        for (const char* name : {"ZM_RUNTIME", "XDG_RUNTIME_DIR", "ZM_CATALOGUE", "ZM_RESUME"}) {
            unsetenv(name);
        }
    }
    static unsigned modeOf(const std::string& path) {
        struct stat info {};
        return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777u : 0;
    }

    TemporaryFolder temporary;
    const std::string folder = temporary.path();
};

TEST_F(PathsTest, TheRuntimeFolderIsTheFirstThatTheEnvironmentNames) {
    EXPECT_EQ(runtimeDir(), "/tmp/zmbench-" + std::to_string(getuid()));
    setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
    EXPECT_EQ(runtimeDir(), "/run/user/7/zmbench");
    setenv("ZM_RUNTIME", "/somewhere", 1);
    EXPECT_EQ(runtimeDir(), "/somewhere");
    setenv("ZM_RUNTIME", "", 1);
    EXPECT_EQ(runtimeDir(), "/run/user/7/zmbench") << "an empty variable names nothing";
}

TEST_F(PathsTest, TheRuntimeFolderIsMadeForItsOwnerOnly) {
    const std::string dir = folder + "/a/b/run";
    auto made = makeRuntimeDir(dir);
    ASSERT_TRUE(made) << made.error();
    EXPECT_EQ(modeOf(dir), 0700u);
    ASSERT_EQ(chmod(dir.c_str(), 0777), 0);
    EXPECT_TRUE(makeRuntimeDir(dir)) << "one that is there is taken";
    EXPECT_EQ(modeOf(dir), 0700u);
}

TEST_F(PathsTest, AFileOrALinkIsNoRuntimeFolder) {
    const std::string file = folder + "/file";
    std::ofstream(file) << "x";
    auto made = makeRuntimeDir(file);
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().find(file), std::string::npos);
    std::filesystem::create_directory_symlink(folder, folder + "/link");
    EXPECT_FALSE(makeRuntimeDir(folder + "/link"));
}

TEST_F(PathsTest, AFolderThatCannotBeMadeIsNamed) {
    std::ofstream(folder + "/file") << "text";
    const auto made = makeRuntimeDir(folder + "/file/run");
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error(), folder + "/file/run: Not a directory");
}

TEST_F(PathsTest, AFolderOfSomebodyElseIsNoRuntimeFolder) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give a folder away";
    }
    std::filesystem::create_directory(folder + "/other");
    ASSERT_EQ(chown((folder + "/other").c_str(), 1, 1), 0);
    const auto made = makeRuntimeDir(folder + "/other");
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error(), folder + "/other: not a folder of this user");
}

TEST_F(PathsTest, AllFilesLieInTheRuntimeFolder) {
    EXPECT_EQ(ppsSocket("/r"), "/r/pps.sock");
    EXPECT_EQ(screenSocket("/r"), "/r/screen.sock");
    EXPECT_EQ(shellSocket("/r"), "/r/shell.sock");
    EXPECT_EQ(ctlSocket("/r"), "/r/ctl.sock");
    EXPECT_EQ(logFile("/r"), "/r/slog");
    EXPECT_EQ(catalogueFile("/r"), "/r/discdb.sqlite");
    setenv("ZM_CATALOGUE", "/elsewhere/disc.db", 1);
    EXPECT_EQ(catalogueFile("/r"), "/elsewhere/disc.db");
    EXPECT_EQ(resumeFile("/r"), "/r/resume.sqlite");
    setenv("ZM_RESUME", "/elsewhere/resume.db", 1);
    EXPECT_EQ(resumeFile("/r"), "/elsewhere/resume.db");
}

} // namespace zm::test
