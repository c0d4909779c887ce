#include "services/disc/image/DiscSheet.h"
#include "services/disc/library/Scanner.h"
#include "services/disc/medium/OpenMedium.h"
#include "tests/disc/CdImage.h"
#include "tests/disc/GoodMedium.h"
#include "tests/disc/Samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

using namespace zm::disc::image;
using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace zm::test;
using testing::StartsWith;

namespace {

constexpr size_t WavHeaderBytes = 44;

Contents contentsOf(const std::string& path) {
    ScanProgress progress;
    auto contents = scan(*openGood(path), progress);
    EXPECT_TRUE(contents);
    return contents ? *contents : Contents{};
}

// The whole of a track as a decoder reads it, in pieces of a size that fits nothing.
std::string readTrack(Medium& medium, const std::string& name) {
    constexpr size_t Piece = 10007;
    auto reader = medium.open(name);
    EXPECT_TRUE(reader) << (reader ? "" : reader.error());
    std::string bytes;
    std::string piece(Piece, '\0');
    for (;;) {
        const auto count = (*reader)->readAt(bytes.size(), piece);
        EXPECT_TRUE(count);
        if (!count || *count == 0) {
            return bytes;
        }
        bytes.append(piece, 0, *count);
    }
}

std::string errorOf(const std::string& path) {
    const auto medium = openMedium(path);
    return medium ? "" : medium.error();
}

} // namespace

TEST(AudioCd, ItsTracksAreTheItemsOfADiscWithoutFolders) {
    TempFolder folder;
    const auto cue = writeAudioCd(folder.path().string(), {{3, 440, "One", ""}, {2, 550, "", "Ann"}});
    const auto contents = contentsOf(cue);
    EXPECT_EQ(contents.trackType, MediaType::AudioCd);
    EXPECT_EQ(contents.mixedMask(), 0) << "no kinds of files";
    EXPECT_FALSE(contents.hasFolders());
    ASSERT_EQ(contents.folders.size(), 1u);
    EXPECT_EQ(contents.folders[0].name, "Demo CD");
    EXPECT_EQ(contents.folders[0].counts[kindIndex(MediaKind::Music)].files, 2);
    const auto& items = contents.of(MediaKind::Music);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].fileId, 1);
    EXPECT_EQ(items[0].name, "One");
    EXPECT_EQ(items[0].tags.title, "One");
    EXPECT_EQ(items[0].tags.artist, "The Tones") << "the disc's where the track has none";
    EXPECT_EQ(items[0].tags.album, "Demo CD");
    EXPECT_EQ(items[0].tags.seconds, 3);
    EXPECT_EQ(items[1].fileId, 2);
    EXPECT_EQ(items[1].name, "Track 02") << "lists need a name";
    EXPECT_EQ(items[1].tags.title, "");
    EXPECT_EQ(items[1].tags.artist, "Ann");
}

TEST(AudioCd, ATrackIsItsSoundBehindTheHeaderOfAWavFile) {
    TempFolder folder;
    const auto medium = openGood(writeAudioCd(folder.path().string(), {{1, 440}, {2, 550}}));
    const std::string track = readTrack(*medium, "02.wav");
    EXPECT_EQ(track.substr(WavHeaderBytes), cdSound(2, 550));
    const std::string header(track, 0, WavHeaderBytes);
    EXPECT_EQ(header,
              std::string("RIFF\x44\x62\x05\0WAVEfmt \x10\0\0\0\1\0\2\0\x44\xAC\0\0\x10\xB1\2\0\4\0\x10\0data"
                          "\x20\x62\x05\0",
                          WavHeaderBytes));
}

