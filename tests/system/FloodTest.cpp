#include "base/Paths.h"
#include "platform/linux/pps/PpsFile.h"
#include "tests/system/ChaosTest.h"
#include "tests/system/Sanitized.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace zm::test {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr int ChangesPerSecond = 10000;
constexpr auto Step = 10ms;
constexpr auto RegularTime = Sanitized ? 2s : 10s;
constexpr auto FullTime = 60s; ///< with ZM_SOAK=1

void writeWhole(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
}

/** Mounts of this process are its own from now on; false where that is not allowed. */
bool haveOwnMounts() {
    const auto uid = getuid();
    const auto gid = getgid();
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return false;
        }
        writeWhole("/proc/self/setgroups", "deny");
        writeWhole("/proc/self/uid_map", "0 " + std::to_string(uid) + " 1");
        writeWhole("/proc/self/gid_map", "0 " + std::to_string(gid) + " 1");
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

using Flood = Chaos;

TEST_F(Flood, TenThousandChangesASecondAreFollowed) {
    startManual();
    playMusic();
    auto object = PpsFile::open(ppsSocket(folder), "/pps/zelmar/disc/playing", 257, 0666);
    ASSERT_TRUE(object) << object.error();
    const auto time = std::getenv("ZM_SOAK") ? FullTime : RegularTime;
    const int count = ChangesPerSecond * static_cast<int>(time.count());
    const int perStep = ChangesPerSecond * Step.count() / 1000;
    const auto begin = Clock::now();
    auto slowestAnswer = Clock::duration::zero();
    for (int i = 0; i < count;) {
        for (const int end = i + perStep; i < end; ++i) {
            const auto written = object->write(R"(playtime:json:{"time":)" + std::to_string(i % 3000) +
                                               R"(,"tracktime":3600,"times":0})" + "\n");
            ASSERT_TRUE(written) << written.error();
        }
        if (i % ChangesPerSecond == 0) {
            const auto asked = Clock::now();
            must({"key", "20"});
            slowestAnswer = std::max(slowestAnswer, Clock::now() - asked);
        }
        std::this_thread::sleep_until(begin + Step * (i / perStep));
    }
    const std::chrono::duration<double> took = Clock::now() - begin;
    ASSERT_TRUE(object->write(R"(playtime:json:{"time":3599,"tracktime":3600,"times":0})"
                              "\n"));
    const auto end = Clock::now();
    EXPECT_TRUE(eventually([this] { return item(6, 2067)["text"] == "59:59"; })) << item(6, 2067);
    EXPECT_LE(Clock::now() - end, recoveryTime());
    std::cout << count << " changes in " << took.count() << " s, slowest answer to a key "
              << std::chrono::duration<double, std::milli>(slowestAnswer).count() << " ms" << std::endl;
    EXPECT_LE(slowestAnswer, recoveryTime());
    settle();
}

/** The runtime folder is a small disk of its own. */
class FullDisk : public Chaos {
protected:
    FullDisk() {
        m_mounted = haveOwnMounts() && mount("none", folder.c_str(), "tmpfs", 0, "size=6m,mode=0700") == 0;
    }
    ~FullDisk() override {
        if (bench) {
            endBench();
        }
        if (m_mounted) {
            umount2(folder.c_str(), MNT_DETACH);
        }
        std::error_code error;
        fs::remove_all(music(), error);
    }
    /** Not on the disk that gets full. */
    std::string music() override { return folder + "-music"; }
    void fill() {
        std::ofstream filler(folder + "/filler", std::ios::binary);
        const std::string block(4096, 'x');
        while (filler.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
        }
    }

    bool m_mounted = false;
};

TEST_F(FullDisk, NothingEndsAndWithRoomAgainTheDiscPlays) {
    if (!m_mounted) {
        GTEST_SKIP() << "a disk of its own cannot be mounted here";
    }
    startAll();
    playDisc();
    const auto before = children();
    fill();
    ASSERT_LT(fs::space(folder).available, 4096u);
    useFor(500ms);
    must({"eject"});
    EXPECT_TRUE(eventually([this] { return driveIsEmpty() && showsNoDisc(); }));
    must({"insert", music()}); // its catalogue has no room
    useFor(500ms);
    EXPECT_EQ(children(), before) << bench->err();
    must({"eject"});
    EXPECT_TRUE(eventually([this] { return driveIsEmpty() && showsNoDisc(); }));

    fs::remove(folder + "/filler");
    must({"insert", music()});
    expectRecovery([this] { return allRun(); }, [this] { return plays(); });
    EXPECT_EQ(children(), before);
    EXPECT_EQ(Json::parse(must({"disc"}))["state"], "loaded");
}

} // namespace zm::test
