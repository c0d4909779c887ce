// The parts that covers are made with: the cache, what is written on drawn ones, their colours, the jail.
#include "services/cover/Jail.h"
#include "services/disc/cover/CoverCache.h"
#include "services/disc/cover/CoverProgram.h"
#include "services/disc/cover/Initials.h"
#include "services/disc/cover/Mood.h"
#include "tests/disc/CoverFixture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <set>

using namespace zm::disc::cover;
using namespace zm::test;

namespace fs = std::filesystem;

namespace {

uint64_t bytesIn(const std::string& folder) {
    uint64_t bytes = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        bytes += entry.file_size();
    }
    return bytes;
}

double luminance(const std::string& color) {
    const auto channel = [&](size_t at) {
        const double value = std::stoi(color.substr(at, 2), nullptr, 16) / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(0) + 0.7152 * channel(2) + 0.0722 * channel(4);
}

const Stop noStop = [] { return false; };

} // namespace

TEST(CoverCache, KeepsNoMoreThanItMayAndForgetsWhatWasNotUsed) {
    const TempFolder folder;
    CoverCache cache(folder / "covers", 1000);
    const std::string bytes(300, 'x');
    for (const char* key : {"a", "b", "c"}) {
        ASSERT_TRUE(cache.keep(key, bytes));
    }
    ASSERT_TRUE(cache.find("a"));
    ASSERT_TRUE(cache.keep("d", bytes));
    EXPECT_FALSE(cache.find("b")) << "used least recently";
    for (const char* key : {"a", "c", "d"}) {
        EXPECT_TRUE(cache.find(key)) << key;
    }
    EXPECT_EQ(bytesIn(folder / "covers"), 900u);
    const auto large = cache.keep("large", std::string(5000, 'x'));
    ASSERT_TRUE(large);
    EXPECT_EQ(readFile(*large).size(), 5000u) << "the latest one can be shown in any case";
    EXPECT_FALSE(cache.find("d"));
    ASSERT_TRUE(cache.keep("e", bytes));
    EXPECT_EQ(bytesIn(folder / "covers"), 300u);
}

TEST(CoverCache, FindsNothingThatSomebodyHasDeleted) {
    const TempFolder folder;
    CoverCache cache(folder / "covers", 1000);
    fs::remove(*cache.keep("a", "bytes"));
    EXPECT_FALSE(cache.find("a"));
}

TEST(CoverCache, IsEmptyOnceClosed) {
    const TempFolder folder;
    CoverCache cache(folder / "covers", 1000);
    ASSERT_TRUE(cache.keep("a", "bytes"));
    cache.close();
    EXPECT_FALSE(fs::exists(folder / "covers"));
    EXPECT_FALSE(cache.keep("b", "bytes"));
    EXPECT_FALSE(fs::exists(folder / "covers"));
}

TEST(CoverCache, SaysWhyItCannotWrite) {
    const TempFolder folder;
    writeFile(folder / "covers", "a file where the folder should be");
    CoverCache cache(folder / "covers", 1000);
    const auto kept = cache.keep("a", "bytes");
    ASSERT_FALSE(kept);
    EXPECT_NE(kept.error().find(folder / "covers/a.png"), std::string::npos) << kept.error();
}

TEST(Initials, AreTheFirstLettersOfTwoWords) {
    const std::pair<const char*, const char*> rows[] = {{"First Light", "FL"},
                                                        {"harbour", "H"},
                                                        {"Été", "É"},
                                                        {"E\xCC\x81te\xCC\x81 doux", "ÉD"},
                                                        {"Утро", "У"},
                                                        {"Снег за окном", "СЗ"},
                                                        {"Θάλασσα", "Θ"},
                                                        {"晨光", "晨"},
                                                        {"夜の道", "夜"},
                                                        {"첫눈", "첫"},
                                                        {"طريق الصباح", "ط"},
                                                        {"(What's) Going On", "WG"},
                                                        {"99 Luftballons", "99"},
                                                        {"7 Seconds", "7S"},
                                                        {"1979", "19"},
                                                        {"Track 05", "T5"},
                                                        {"00", "0"},
                                                        {"A2", "A2"},
                                                        {"???", "♪"},
                                                        {"", "♪"}};
    for (const auto& [title, letters] : rows) {
        EXPECT_EQ(initialsOf(title), letters) << title;
    }
}

