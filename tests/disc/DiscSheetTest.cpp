#include "services/disc/image/CcdSheet.h"
#include "services/disc/image/TocFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace zm::disc::image;
using testing::ElementsAre;
using testing::HasSubstr;

std::string sheetLines(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

std::string told(const DiscSheet& sheet, const SheetPiece& piece) {
    return (piece.file ? sheet.files.at(*piece.file).name : "silence") + " " + std::to_string(piece.begin) +
           "-" + (piece.end ? std::to_string(*piece.end) : "");
}

/** Each track's format and pieces: "AUDIO: a.bin 0-2352, silence 0-4704". */
std::vector<std::string> tracksOf(const zm::Result<DiscSheet>& sheet) {
    std::vector<std::string> found;
    EXPECT_TRUE(sheet) << (sheet ? "" : sheet.error());
    for (const auto& track : sheet ? sheet->tracks : std::vector<SheetTrack>{}) {
        std::string text(track.format.name);
        for (const auto& piece : track.pieces) {
            text += (&piece == &track.pieces.front() ? ": " : ", ") + told(*sheet, piece);
        }
        found.push_back(text);
    }
    return found;
}

std::string tocError(const std::string& text) {
    const auto sheet = parseTocFile(text);
    return sheet ? "" : sheet.error();
}

std::string ccdError(const std::string& text) {
    const auto sheet = parseCcdSheet(text, "d.img");
    return sheet ? "" : sheet.error();
}

/** An [Entry] of a .ccd file. */
std::string entry(int session, int point, int begin, int control = 0) {
    return "[Entry]\nSession=" + std::to_string(session) + "\nPoint=" + std::to_string(point) +
           "\nControl=" + std::to_string(control) + "\nPLBA=" + std::to_string(begin) + "\n";
}
constexpr int LeadOut = 0xA2;

} // namespace

