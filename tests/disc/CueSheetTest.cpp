#include "services/disc/image/CueSheet.h"

#include "tests/disc/CdImage.h"

#include <gtest/gtest.h>

using namespace zm::disc::image;
using namespace zm::test;

namespace {

constexpr const char* dataFile = "FILE \"d.bin\" BINARY\n";

DiscSheet good(const std::string& text) {
    const auto sheet = parseCueSheet(text);
    EXPECT_TRUE(sheet) << (sheet ? "" : sheet.error()) << "\n" << text;
    return sheet ? *sheet : DiscSheet{};
}

std::string errorIn(const std::string& text) {
    const auto sheet = parseCueSheet(text);
    return sheet ? "" : sheet.error();
}

// A track as the texts below expect it: file, first byte, byte behind the last one (0: the file's end).
struct Extent {
    size_t file;
    uint64_t begin;
    uint64_t end;
    bool operator==(const Extent&) const = default;
};
void PrintTo(const Extent& extent, std::ostream* out) {
    *out << extent.file << ": " << extent.begin << " to " << extent.end;
}

std::vector<Extent> extents(const DiscSheet& sheet) {
    std::vector<Extent> result;
    for (const auto& track : sheet.tracks) {
        const auto& piece = track.pieces.front();
        result.push_back({*piece.file, piece.begin, piece.end.value_or(0)});
    }
    return result;
}

} // namespace

TEST(CueSheet, TracksLastFromTheirFirstIndexToTheNextTracks) {
    const auto sheet = good(std::string(dataFile) + "TRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                                    "TRACK 02 AUDIO\nINDEX 00 00:02:00\nINDEX 01 00:02:10\n"
                                                    "TRACK 03 AUDIO\nINDEX 01 01:00:74\nINDEX 02 01:10:00\n");
    const uint64_t second = 160 * SectorBytes;
    const uint64_t third = (60 * 75 + 74) * SectorBytes;
    EXPECT_EQ(extents(sheet), (std::vector<Extent>{{0, 0, second}, {0, second, third}, {0, third, 0}}));
}

TEST(CueSheet, TextsOfDiscAndTracksAreKept) {
    const auto sheet =
        good("REM GENRE Pop\nCATALOG 0123456789012\nCDTEXTFILE \"x.cdt\"\nPERFORMER \"Ann\"\n"
             "TITLE \"The album\"\nSONGWRITER \"Bob\"\n" +
             std::string(dataFile) +
             "  TRACK 01 AUDIO\n    TITLE \"12\" Mix\"\n    PERFORMER \"Cid\"\n    ISRC ABCDE1234567\n"
             "    FLAGS DCP\n    SONGWRITER \"Dot\"\n    PREGAP 00:02:00\n    INDEX 01 00:00:00\n"
             "    POSTGAP 00:01:00\n");
    EXPECT_EQ(sheet.title, "The album");
    EXPECT_EQ(sheet.performer, "Ann");
    ASSERT_EQ(sheet.tracks.size(), 1u);
    EXPECT_EQ(sheet.tracks[0].title, "12\" Mix");
    EXPECT_EQ(sheet.tracks[0].performer, "Cid");
    EXPECT_EQ(sheet.tracks[0].pieces[0].begin, 0u) << "a pregap is silence that the file does not hold";
    EXPECT_EQ(sheet.files[0].name, "d.bin");
}

TEST(CueSheet, NumbersOfDiscAndRecordingsAreKeptWhereTheyAreSuch) {
    const std::string end = std::string(dataFile) + "TRACK 01 AUDIO\nISRC deabc1234567\nINDEX 01 00:00:00\n"
                                                    "TRACK 02 AUDIO\nISRC 12\nINDEX 01 00:01:00\n";
    const auto sheet = good("CATALOG 0724359532257\nCDTEXTFILE \"x.cdt\"\n" + end);
    EXPECT_EQ(sheet.catalogNumber, "0724359532257");
    EXPECT_EQ(sheet.cdTextFile, "x.cdt");
    EXPECT_EQ(sheet.tracks[0].isrc, "DEABC1234567");
    EXPECT_EQ(sheet.tracks[1].isrc, "");
    EXPECT_EQ(good("CATALOG 07243595\n" + end).catalogNumber, "");
}

