// What the text of a TOC file makes of a disc's tracks.
#include "services/disc/image/TocFile.h"

#include <gtest/gtest.h>

using namespace zm::disc::image;

namespace {

DiscSheet tocOf(const std::string& text) {
    const auto sheet = parseTocFile(text);
    EXPECT_TRUE(sheet) << (sheet ? "" : sheet.error());
    return sheet ? *sheet : DiscSheet{};
}

std::string tocErrorOf(const std::string& text) {
    const auto sheet = parseTocFile(text);
    return sheet ? "none" : sheet.error();
}

constexpr uint64_t TocSecond = SectorsPerSecond * SoundSectorBytes;

} // namespace

TEST(TocFile, APlaceInTheFileIsCountedFromItsSign) {
    const auto sheet = tocOf("CD_DA\nTRACK AUDIO\nFILE \"d.bin\" SWAP #2352 00:00:01 00:01:00\n");
    ASSERT_EQ(sheet.tracks.size(), 1u);
    ASSERT_EQ(sheet.tracks[0].pieces.size(), 1u);
    EXPECT_EQ(sheet.tracks[0].pieces[0].begin, 2u * 2352);
    EXPECT_EQ(sheet.tracks[0].pieces[0].end, 2u * 2352 + TocSecond);
    EXPECT_EQ(tocErrorOf("CD_DA\nTRACK AUDIO\nFILE \"d.bin\" #12x 0\n"),
              "line 3: #12x: not a place in the file");
    EXPECT_EQ(tocErrorOf("CD_DA\nTRACK AUDIO\n\nFILE \"d.bin\" # 0\n"), "line 4: #: not a place in the file");
}

TEST(TocFile, APregapIsSilenceAtTheEndOfTheTrackBefore) {
    const std::string before = "CD_DA\nTRACK AUDIO\nFILE \"d.bin\" SWAP 0 00:01:00\n";
    const std::string after = "FILE \"d.bin\" SWAP 00:01:00 00:01:00\n";
    const auto sheet = tocOf(before + "TRACK AUDIO\nPREGAP 00:02:00\n" + after);
    ASSERT_EQ(sheet.tracks.size(), 2u);
    ASSERT_EQ(sheet.tracks[0].pieces.size(), 2u);
    EXPECT_FALSE(sheet.tracks[0].pieces[1].file) << "silence";
    EXPECT_EQ(sheet.tracks[0].pieces[1].end, 2 * TocSecond);
    EXPECT_EQ(sheet.tracks[1].pieces.size(), 1u);
    EXPECT_EQ(tocOf(before + "TRACK AUDIO\nPREGAP 00:00:00\n" + after).tracks.at(0).pieces.size(), 1u);
    EXPECT_EQ(tocOf("CD_DA\nTRACK AUDIO\nPREGAP 00:02:00\n" + after).tracks.at(0).pieces.size(), 1u)
        << "nothing is before it";
    EXPECT_EQ(tocErrorOf(before + "TRACK AUDIO\nPREGAP\n" + after), "line 5: PREGAP: no time behind it");
}

TEST(TocFile, WhatStandsBeforeTheStartBelongsToTheTrackBefore) {
    const auto sheet =
        tocOf("CD_DA\nTRACK AUDIO\nFILE \"a.bin\" SWAP 0 00:01:00\n"
              "TRACK AUDIO\nSILENCE 00:01:00\nFILE \"b.bin\" SWAP 0 00:03:00\nSTART 00:02:00\n");
    ASSERT_EQ(sheet.tracks.size(), 2u);
    const auto& pause = sheet.tracks[0].pieces;
    ASSERT_EQ(pause.size(), 3u);
    EXPECT_FALSE(pause[1].file);
    EXPECT_EQ(pause[2].file, 1u);
    EXPECT_EQ(pause[2].begin, 0u);
    EXPECT_EQ(pause[2].end, TocSecond);
    const auto& track = sheet.tracks[1].pieces;
    ASSERT_EQ(track.size(), 1u);
    EXPECT_EQ(track[0].begin, TocSecond);
    EXPECT_EQ(track[0].end, 3 * TocSecond);
}

TEST(TocFile, APauseBetweenDataAndSoundIsNobodys) {
    const auto sheet = tocOf("CD_ROM\nTRACK MODE1\nDATAFILE \"a.bin\" 20480\n"
                             "TRACK AUDIO\nSILENCE 00:02:00\nSTART\nFILE \"b.bin\" SWAP 0 00:03:00\n");
    ASSERT_EQ(sheet.tracks.size(), 2u);
    EXPECT_EQ(sheet.tracks[0].pieces.size(), 1u);
    EXPECT_EQ(sheet.tracks[1].pieces.size(), 1u);
}

TEST(TocFile, SubChannelsBelongToModesThatHaveRoomForThem) {
    const auto format = [](const std::string& mode) {
        return std::string(tocOf("CD_DA\nTRACK " + mode + "\nDATAFILE \"d.bin\"\n").tracks.at(0).format.name);
    };
    EXPECT_EQ(format("AUDIO"), "AUDIO");
    EXPECT_EQ(format("AUDIO RW_RAW"), "CDG");
    EXPECT_EQ(format("MODE1"), "MODE1/2048");
    EXPECT_EQ(format("MODE1_RAW RW"), "MODE1/2448");
    EXPECT_EQ(format("MODE2_FORM1"), "MODE2/2048");
    EXPECT_EQ(tocErrorOf("CD_DA\nTRACK MODE1 RW\nDATAFILE \"d.bin\"\n"),
              "line 2: TRACK: sectors of this mode with sub-channels are not read");
}
