#include "platform/linux/framework/ResourceWatch.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace std::chrono_literals;

class ResourceWatching : public testing::Test {
protected:
    ResourceWatching() {
        std::filesystem::create_directory(folder + "/shared");
        write("pages.zmrc_device");
        write("shared/styles.zmrc");
        const auto watched = watch.watch({folder + "/pages.zmrc_device", folder + "/shared/styles.zmrc"});
        EXPECT_TRUE(watched) << watched.error();
    }

    void write(const std::string& name) { std::ofstream(folder + "/" + name) << "{}"; }
    /** Notices so far; inotify has them ready as soon as the file is closed. */
    int notices() {
        while (loop.iterate(false)) {
        }
        return changes;
    }

    const zm::test::TemporaryFolder temporary;
    const std::string& folder = temporary.path();
    int changes = 0;
    zm::EventLoop loop;
    zm::ResourceWatch watch{loop, [this] { ++changes; }};
};

} // namespace

TEST_F(ResourceWatching, AWrittenFileIsNoticed) {
    EXPECT_EQ(notices(), 0);
    write("pages.zmrc_device");
    EXPECT_EQ(notices(), 1);
    write("shared/styles.zmrc");
    EXPECT_EQ(notices(), 2);
}

TEST_F(ResourceWatching, AFileRenamedIntoPlaceIsNoticed) {
    write("shared/new");
    EXPECT_EQ(notices(), 0);
    std::filesystem::rename(folder + "/shared/new", folder + "/shared/styles.zmrc");
    EXPECT_EQ(notices(), 1);
}

TEST_F(ResourceWatching, WhatHappensTogetherIsNoticedOnce) {
    for (int i = 0; i < 20; ++i) {
        write("pages.zmrc_device");
        write("shared/styles.zmrc");
    }
    EXPECT_EQ(notices(), 1);
}

TEST_F(ResourceWatching, ANewResourceFileIsNoticedAndOtherFilesAreNot) {
    write("shared/.styles.zmrc.swp");
    write("shared/notes.txt");
    write("zmrc");
    EXPECT_EQ(notices(), 0);
    write("shared/bars.zmrc");
    EXPECT_EQ(notices(), 1);
}

TEST_F(ResourceWatching, AFolderWatchedTwiceTellsOnce) {
    EXPECT_TRUE(watch.watch({folder + "/pages.zmrc_device"}));
    write("pages.zmrc_device");
    EXPECT_EQ(notices(), 1);
}

TEST_F(ResourceWatching, AMissingFolderIsAnError) {
    const auto watched = watch.watch({folder + "/none/pages.zmrc"});
    ASSERT_FALSE(watched);
    EXPECT_EQ(watched.error(), "resource folder " + folder + "/none: No such file or directory");
}