TEST(CueSheet, SilenceThatIsNotInTheFileEndsTheTrackBefore) {
    const auto sheet = good(std::string(dataFile) + "TRACK 01 AUDIO\nPREGAP 00:02:00\nINDEX 01 00:00:00\n"
                                                    "POSTGAP 00:01:00\n"
                                                    "TRACK 02 AUDIO\nPREGAP 00:00:37\nINDEX 01 00:10:00\n");
    const auto& pieces = sheet.tracks[0].pieces;
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].end, 750u * SectorBytes);
    EXPECT_FALSE(pieces[1].file);
    EXPECT_EQ(pieces[1].end, (75u + 37u) * SectorBytes);
    EXPECT_EQ(sheet.tracks[1].pieces.size(), 1u);
    EXPECT_EQ(errorIn(std::string(dataFile) + "TRACK 01 AUDIO\nPREGAP 2\n"),
              "line 3: PREGAP 2: not a time mm:ss:ff");
    EXPECT_EQ(errorIn(std::string(dataFile) + "POSTGAP 00:02:00\n"),
              "line 2: POSTGAP 00:02:00: no TRACK before it");
}

TEST(CueSheet, WhatComesBeforeTheFirstTrackIsHiddenSoundUnlessItIsAPause) {
    const auto hidden = [](const std::string& zero, const std::string& one) {
        return good(std::string(dataFile) + "TRACK 01 AUDIO\nINDEX 00 " + zero + "\nINDEX 01 " + one +
                    "\nTRACK 02 AUDIO\nINDEX 00 01:00:00\nINDEX 01 02:00:00\n")
            .hidden;
    };
    EXPECT_FALSE(hidden("00:00:00", "00:03:74"));
    const auto found = hidden("00:00:10", "00:04:10");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->begin, 10u * SectorBytes);
    EXPECT_EQ(found->end, 310u * SectorBytes);
    EXPECT_FALSE(
        good(std::string(dataFile) + "TRACK 01 MODE1/2352\nINDEX 00 00:00:00\nINDEX 01 00:10:00\n").hidden);
}

TEST(CueSheet, FilesOfSoundAreOfSeveralTypes) {
    using enum SheetFileType;
    const std::pair<const char*, SheetFileType> rows[] = {{"BINARY", Sectors}, {"MOTOROLA", SwappedSectors},
                                                          {"WAVE", SoundFile}, {"aiff", SoundFile},
                                                          {"MP3", SoundFile},  {"FLAC", SoundFile}};
    for (const auto& [type, wanted] : rows) {
        const auto sheet = good("FILE \"a\" " + std::string(type) + "\nTRACK 1 AUDIO\nINDEX 1 0:0:0\n");
        EXPECT_EQ(sheet.files[0].type, wanted) << type;
    }
}

TEST(CueSheet, FormsOfTheTextMakeNoDifference) {
    const std::string plain = "FILE \"a b.bin\" BINARY\nTRACK 01 AUDIO\nTITLE \"One\"\nINDEX 01 00:00:00\n";
    const std::string forms[] = {
        plain,
        "\xEF\xBB\xBF" + plain,
        "FILE \"a b.bin\" BINARY\r\nTRACK 01 AUDIO\r\nTITLE \"One\"\r\nINDEX 01 00:00:00",
        "FILE \"a b.bin\" BINARY\rTRACK 01 AUDIO\rTITLE \"One\"\rINDEX 01 00:00:00\r",
        "\n\nfile a b.bin binary\n\ttrack 1 audio  \n\ttitle One\n\tindex 1 0:0:0\n\n",
        "FILE \"a b.bin\"\tBINARY\nTRACK\t01\tAUDIO\nTITLE \"One\nINDEX  01   00:00:00\n",
    };
    for (const auto& text : forms) {
        const auto sheet = good(text);
        ASSERT_EQ(sheet.tracks.size(), 1u) << text;
        EXPECT_EQ(sheet.files[0].rawName, "a b.bin") << text;
        EXPECT_EQ(sheet.tracks[0].title, "One") << text;
    }
}

TEST(CueSheet, EachTrackMayHaveAFileOfItsOwn) {
    const auto sheet = good("FILE \"1.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                            "TRACK 02 AUDIO\nINDEX 00 00:03:00\n"
                            "FILE \"2.bin\" BINARY\nINDEX 01 00:00:00\n"
                            "FILE \"3.bin\" BINARY\nTRACK 03 AUDIO\nINDEX 00 00:00:00\nINDEX 01 00:00:10\n");
    EXPECT_EQ(extents(sheet), (std::vector<Extent>{{0, 0, 0}, {1, 0, 0}, {2, 10 * SectorBytes, 0}}))
        << "the pause before track 2 belongs to track 1";
}

TEST(CueSheet, SectorsOfOtherSizesAreCountedInTheirOwnSize) {
    const auto sheet =
        good(std::string(dataFile) + "TRACK 01 MODE1/2048\nINDEX 01 00:00:00\n"
                                     "TRACK 02 AUDIO\nINDEX 00 00:01:00\nINDEX 01 00:01:05\n"
                                     "TRACK 03 MODE2/2336\nINDEX 00 00:02:00\nINDEX 01 00:02:02\n");
    const uint64_t pause = 75 * 2048;
    const uint64_t sound = pause + 5 * 2352;
    const uint64_t rest = pause + 75 * 2352;
    EXPECT_EQ(extents(sheet), (std::vector<Extent>{{0, 0, pause}, {0, sound, rest}, {0, rest + 2 * 2336, 0}}))
        << "a track ends where sectors of another format begin";
}

