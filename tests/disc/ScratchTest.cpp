// A scratch costs a moment of sound, not the song.
#include "tests/disc/GaplessFixture.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <atomic>
#include <cerrno>

using namespace zm::test;

namespace {

/** The part of a file that cannot be read at present. */
struct Unreadable {
    std::atomic<ino_t> file = 0;
    std::atomic<off_t> begin = 0;
    std::atomic<off_t> end = 0;
};
Unreadable unreadable;

} // namespace

extern "C" ssize_t __real_pread(int fd, void* buffer, size_t size, off_t offset);

// All files of this program's discs are read in this way.
extern "C" ssize_t __wrap_pread(int fd, void* buffer, size_t size, off_t offset) {
    struct stat info {};
    const bool touches = offset < unreadable.end && offset + static_cast<off_t>(size) > unreadable.begin;
    if (unreadable.file != 0 && touches && ::fstat(fd, &info) == 0 && info.st_ino == unreadable.file) {
        errno = EIO;
        return -1;
    }
    return __real_pread(fd, buffer, size, offset);
}

namespace {

class Scratched : public Gapless {
protected:
    static constexpr size_t Frames = 75 * 8 * 588;

    void TearDown() override {
        unreadable.file = 0;
        Gapless::TearDown();
    }
    void scratch(const std::string& file, off_t begin, off_t size) {
        struct stat info {};
        ASSERT_EQ(::stat(file.c_str(), &info), 0);
        unreadable.begin = begin;
        unreadable.end = begin + size;
        unreadable.file = info.st_ino;
    }
    // What is played meanwhile has no error.
    Sound playThrough(const std::string& path) {
        Sound heard = playToTheEnd(path);
        for (const auto& each : m_unit.recorder().all()) {
            EXPECT_FALSE(each.name == "errorstatus" && each.value != "0") << each.value;
        }
        return heard;
    }
    static constexpr size_t HalfASecond = 22050;
};

} // namespace

TEST_F(Scratched, ACdLosesTheSectorsOnly) {
    writeFile(m_disc / "disc.bin", bytesOf(noise(0, Frames)));
    writeFile(m_disc / "disc.cue", "FILE \"disc.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                   "TRACK 02 AUDIO\nINDEX 01 00:04:00\n");
    playOnce(m_disc / "disc.cue"); // read while it was clean
    scratch(m_disc / "disc.bin", 5 * 75 * 2352 + 100, 3 * 2352);
    const Sound heard = waitForTheEnd();
    EXPECT_EQ(heard.size() / 2, Frames);
    const auto passages = passagesOfNoise(heard, Frames);
    ASSERT_EQ(passages.size(), 3u);
    EXPECT_EQ(passages[1].first, Passage::None);
    EXPECT_LT(passages[1].count, HalfASecond / 5);
    EXPECT_EQ(passages[2].first, passages[1].count + passages[0].count);
}

TEST_F(Scratched, AnMp3LosesAMoment) {
    writePieces(hiss, {Frames}, "mp3", "-c:a libmp3lame -b:a 128k");
    scratch(m_disc / "1.mp3", 70000, 2000);
    const Sound heard = playThrough(disc());
    const Sound wanted = hiss(0, Frames);
    ASSERT_GT(heard.size() / 2, Frames - HalfASecond);
    EXPECT_LE(heard.size() / 2, Frames);
    // Behind the scratch the song goes on; frames that were lost have brought it forward.
    constexpr size_t At = Frames - 60000;
    constexpr size_t Window = 1000;
    double most = 0;
    for (size_t early = 0; early < HalfASecond; ++early) {
        most = std::max(most, likeness(&heard[2 * (At - early)], &wanted[2 * At], 2 * Window));
    }
    EXPECT_GT(most, 0.7);
    EXPECT_GT(likeness(&heard[20000], &wanted[20000], 2 * Window), 0.7) << "and before it";
}

TEST_F(Scratched, AFileThatCannotBeReadAtAllIsAnError) {
    writePieces(noise, {Frames, Frames}, "flac", "");
    scratch(m_disc / "1.flac", 0, 1 << 30);
    m_unit.startService(disc());
    m_unit.command(187, 1, 0);
    m_unit.next("errorstatus", "32");
    nextTrack(1, 2);
}