TEST(TocFiles, WhatIsWrongIsNamedWithItsLine) {
    const struct {
        std::string text;
        const char* error;
    } rows[] = {
        {"CD_DA\nCATALOG 12\n", "line 2: CATALOG: no number behind it"},
        {"CD_DA\nCATALOG", "line 2: CATALOG: no number behind it"},
        {"TRACK AUDIO\nISRC 12\n", "line 2: ISRC: no number behind it"},
        {"CD_TEXT TITLE\n", "line 1: CD_TEXT: no { behind it"},
        {"TRACK AUDIO\nTRACK AUDIO\nFILE \"a\" 0\n", "line 1: TRACK: has no sound and no data"},
        {"CD_DA\nTRACK", "line 2: TRACK: unknown kind of track"},
        {sheetLines("TRACK AUDIO\nFILE \"a\" 0\n", 100), "line 199: TRACK: more than 99 tracks"},
        {"\"CD_DA\"\n", "line 1: CD_DA: does not belong there"},
        {"TRACK AUDIO\nFILE 0\n", "line 2: FILE: no file name"},
        {"TRACK AUDIO\nFILE \"\" 0\n", "line 2: FILE: no file name"},
        {"TRACK AUDIO\nFILE \"a\" #x\n", "line 2: #x: not a place in the file"},
        {"TRACK AUDIO\nFILE \"a\" #1x 0\n", "line 2: #1x: not a place in the file"},
        {"TRACK AUDIO\nFILE \"a\" #9999999999 0\n", "line 2: #9999999999: not a place in the file"},
        {"TRACK MODE1\nDATAFILE 0\n", "line 2: DATAFILE: no file name"},
        {"TRACK MODE1\nDATAFILE \"a\" #x\n", "line 2: #x: not a place in the file"},
        {"TRACK AUDIO\nSILENCE\n", "line 2: SILENCE: no length behind it"},
        {"TRACK AUDIO\nSILENCE \"1\"\n", "line 2: SILENCE: no length behind it"},
        {"TRACK AUDIO\nSILENCE 1x\n", "line 2: SILENCE: no length behind it"},
        {"TRACK AUDIO\nSILENCE 99999999999\n", "line 2: SILENCE: no length behind it"},
        {"TRACK AUDIO\nSILENCE 1000000000\n", "line 2: SILENCE: no length behind it"},
        {"TRACK AUDIO\nPREGAP\n", "line 2: PREGAP: no time behind it"},
        {"TRACK AUDIO\nINDEX AUDIO\n", "line 2: INDEX: no time behind it"},
        {"TRACK AUDIO\nFILE \"a\" 0\nFILE \"b\" 0\n", "line 3: FILE: the piece before it has no length"},
        {"TRACK AUDIO\n" + sheetLines("SILENCE 00:00:01\n", 501), "line 502: SILENCE: more than 500 pieces"},
        {std::string(MaxSheetBytes + 1, ' '), "longer than 262144 bytes"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(tocError(row.text), row.error) << row.text.substr(0, 60);
    }
}

TEST(TocFiles, ADiscIsMadeOfNinetyNineFilesAtMost) {
    std::string text = "TRACK AUDIO\n";
    for (int file = 1; file <= 99; ++file) {
        text += "FILE \"" + std::to_string(file) + "\" 0 00:00:01\n";
    }
    EXPECT_EQ(tocError(text), "");
    EXPECT_EQ(tocError(text + "FILE \"1\" 00:00:01 00:00:01\n"), "") << "one of them once more";
    EXPECT_EQ(tocError(text + "FILE \"100\" 0 00:00:01\n"), "line 101: FILE: more than 99 files");
}

TEST(TocFiles, PiecesLieWhereTheTimesAndNumbersSay) {
    EXPECT_THAT(tracksOf(parseTocFile("TRACK AUDIO\nFILE \"a\" #44 0 00:00:01\nFILE \"a\" 588 1176\n")),
                ElementsAre("AUDIO: a 44-2396, a 2352-7056"));
    EXPECT_THAT(tracksOf(parseTocFile("TRACK MODE1\nDATAFILE \"a\" #2048 00:00:02\nDATAFILE \"a\" 100\n")),
                ElementsAre("MODE1/2048: a 2048-6144, a 0-100"));
    EXPECT_THAT(tracksOf(parseTocFile("TRACK MODE2_RAW\nDATAFILE \"a\"\n")), ElementsAre("MODE2/2352: a 0-"));
    EXPECT_THAT(tracksOf(parseTocFile("TRACK AUDIO RW_RAW\nFILE \"a\" SWAP 0 1176\n")),
                ElementsAre("CDG: a 0-4896"))
        << "samples count no sub-channels";
}

TEST(TocFiles, SilenceMayNameItsModeAndNoneIsNoPiece) {
    EXPECT_THAT(tracksOf(parseTocFile("TRACK MODE1\nZERO MODE1 RW 00:00:01\nZERO MODE1 RW_RAW 0\n"
                                      "DATAFILE \"a\"\n")),
                ElementsAre("MODE1/2048: silence 0-2048, a 0-"));
}

TEST(TocFiles, AFilesEndingTellsWhetherItHasAHeader) {
    for (const char* name : {"a.wav", "a.MP3", "a.flac", "a.Aiff", "a.aif"}) {
        const auto sheet = parseTocFile("TRACK AUDIO\nAUDIOFILE \"" + std::string(name) + "\" 0\n");
        ASSERT_TRUE(sheet);
        EXPECT_EQ(sheet->files.at(0).type, SheetFileType::SoundFile) << name;
    }
    const auto both = parseTocFile("TRACK AUDIO\nFILE \"a\" SWAP 0 1\nFILE \"a\" 0 1\n");
    ASSERT_TRUE(both);
    ASSERT_EQ(both->files.size(), 2u) << "the same bytes, read in two ways";
    EXPECT_EQ(both->files[0].type, SheetFileType::Sectors);
    EXPECT_EQ(both->files[1].type, SheetFileType::SwappedSectors);
}

TEST(TocFiles, WhatStandsBeforeTheStartEndsTheTrackBefore) {
    const std::string first = "TRACK AUDIO\nFILE \"a\" 0 00:00:02\n";
    EXPECT_THAT(tracksOf(parseTocFile(first + "TRACK AUDIO\nFILE \"a\" 00:00:02 00:00:01\nSTART\n"
                                              "FILE \"b\" 0 00:00:01\n")),
                ElementsAre("AUDIO: a 0-7056", "AUDIO: b 0-2352"));
    EXPECT_THAT(tracksOf(parseTocFile(first + "TRACK AUDIO\nPREGAP 00:00:01\nFILE \"b\" 0 00:00:01\n")),
                ElementsAre("AUDIO: a 0-4704, silence 0-2352", "AUDIO: b 0-2352"));
    EXPECT_THAT(tracksOf(parseTocFile(first + "TRACK AUDIO\nPREGAP 00:00:00\nFILE \"b\" 0 00:00:01\n")),
                ElementsAre("AUDIO: a 0-4704", "AUDIO: b 0-2352"));
    EXPECT_THAT(tracksOf(parseTocFile("TRACK AUDIO\nFILE \"a\" 0\nTRACK AUDIO\nPREGAP 00:00:01\n"
                                      "FILE \"b\" 0 00:00:01\n")),
                ElementsAre("AUDIO: a 0-", "AUDIO: b 0-2352"))
        << "a file to its end has no room behind it";
    EXPECT_THAT(tracksOf(parseTocFile("TRACK MODE1\nDATAFILE \"a\"\nTRACK AUDIO\nPREGAP 00:00:01\n"
                                      "FILE \"b\" 0 00:00:01\n")),
                ElementsAre("MODE1/2048: a 0-", "AUDIO: b 0-2352"))
        << "no sound behind files";
}

TEST(TocFiles, SoundBeforeTheFirstStartIsAHiddenTrackWhenItIsLong) {
    const auto hidden = parseTocFile("TRACK AUDIO\nFILE \"a\" 0 00:10:00\nSTART 00:04:00\n");
    EXPECT_THAT(tracksOf(hidden), ElementsAre("AUDIO: a 705600-1764000"));
    ASSERT_TRUE(hidden && hidden->hidden);
    EXPECT_EQ(told(*hidden, *hidden->hidden), "a 0-705600");
    for (const char* pause : {"FILE \"a\" 0 00:10:00\nSTART 00:03:74\n",
                              "SILENCE 00:05:00\nFILE \"a\" 0 00:10:00\nSTART 00:05:00\n"}) {
        const auto sheet = parseTocFile("TRACK AUDIO\n" + std::string(pause));
        EXPECT_TRUE(sheet && !sheet->hidden) << pause;
    }
}

TEST(TocFiles, NumbersThatAreNoneAreLeftOut) {
    const auto sheet =
        parseTocFile("CATALOG \"12\"\nTRACK AUDIO\nISRC \"DE-1\"\nFILE \"a\" 0\nEND\nTWO_CHANNEL_AUDIO\n");
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->catalogNumber, "");
    EXPECT_EQ(sheet->tracks.at(0).isrc, "");
}