TEST(TileColors, AreManyAndWhiteCanBeReadOnEach) {
    std::set<std::string> colors;
    for (int i = 0; i < 500; ++i) {
        colors.insert(tileColor("Album " + std::to_string(i)));
    }
    EXPECT_EQ(colors.size(), 12u);
    EXPECT_EQ(tileColor("Quiet Hours"), tileColor("Quiet Hours"));
    for (const std::string& color : colors) {
        EXPECT_GE(1.05 / (luminance(color) + 0.05), 4.5) << color;
    }
}

TEST(DrawnCovers, ShowWhiteLettersOnTheirColour) {
    for (const char* letters : {"FL", "晨", "ط", "WW", "♪"}) {
        const auto tile = drawLetters(letters, "2F5D8A", noStop);
        ASSERT_TRUE(tile) << tile.error();
        ASSERT_EQ(tile->width, CoverSide);
        ASSERT_EQ(tile->height, CoverSide);
        int white = 0;
        int atTheEdge = 0;
        for (uint32_t y = 0; y < CoverSide; ++y) {
            for (uint32_t x = 0; x < CoverSide; ++x) {
                const uint8_t* pixel = &tile->pixels[(size_t{y} * CoverSide + x) * 4];
                const bool bright = pixel[0] > 240 && pixel[1] > 240 && pixel[2] > 240;
                const bool margin = std::min({x, y, CoverSide - 1 - x, CoverSide - 1 - y}) < CoverSide / 10;
                white += bright;
                atTheEdge += bright && margin;
            }
        }
        EXPECT_GT(white, 800) << letters;
        EXPECT_EQ(atTheEdge, 0) << letters;
    }
    EXPECT_FALSE(drawLetters("A", "blue", noStop));
}

TEST(Mood, IsWhatIsColourfulInAPicture) {
    Bitmap picture{2, 2, {128, 128, 128, 255, 120, 120, 120, 255, 200, 30, 30, 255, 10, 10, 10, 255}};
    const std::string mood = moodOf(picture);
    EXPECT_GT(std::stoi(mood.substr(1, 2), nullptr, 16), 180) << mood;
    EXPECT_EQ(moodOf({1, 1, {16, 32, 48, 255}}), "#102030");
    EXPECT_EQ(moodOf({}), "#000000");
}

TEST(CoverProgram, IsEndedWhenNobodyWaits) {
    const auto huge =
        readFile(sample({"plain-huge.png", "-f lavfi -i color=red:s=9500x9500 -frames:v 1 -pix_fmt rgb24"}));
    const auto begun = std::chrono::steady_clock::now();
    const auto stopped = decodePicture(
        huge, [&] { return std::chrono::steady_clock::now() - begun > std::chrono::milliseconds(20); });
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.error(), "not wanted any more");
}

TEST(CoverProgram, TurnsPicturesUpright) {
    // Red above blue, held so that it has to be turned by a half.
    std::string jpeg =
        readFile(sample({"red-above-blue.jpg", "-f lavfi -i color=red:s=64x32 -f lavfi -i color=blue:s=64x32 "
                                               "-filter_complex vstack -frames:v 1 -pix_fmt yuvj444p"}));
    const std::string orientation("\xFF\xE1\x00\x22"
                                  "Exif\0\0"
                                  "MM\0*\0\0\0\x08"
                                  "\0\x01"
                                  "\x01\x12\0\x03\0\0\0\x01\0\x03\0\0"
                                  "\0\0\0\0",
                                  36);
    const auto blueOnTop = [](const std::string& bytes) {
        const auto picture = decodePicture(bytes, noStop);
        EXPECT_TRUE(picture) << picture.error();
        return picture && picture->pixels[2] > 200 && picture->pixels[0] < 60;
    };
    EXPECT_FALSE(blueOnTop(jpeg));
    EXPECT_TRUE(blueOnTop(jpeg.insert(2, orientation)));
}

TEST(CoverJail, HoldsFilesSocketsProgramsAndMemoryBack) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer needs files and memory";
#endif
    const int pid = ::fork();
    if (pid == 0) {
        if (!zm::cover::lockIn()) {
            ::_exit(1);
        }
        const bool file = ::open("/etc/passwd", O_RDONLY) >= 0;
        const bool socket = ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0;
        const bool process = ::fork() >= 0;
        const bool memory = std::malloc(size_t{2} << 30) != nullptr;
        ::_exit(file ? 2 : socket ? 3 : process ? 4 : memory ? 5 : 0);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFEXITED(status)) << status;
    EXPECT_EQ(WEXITSTATUS(status), 0) << "1 not locked in, 2 a file, 3 a socket, 4 a process, 5 memory";
}