TEST(AudioCd, EachTrackMayBeAFileOfItsOwnAlsoInAFolderBelow) {
    TempFolder folder;
    writeFile(folder / "1.bin", cdSound(1, 440));
    writeFile(folder / "below/2.bin", cdSound(1, 550));
    writeFile(folder / "disc.CUE", "FILE \"1.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                   "FILE below/2.bin BINARY\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n");
    const auto medium = openGood(folder / "disc.CUE");
    EXPECT_EQ(medium->label(), "disc");
    EXPECT_EQ(readTrack(*medium, "01.wav").substr(WavHeaderBytes), cdSound(1, 440));
    EXPECT_EQ(readTrack(*medium, "02.wav").substr(WavHeaderBytes), cdSound(1, 550));
}

TEST(AudioCd, AFileMayDifferInTheCaseOfItsLettersIfOneFits) {
    TempFolder folder;
    writeFile(folder / "Disc.BIN", cdSound(1, 440));
    writeFile(folder / "disc.cue", "FILE \"DISC.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
    EXPECT_EQ(readTrack(*openGood(folder / "disc.cue"), "01.wav").substr(WavHeaderBytes), cdSound(1, 440));
    writeFile(folder / "disc.BIN", cdSound(1, 550));
    const auto several = openMedium(folder / "disc.cue");
    ASSERT_FALSE(several);
    EXPECT_THAT(several.error(), testing::HasSubstr("DISC.bin: several files are called so"));
    writeFile(folder / "DISC.bin", cdSound(1, 660));
    EXPECT_EQ(readTrack(*openGood(folder / "disc.cue"), "01.wav").substr(WavHeaderBytes), cdSound(1, 660))
        << "the exact name counts first";
}

TEST(AudioCd, APathFromAnotherSystemMeansTheFileBesideTheCueSheet) {
    for (const char* name : {"C:\\Discs\\d.bin", "/home/somebody/d.bin", "d.bin"}) {
        TempFolder folder;
        writeFile(folder / "d.bin", cdSound(1, 440));
        writeFile(folder / "d.cue",
                  std::string("FILE \"") + name + "\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
        EXPECT_EQ(contentsOf(folder / "d.cue").of(MediaKind::Music).size(), 1u) << name;
    }
}

TEST(AudioCd, AFileWhoseNameWasWrittenInAnotherCharacterSetIsFound) {
    TempFolder folder;
    writeFile(folder / "音乐.bin", cdSound(1, 440));
    writeFile(folder / "d.cue", "FILE \"\xD2\xF4\xC0\xD6.bin\" BINARY\nTRACK 01 AUDIO\nTITLE "
                                "\"\xB0\xAE\xB5\xC4\xB8\xE8\"\nINDEX 01 00:00:00\n");
    const auto contents = contentsOf(folder / "d.cue");
    ASSERT_EQ(contents.of(MediaKind::Music).size(), 1u);
    EXPECT_EQ(contents.of(MediaKind::Music)[0].tags.title, "爱的歌");
}

TEST(AudioCd, TheSectorsLeadToTheCueSheetOfTheSameName) {
    TempFolder folder;
    writeAudioCd(folder.path().string(), {{1, 440, "One"}});
    EXPECT_EQ(contentsOf(folder / "disc.bin").of(MediaKind::Music)[0].name, "One");
    std::filesystem::remove(folder / "disc.cue");
    EXPECT_THAT(errorOf(folder / "disc.bin"), StartsWith(folder / "disc.bin"))
        << "no cue sheet, no file system";
}

TEST(AudioCd, DataTracksAreLeftOut) {
    TempFolder folder;
    const std::string data(size_t{75} * SectorBytes, '\x55');
    writeFile(folder / "d.bin", data + cdSound(1, 440) + cdSound(1, 550) + data);
    writeFile(folder / "d.cue", "FILE d.bin BINARY\nTRACK 01 MODE1/2352\nINDEX 01 00:00:00\n"
                                "TRACK 02 AUDIO\nTITLE One\nINDEX 01 00:01:00\n"
                                "TRACK 03 AUDIO\nTITLE Two\nINDEX 01 00:02:00\n"
                                "TRACK 04 MODE1/2352\nINDEX 00 00:03:00\nINDEX 01 00:03:10\n");
    const auto items = contentsOf(folder / "d.cue").of(MediaKind::Music);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].fileId, 1) << "what can be played counts from 1";
    EXPECT_EQ(items[0].name, "One");
    const auto medium = openGood(folder / "d.cue");
    EXPECT_EQ(readTrack(*medium, "02.wav").substr(WavHeaderBytes), cdSound(1, 550))
        << "ends where the data begin";
}

TEST(AudioCd, AFileThatEndsEarlyCutsItsLastTracks) {
    TempFolder folder;
    const auto cue = writeAudioCd(folder.path().string(), {{1, 440}, {2, 550}, {1, 660}});
    // In the middle of a sector of track 2.
    std::filesystem::resize_file(folder / "disc.bin", size_t{100} * SectorBytes + 1000);
    const auto contents = contentsOf(cue);
    ASSERT_EQ(contents.of(MediaKind::Music).size(), 3u);
    const auto medium = openGood(cue);
    EXPECT_EQ(readTrack(*medium, "02.wav").size(), WavHeaderBytes + size_t{25} * SectorBytes);
    const auto third = medium->open("03.wav");
    ASSERT_FALSE(third);
    EXPECT_EQ(third.error(), cue + ": 03.wav: " + (folder / "disc.bin") + " ends before it");
}

TEST(AudioCd, NoTrackIsLongerThanADisc) {
    TempFolder folder;
    const auto cue = writeAudioCd(folder.path().string(), {{1, 440}});
    std::filesystem::resize_file(folder / "disc.bin", uint64_t{5} << 30);
    EXPECT_EQ(contentsOf(cue).of(MediaKind::Music)[0].tags.seconds, 100 * 60);
}

TEST(AudioCd, WhatIsWrongIsNamed) {
    TempFolder folder;
    writeFile(folder / "d.bin", cdSound(1, 440));
    std::filesystem::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    const struct {
        const char* file;
        const char* error;
    } rows[] = {
        {"missing.bin", ": missing.bin: no such file"},
        {"folder", ": folder: no plain file"},
        {"fifo", ": fifo: no plain file"},
        {"../d.bin", ": ../d.bin: lies outside the cue sheet's folder"},
        {"folder/../../d.bin", ": folder/../../d.bin: lies outside the cue sheet's folder"},
        {"/etc/", ": /etc/: lies outside the cue sheet's folder"},
    };
    for (const auto& row : rows) {
        const std::string cue = folder / "d.cue";
        writeFile(cue, std::string("FILE ") + row.file + " BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
        EXPECT_EQ(errorOf(cue), cue + row.error);
    }
    writeFile(folder / "d.cue", "FILE d.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:77:00\n");
    EXPECT_EQ(errorOf(folder / "d.cue"),
              (folder / "d.cue") + ": line 3: INDEX 01 00:77:00: not a number and a time mm:ss:ff");
    writeFile(folder / "d.cue", std::string(MaxSheetBytes * 2, '\n'));
    EXPECT_EQ(errorOf(folder / "d.cue"), (folder / "d.cue") + ": longer than 262144 bytes");
}

TEST(AudioCd, OnlyItsTracksCanBeOpened) {
    TempFolder folder;
    const auto medium = openGood(writeAudioCd(folder.path().string(), {{1, 440}, {1, 550}}));
    const auto entries = medium->list("");
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries->size(), 2u);
    EXPECT_EQ((*entries)[1].rawName, "02.wav");
    EXPECT_FALSE(medium->list("folder"));
    EXPECT_FALSE(medium->open("03.wav"));
    EXPECT_FALSE(medium->open("disc.bin"));
}