TEST(CueSheet, EveryKindOfTrackIsKnownByItsSize) {
    struct Row {
        const char* name;
        TrackFormat::Content content;
        uint32_t size;
        uint32_t header;
    };
    using enum TrackFormat::Content;
    const Row rows[] = {
        {"AUDIO", Audio, 2352, 0},       {"MODE1/2048", Mode1, 2048, 0}, {"MODE1/2352", Mode1, 2352, 16},
        {"MODE2/2048", Mode2, 2048, 0},  {"MODE2/2324", Mode2, 2324, 0}, {"MODE2/2336", Mode2, 2336, 8},
        {"MODE2/2352", Mode2, 2352, 24}, {"CDI/2336", Mode2, 2336, 8},   {"CDI/2352", Mode2, 2352, 24},
    };
    for (const auto& row : rows) {
        const auto sheet = good(std::string(dataFile) + "TRACK 1 " + row.name + "\nINDEX 1 0:0:0\n");
        ASSERT_EQ(sheet.tracks.size(), 1u) << row.name;
        EXPECT_EQ(sheet.tracks[0].format.content, row.content) << row.name;
        EXPECT_EQ(sheet.tracks[0].format.sectorSize, row.size) << row.name;
        EXPECT_EQ(sheet.tracks[0].format.headerSize, row.header) << row.name;
    }
}

TEST(CueSheet, TextsInOtherCharacterSetsAreRecognised) {
    // GBK; the name of the file stays as it is, too.
    const std::string name = "\xD2\xF4\xC0\xD6";
    const auto sheet =
        good("TITLE \"\xCE\xD2\xB5\xC4\xD2\xF4\xC0\xD6\"\nFILE \"" + name +
             ".bin\" BINARY\nTRACK 01 AUDIO\nTITLE \"\xB0\xAE\xB5\xC4\xB8\xE8\"\nINDEX 01 00:00:00\n");
    EXPECT_EQ(sheet.title, "我的音乐");
    EXPECT_EQ(sheet.tracks[0].title, "爱的歌");
    EXPECT_EQ(sheet.files[0].rawName, name + ".bin");
    EXPECT_EQ(sheet.files[0].name, "音乐.bin");
}

TEST(CueSheet, NinetyNineTracksAreTheMost) {
    std::string text = dataFile;
    for (int track = 1; track <= 99; ++track) {
        text += "TRACK " + std::to_string(track) + " AUDIO\nINDEX 01 " + cdTime(track) + "\n";
    }
    EXPECT_EQ(good(text).tracks.size(), 99u);
    EXPECT_EQ(errorIn(text + "TRACK 100 AUDIO\nINDEX 01 00:10:00\n"),
              "line 200: TRACK 100 AUDIO: not the number of a next track (at most 99)");
}

