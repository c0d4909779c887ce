// What a music file's header says of its sound, also when it says nonsense.
#include "services/disc/engine/ReadSoundRange.h"
#include "tests/disc/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace zm::test;
using namespace zm::disc::engine;

namespace {

SoundRange rangeOf(const std::string& file) {
    return readSoundRange(
        [&](uint64_t offset, size_t size) {
            return offset < file.size() ? file.substr(static_cast<size_t>(offset), size) : std::string();
        },
        file.size());
}

std::string soundFile(const std::string& extension, const std::string& options) {
    return readFile(sample({"range-" + extension + "." + extension,
                            "-f lavfi -i sine=frequency=440:sample_rate=44100:duration=2 " + options}));
}

void expectSense(const SoundRange& range) {
    EXPECT_GE(range.first, 0);
    EXPECT_GT(range.count, 0);
    EXPECT_GE(range.rate, 0);
}

} // namespace

TEST(SoundRangeOf, AnMp3IsThatOfItsEncodersMark) {
    const SoundRange range = rangeOf(soundFile("mp3", "-c:a libmp3lame"));
    EXPECT_EQ(range.first, 576 + 529);
    EXPECT_EQ(range.count, 2 * 44100);
}

TEST(SoundRangeOf, AnMp4IsThatOfItsEdit) {
    const SoundRange range = rangeOf(soundFile("m4a", "-c:a aac"));
    EXPECT_EQ(range.first, 1024);
    EXPECT_EQ(range.count, 2 * 44100);
    EXPECT_EQ(range.rate, 44100);
    EXPECT_EQ(range.patches.size(), 2u);
}

TEST(SoundRangeOf, OtherFilesIsAllOfThem) {
    for (const char* extension : {"flac", "wav", "ogg"}) {
        const SoundRange range = rangeOf(soundFile(extension, ""));
        EXPECT_EQ(range.first, 0) << extension;
        EXPECT_EQ(range.count, SoundRange::ToTheEnd) << extension;
    }
    EXPECT_EQ(rangeOf("").count, SoundRange::ToTheEnd);
}

TEST(SoundRangeOf, ADamagedFileMakesSense) {
    for (const char* extension : {"mp3", "m4a"}) {
        const std::string whole = soundFile(extension, "");
        const size_t table = std::string(extension) == "m4a" ? whole.find("moov") : 0;
        std::mt19937 random(1);
        for (int round = 0; round < 20000; ++round) {
            std::string damaged = whole;
            for (int i = 0; i < 1 + round % 8; ++i) {
                const size_t place = table + random() % std::min<size_t>(1500, whole.size() - table);
                damaged[place] = static_cast<char>(random());
            }
            damaged.resize(round % 3 == 0 ? random() % damaged.size() : damaged.size());
            expectSense(rangeOf(damaged));
        }
    }
}
