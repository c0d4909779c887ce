// What a music file's header says of its sound, also when it says nonsense.
#include "base/ByteNumbers.h"
#include "services/disc/engine/ReadSoundRange.h"
#include "tests/disc/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

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

// The place of a name in a file, which has to be there.
size_t placeOfName(const std::string& file, const std::string& name) {
    const size_t place = file.find(name);
    EXPECT_NE(place, std::string::npos) << name;
    return place == std::string::npos ? 0 : place;
}

std::string bigNumber(uint64_t value, size_t bytes) {
    std::string text;
    for (size_t i = bytes; i > 0; --i) {
        text += static_cast<char>(value >> 8 * (i - 1) & 0xFF);
    }
    return text;
}

std::string mp3Song() {
    return soundFile("mp3", "-c:a libmp3lame");
}

std::string mp4Song() {
    return soundFile("m4a", "-c:a aac");
}

// Where the parts of an encoder's mark in an MP3 stand.
enum EncodersMark : size_t {
    PartsAt = 4,
    FramesAt = 8,
    SeekTableAt = 16,
    QualityAt = 116,
    NameAt = 120,
    DelayAt = NameAt + 21
};

// Puts something into a box of the first level, in the file's order the last one, whose size grows with it.
void putIntoBox(std::string& file, const std::string& box, size_t place, const std::string& bytes) {
    const size_t name = placeOfName(file, box);
    const uint64_t size = zm::bigEndian(file, name - 4, 4);
    file.insert(place, bytes);
    file.replace(name - 4, 4, bigNumber(size + bytes.size(), 4));
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

TEST(SoundRangeOf, AnMp3IsFoundInAMarkOfFewerParts) {
    std::string file = mp3Song();
    const size_t mark = placeOfName(file, "Info");
    ASSERT_EQ(file.substr(mark + PartsAt, 4), bigNumber(0xF, 4));
    std::string withoutQuality = file;
    withoutQuality.replace(mark + PartsAt, 4, bigNumber(0x7, 4));
    withoutQuality.erase(mark + QualityAt, NameAt - QualityAt);
    std::string withoutTable = file;
    withoutTable.replace(mark + PartsAt, 4, bigNumber(0xB, 4));
    withoutTable.erase(mark + SeekTableAt, QualityAt - SeekTableAt);
    for (const auto& each : {withoutQuality, withoutTable}) {
        const SoundRange range = rangeOf(each);
        EXPECT_EQ(range.first, 576 + 529);
        EXPECT_EQ(range.count, 2 * 44100);
    }
}

TEST(SoundRangeOf, AnMp3WithoutASampleLeftIsAllOfIt) {
    std::string file = mp3Song();
    const size_t mark = placeOfName(file, "Info");
    file.replace(mark + FramesAt, 4, bigNumber(1, 4));
    file.replace(mark + DelayAt, 3, bigNumber(1000 << 12 | 151, 3));
    EXPECT_EQ(rangeOf(file).count, 1);
    file.replace(mark + DelayAt, 3, bigNumber(1000 << 12 | 152, 3));
    EXPECT_EQ(rangeOf(file).first, 0);
    EXPECT_EQ(rangeOf(file).count, SoundRange::ToTheEnd);
}

TEST(SoundRangeOf, AnMp4OfTimesThatAreTooFineIsAllOfIt) {
    for (const uint64_t scale : {1u << 22, (1u << 22) + 1}) {
        std::string file = mp4Song();
        const size_t film = placeOfName(file, "mvhd") + 4;
        file.replace(film + 12, 4, bigNumber(scale, 4));
        file.replace(placeOfName(file, "elst") + 4 + 8, 4, bigNumber(2 * scale, 4));
        const SoundRange range = rangeOf(file);
        EXPECT_EQ(range.first, scale > 1u << 22 ? 0 : 1024) << scale;
        EXPECT_EQ(range.count, scale > 1u << 22 ? SoundRange::ToTheEnd : 2 * 44100) << scale;
    }
}

TEST(SoundRangeOf, TheTablesOfAnMp4HaveSixteenMegabytesAtMost) {
    const std::string file = mp4Song();
    const size_t table = placeOfName(file, "moov") - 4;
    const size_t most = 16u << 20;
    for (const size_t more : {size_t{0}, size_t{1}}) {
        std::string large = file;
        const size_t room = most - (file.size() - table) + more;
        putIntoBox(large, "moov", large.size(), bigNumber(room, 4) + "free" + std::string(room - 8, '\0'));
        EXPECT_EQ(rangeOf(large).count, more ? SoundRange::ToTheEnd : 2 * 44100) << more;
    }
}

TEST(SoundRangeOf, AnMp4sLengthIsPatchedWhereItStandsInBothVersions) {
    const std::string file = mp4Song();
    const size_t film = placeOfName(file, "mvhd") + 4;
    std::string second = file;
    // Version, flags; two times, the scale and the length: all but the scale are twice as long.
    const std::string times = bigNumber(1, 1) + bigNumber(0, 3) + bigNumber(0, 16) +
                              file.substr(film + 12, 4) + bigNumber(0, 4) + file.substr(film + 16, 4);
    second.replace(film, 20, times.substr(0, 20));
    putIntoBox(second, "moov", film + 20, times.substr(20));
    const size_t ofBox = film - 8;
    second.replace(ofBox, 4, bigNumber(108 + 12, 4));
    // The decoder gives all that was encoded, which is longer than the edit.
    const uint64_t scale = 1000;
    ASSERT_EQ(file.substr(film + 12, 4), bigNumber(scale, 4));
    for (const auto& [text, place, bytes] :
         {std::tuple(file, film + 16, 4), std::tuple(second, film + 24, 8)}) {
        const SoundRange range = rangeOf(text);
        ASSERT_EQ(range.patches.size(), 2u) << bytes;
        EXPECT_EQ(range.patches[0].bytes, "free");
        EXPECT_EQ(text.substr(range.patches[0].offset, 4), "edts");
        EXPECT_EQ(range.patches[1].offset, place);
        ASSERT_EQ(range.patches[1].bytes.size(), static_cast<size_t>(bytes));
        EXPECT_EQ(range.patches[1].bytes,
                  bigNumber((range.first + 2 * 44100) * scale / 44100 + 1, static_cast<size_t>(bytes)));
    }
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
