#include "services/disc/library/Tags.h"
#include "services/disc/medium/FolderMedium.h"
#include "tests/disc/Samples.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace zm::disc::text;
using namespace zm::test;

namespace {

// Reads the tags of a file by its path.
Tags tagsOf(const std::string& file) {
    const std::filesystem::path path(file);
    FolderMedium medium(path.parent_path().string());
    auto reader = medium.open(path.filename().string());
    EXPECT_TRUE(reader) << (reader ? "" : reader.error());
    const auto raw = readTags(**reader, path.filename().string());
    CharsetRepair repair;
    learnTags(repair, raw);
    return repairTags(repair, raw);
}

std::string bytesOf(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string untaggedMp3() {
    return sample(
        {"untagged.mp3",
         "-f lavfi -i sine=frequency=440:duration=2 -ac 1 -map_metadata -1 -id3v2_version 0 -write_xing 0"});
}

// An old tag: 128 bytes at the end of the file.
std::string oldTag(std::string title, std::string artist, std::string album, char track) {
    title.resize(30);
    artist.resize(30);
    album.resize(30);
    std::string comment(30, '\0');
    comment[29] = track;
    return "TAG" + title + artist + album + "2001" + comment + '\x01';
}

// A new tag with one text frame of the given encoding byte.
std::string titleFrame(char encoding, const std::string& text) {
    const std::string body = encoding + text;
    const auto size = static_cast<char>(body.size());
    const std::string frame = std::string("TIT2") + '\0' + '\0' + '\0' + size + '\0' + '\0' + body;
    return std::string("ID3\x03") + '\0' + '\0' + '\0' + '\0' + '\0' + static_cast<char>(frame.size()) +
           frame;
}

class TagsOfFormat : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(TagsOfFormat, AreReadAsUtf8WithLengthAndTrack) {
    const Tags tags = tagsOf(toneFile(GetParam(), 3, "晨光", "Zoë", "Album", 7));
    EXPECT_EQ(tags.title, "晨光");
    EXPECT_EQ(tags.artist, "Zoë");
    EXPECT_EQ(tags.album, "Album");
    EXPECT_EQ(tags.track, 7);
    EXPECT_EQ(tags.seconds, 3);
    EXPECT_EQ(tags.disc, 0) << "of several, none is named";
}

INSTANTIATE_TEST_SUITE_P(Music, TagsOfFormat,
                         testing::Values("mp3", "flac", "ogg", "m4a", "opus", "wma", "wav"));

TEST(Tags, TrackOfTotalCountsAsTrack) {
    const auto file =
        sample({"track-of.mp3", "-f lavfi -i sine=duration=2 -metadata track=3/12 -metadata disc=2/2"});
    EXPECT_EQ(tagsOf(file).track, 3);
    EXPECT_EQ(tagsOf(file).disc, 2);
}

TEST(Tags, OldTagIsReadWhereThereIsNoNewOne) {
    TempFolder folder;
    writeFile(folder / "old.mp3", bytesOf(untaggedMp3()) + oldTag("Old title", "Old artist", "Old album", 4));
    const Tags tags = tagsOf(folder / "old.mp3");
    EXPECT_EQ(tags.title, "Old title");
    EXPECT_EQ(tags.artist, "Old artist");
    EXPECT_EQ(tags.album, "Old album");
    EXPECT_EQ(tags.track, 4);
}

TEST(Tags, OldTagFillsWhatTheNewOneLacks) {
    TempFolder folder;
    writeFile(folder / "both.mp3",
              titleFrame(0, "New title") + bytesOf(untaggedMp3()) + oldTag("Old title", "Old artist", "", 0));
    const Tags tags = tagsOf(folder / "both.mp3");
    EXPECT_EQ(tags.title, "New title");
    EXPECT_EQ(tags.artist, "Old artist");
    EXPECT_EQ(tags.album, "");
}

TEST(Tags, OldTagInAnotherCharacterSetIsRepaired) {
    TempFolder folder;
    // "月亮代表我的心" and "邓丽君" in GBK
    writeFile(folder / "gbk.mp3",
              bytesOf(untaggedMp3()) + oldTag("\xD4\xC2\xC1\xC1\xB4\xFA\xB1\xED\xCE\xD2\xB5\xC4\xD0\xC4",
                                              "\xB5\xCB\xC0\xF6\xBE\xFD", "", 1));
    const Tags tags = tagsOf(folder / "gbk.mp3");
    EXPECT_EQ(tags.title, "月亮代表我的心");
    EXPECT_EQ(tags.artist, "邓丽君");
}

TEST(Tags, CharacterCutInTheMiddleByAnOldTagIsLeftOut) {
    TempFolder folder;
    // Seventeen characters of two bytes after one of one byte: the thirtieth byte is half a character.
    std::string title = "1";
    for (int i = 0; i < 17; ++i) {
        title += "\xCE\xD2"; // 我
    }
    writeFile(folder / "cut.mp3", bytesOf(untaggedMp3()) + oldTag(title, "", "", 0));
    std::string expected = "1";
    for (int i = 0; i < 14; ++i) {
        expected += "我";
    }
    EXPECT_EQ(tagsOf(folder / "cut.mp3").title, expected);
}

TEST(Tags, TextsThatClaimToBeLatin1AreRepaired) {
    TempFolder folder;
    writeFile(folder / "cyrillic.mp3",
              titleFrame(0, "\xCA\xE0\xF2\xFE\xF8\xE0") + bytesOf(untaggedMp3())); // Катюша
    EXPECT_EQ(tagsOf(folder / "cyrillic.mp3").title, "Катюша");
    writeFile(folder / "utf8.mp3", titleFrame(0, "Überfahrt") + bytesOf(untaggedMp3()));
    EXPECT_EQ(tagsOf(folder / "utf8.mp3").title, "Überfahrt");
    writeFile(folder / "latin.mp3", titleFrame(0, "F\xFCr Elise") + bytesOf(untaggedMp3()));
    EXPECT_EQ(tagsOf(folder / "latin.mp3").title, "Für Elise");
}

TEST(Tags, BrokenTagsGiveNothingAndDoNoHarm) {
    TempFolder folder;
    const std::string good = bytesOf(toneFile("mp3", 3, "Title"));
    for (size_t length = 0; length < 200; length += 7) {
        writeFile(folder / "cut.mp3", good.substr(0, length));
        tagsOf(folder / "cut.mp3");
    }
    // A tag that claims to be longer than the file.
    writeFile(folder / "long.mp3", std::string("ID3\x03") + '\0' + '\0' + "\x7F\x7F\x7F\x7F" + "TIT2");
    EXPECT_EQ(tagsOf(folder / "long.mp3").title, "");
    for (const char* name :
         {"empty.mp3", "empty.flac", "empty.ogg", "empty.m4a", "empty.wav", "empty.wma", "empty.opus"}) {
        writeFile(folder / name, "");
        EXPECT_EQ(tagsOf(folder / name).seconds, 0) << name;
    }
    for (const char* name : {"text.mp3", "text.flac", "text.ogg", "text.m4a"}) {
        writeFile(folder / name, "this is no music, whatever its name says");
        EXPECT_EQ(tagsOf(folder / name).title, "") << name;
    }
}

TEST(Tags, OverlongTextsAreCutAndControlCharactersDropped) {
    const auto file =
        sample({"overlong.flac", "-f lavfi -i sine=duration=1 -metadata title=" + std::string(5000, 'x')});
    EXPECT_EQ(tagsOf(file).title, std::string(250, 'x'));
    TempFolder folder;
    writeFile(folder / "controls.mp3", titleFrame(0, "a\nb\tc ") + bytesOf(untaggedMp3()));
    EXPECT_EQ(tagsOf(folder / "controls.mp3").title, "abc");
}