TEST(CcdFiles, WhatIsWrongIsNamedWithItsPlace) {
    const std::string end = entry(1, LeadOut, 100);
    const struct {
        std::string text;
        const char* error;
    } rows[] = {
        {"[Entry 0]\nPoint=\n", "line 2: Point=: not a number"},
        {"[Entry 0]\nPoint=1x\n", "line 2: Point=1x: not a number"},
        {"[Entry 0]\nPoint=--1\n", "line 2: Point=--1: not a number"},
        {"[Entry 0]\nPoint=0XFFFFFFFFF\n", "line 2: Point=0XFFFFFFFFF: not a number"},
        {sheetLines("[Entry]\n", 301), "line 301: [Entry]: more than 300 entries"},
        {"[TRACK one]\n", "line 1: [TRACK one]: not a track from 1 to 99"},
        {"[TRACK 1]\nMODE=a\n", "line 2: MODE=a: not a number"},
        {"[TRACK 1]\nINDEX 0=a\n", "line 2: INDEX 0=a: not a number"},
        {"[CDText]\nEntry 0=80 00\n", "line 2: Entry 0=80 00: not the bytes of a text"},
        {"[CDText]\nEntry 0=100\n", "line 2: Entry 0=100: not the bytes of a text"},
        {"[CDText]\nEntry 0=-1\n", "line 2: Entry 0=-1: not the bytes of a text"},
        {"[CDText]\nEntry 0=8x\n", "line 2: Entry 0=8x: not the bytes of a text"},
        {"[TRACK 1]\nMODE=3\n" + entry(1, 1, 0) + end, "track 1: unknown mode 3"},
        {"[TRACK 1]\nMODE=-1\n" + entry(1, 1, 0) + end, "track 1: unknown mode -1"},
        {entry(1, 1, 0) + entry(1, 1, 50) + end, "track 1: stands there twice"},
        {entry(1, 1, 0) + entry(1, LeadOut, 450001), "track 1: ends before it begins, or lies nowhere"},
        {entry(1, 1, 0) + end + entry(2, 2, 50), "track 2: its session has no end"},
        {entry(1, 1, -1) + end, "track 1: ends before it begins, or lies nowhere"},
        {entry(1, 0xA0, 0) + entry(1, 0, 0) + entry(1, 100, 0) + end, "names no track"},
        {std::string(MaxSheetBytes + 1, ' '), "longer than 262144 bytes"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ccdError(row.text), row.error) << row.text.substr(0, 60);
    }
}