TEST(CueSheet, WhatIsWrongIsNamedWithItsLine) {
    struct Row {
        std::string text;
        const char* error;
    };
    const std::string head = dataFile;
    const std::string track = head + "TRACK 01 AUDIO\n";
    const std::string begun = track + "INDEX 01 00:10:00\n";
    const std::string second = begun + "TRACK 02 AUDIO\n";
    const Row rows[] = {
        {"", "names no track"},
        {head, "names no track"},
        {"REM only\n", "names no track"},
        {"hello\n", "line 1: hello: no line of a cue sheet"},
        {std::string("\0\xFF\x01garbage", 10),
         "line 1: \xEF\xBF\xBD\xEF\xBF\xBDgarbage: no line of a cue sheet"},
        {"\nFILE \"d.wav\" CDR\n",
         "line 2: FILE \"d.wav\" CDR: not of the type BINARY, MOTOROLA, WAVE, AIFF, MP3 or FLAC"},
        {"FILE \"d.bin\"\n",
         "line 1: FILE \"d.bin\": not of the type BINARY, MOTOROLA, WAVE, AIFF, MP3 or FLAC"},
        {"FILE\n", "line 1: FILE: not of the type BINARY, MOTOROLA, WAVE, AIFF, MP3 or FLAC"},
        {"FILE BINARY\n", "line 1: FILE BINARY: not of the type BINARY, MOTOROLA, WAVE, AIFF, MP3 or FLAC"},
        {"FILE \"\" BINARY\n", "line 1: FILE \"\" BINARY: no file name"},
        {"FILE \"d.bin BINARY\n", "line 1: FILE \"d.bin BINARY: no file name"},
        {"FILE \" BINARY\n", "line 1: FILE \" BINARY: no file name"},
        {"TRACK 01 AUDIO\n", "line 1: TRACK 01 AUDIO: no FILE before it"},
        {"INDEX 01 00:00:00\n", "line 1: INDEX 01 00:00:00: no TRACK before it"},
        {head + "TRACK\n", "line 2: TRACK: not the number of a next track (at most 99)"},
        {head + "TRACK x AUDIO\n", "line 2: TRACK x AUDIO: not the number of a next track (at most 99)"},
        {head + "TRACK 0 AUDIO\n", "line 2: TRACK 0 AUDIO: not the number of a next track (at most 99)"},
        {head + "TRACK -1 AUDIO\n", "line 2: TRACK -1 AUDIO: not the number of a next track (at most 99)"},
        {head + "TRACK 99999999999 AUDIO\n",
         "line 2: TRACK 99999999999 AUDIO: not the number of a next track (at most 99)"},
        {begun + "TRACK 01 AUDIO\n", "line 4: TRACK 01 AUDIO: not the number of a next track (at most 99)"},
        {head + "TRACK 01\n", "line 2: TRACK 01: unknown kind of track"},
        {head + "TRACK 01 MODE3/2352\n", "line 2: TRACK 01 MODE3/2352: unknown kind of track"},
        {track, "line 2: TRACK 1: has no INDEX 01"},
        {track + "INDEX 00 00:00:00\nTRACK 02 AUDIO\nINDEX 01 00:01:00\n",
         "line 2: TRACK 1: has no INDEX 01"},
        {track + "INDEX\n", "line 3: INDEX: not a number and a time mm:ss:ff"},
        {track + "INDEX 01\n", "line 3: INDEX 01: not a number and a time mm:ss:ff"},
        {track + "INDEX 01 00:00\n", "line 3: INDEX 01 00:00: not a number and a time mm:ss:ff"},
        {track + "INDEX 01 00:60:00\n", "line 3: INDEX 01 00:60:00: not a number and a time mm:ss:ff"},
        {track + "INDEX 01 00:00:75\n", "line 3: INDEX 01 00:00:75: not a number and a time mm:ss:ff"},
        {track + "INDEX 01 100:00:00\n", "line 3: INDEX 01 100:00:00: not a number and a time mm:ss:ff"},
        {track + "INDEX 01 00:00:-1\n", "line 3: INDEX 01 00:00:-1: not a number and a time mm:ss:ff"},
        {track + "INDEX 01 00:00:00:00\n", "line 3: INDEX 01 00:00:00:00: not a number and a time mm:ss:ff"},
        {track + "INDEX 100 00:00:00\n", "line 3: INDEX 100 00:00:00: not a number and a time mm:ss:ff"},
        {track + "INDEX 02 00:00:00\n", "line 3: INDEX 02 00:00:00: not the next index of its track"},
        {begun + "INDEX 01 00:20:00\n", "line 4: INDEX 01 00:20:00: not the next index of its track"},
        {begun + "INDEX 00 00:20:00\n", "line 4: INDEX 00 00:20:00: not the next index of its track"},
        {begun + "INDEX 02 00:09:74\n", "line 4: INDEX 02 00:09:74: goes backwards"},
        {second + "INDEX 01 00:09:00\n", "line 5: INDEX 01 00:09:00: goes backwards"},
        {second + "INDEX 01 00:10:00\n", "line 5: INDEX 01 00:10:00: leaves nothing of the track before"},
        {begun + "TRACK 02 MODE1/2352\nINDEX 00 00:10:00\n",
         "line 5: INDEX 00 00:10:00: leaves nothing of the track before"},
        {second + "INDEX 00 00:09:00\n", "line 5: INDEX 00 00:09:00: goes backwards"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(errorIn(row.text), row.error) << row.text;
    }
}

TEST(CueSheet, SizesAreBounded) {
    EXPECT_EQ(errorIn("REM\nREM " + std::string(1000, 'x') + "\n"), "line 2: longer than 1000 bytes");
    EXPECT_EQ(errorIn(std::string(MaxSheetBytes + 1, '\n')), "longer than 262144 bytes");
    std::string files;
    for (int i = 0; i < 99; ++i) {
        files += dataFile;
    }
    EXPECT_EQ(errorIn(files), "names no track");
    EXPECT_EQ(errorIn(files + dataFile), "line 100: FILE \"d.bin\" BINARY: more than 99 files");
    EXPECT_EQ(errorIn(std::string(500, 'x') + "\n"),
              "line 1: " + std::string(60, 'x') + ": no line of a cue sheet");
}