TEST(CcdFiles, SessionsFollowEachOtherInTheImage) {
    const auto sheet = parseCcdSheet("; a comment\n\n" + entry(1, 1, 0) + entry(1, LeadOut, 100) +
                                         entry(2, 2, 11500, 4) + entry(2, LeadOut, 11600),
                                     "d.img");
    EXPECT_THAT(tracksOf(sheet), ElementsAre("AUDIO: d.img 0-235200", "MODE1/2352: d.img 235200-470400"));
}

TEST(CcdFiles, AModeThatIsNamedCountsMoreThanTheControlBits) {
    const std::string disc = entry(1, 1, 0, 4) + entry(1, LeadOut, 10);
    EXPECT_THAT(tracksOf(parseCcdSheet(disc, "d.img")), ElementsAre("MODE1/2352: d.img 0-23520"));
    EXPECT_THAT(tracksOf(parseCcdSheet("[TRACK 1]\nMODE=2\n" + disc, "d.img")),
                ElementsAre("MODE2/2352: d.img 0-23520"));
}

TEST(CcdFiles, WhatLiesBeforeTheFirstTrackIsHiddenAndAPauseIsNoFile) {
    const auto hidden = parseCcdSheet(entry(1, 1, 300) + entry(1, LeadOut, 400), "d.img");
    EXPECT_THAT(tracksOf(hidden), ElementsAre("AUDIO: d.img 705600-940800"));
    ASSERT_TRUE(hidden && hidden->hidden);
    EXPECT_EQ(told(*hidden, *hidden->hidden), "d.img 0-705600");
    const auto paused = [](const std::string& pause) {
        return tracksOf(parseCcdSheet("[TRACK 2]\nINDEX 0=" + pause + "\nISRC=short\n" + entry(1, 1, 0, 4) +
                                          entry(1, 2, 100) + entry(1, LeadOut, 200),
                                      "d.img"))
            .front();
    };
    EXPECT_EQ(paused("90"), "MODE1/2352: d.img 0-211680");
    EXPECT_EQ(paused("0"), "MODE1/2352: d.img 0-235200");
    EXPECT_EQ(paused("-5"), "MODE1/2352: d.img 0-235200");
    EXPECT_EQ(paused("100"), "MODE1/2352: d.img 0-235200");
}
