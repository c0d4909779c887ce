#include "tests/disc/DiscImageFixture.h"

using namespace zm::test;
using testing::ElementsAre;
using testing::HasSubstr;

// ---- cue sheets

TEST_F(DiscImages, SoundWithTheHighByteFirstIsTurned) {
    write("d.bin", swapped(m_one + m_two));
    write("d.cue", std::string("FILE d.bin MOTOROLA\n") + twoTracks);
    const auto medium = open("d.cue");
    EXPECT_EQ(soundOf(*medium, "01.wav"), m_one);
    EXPECT_EQ(soundOf(*medium, "02.wav"), m_two);
}

TEST_F(DiscImages, TracksOfAWavFileAreCutWhereTheCueSheetSays) {
    write("d.wav", wavOf(Sound(reinterpret_cast<const int16_t*>(m_one.data()),
                               reinterpret_cast<const int16_t*>(m_one.data() + m_one.size()))) +
                       "");
    std::string wav = readFile(m_folder / "d.wav");
    // A chunk in front of the sound, and something behind it.
    const std::string other("LIST\4\0\0\0abcd", 12);
    wav.insert(wav.find("data"), other);
    write("d.wav", wav + "LIST\4");
    write("d.cue", "FILE d.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 01 00:00:30\n");
    const auto medium = open("d.cue");
    EXPECT_EQ(soundOf(*medium, "01.wav"), m_one.substr(0, size_t{30} * SectorBytes));
    EXPECT_EQ(soundOf(*medium, "02.wav"), m_one.substr(size_t{30} * SectorBytes));
}

TEST_F(DiscImages, TracksOfAnAiffFileAreCutToo) {
    const std::string common = "COMM" + big(18, 4) + big(2, 2) + big(44100, 4) + big(16, 2) +
                               std::string("\x40\x0E\xAC\x44\0\0\0\0\0\0", 10);
    const std::string sound =
        "SSND" + big(m_one.size() + m_two.size() + 8, 4) + big(0, 8) + swapped(m_one + m_two);
    write("d.aiff", "FORM" + big(4 + common.size() + sound.size(), 4) + "AIFF" + common + sound);
    write("d.cue", std::string("FILE d.aiff AIFF\n") + twoTracks);
    const auto medium = open("d.cue");
    EXPECT_EQ(soundOf(*medium, "01.wav"), m_one);
    EXPECT_EQ(soundOf(*medium, "02.wav"), m_two);
}

TEST_F(DiscImages, EncodedFilesAreTracksAsTheyAre) {
    place(toneFile("flac", 5), m_folder / "1.flac");
    place(toneFile("mp3", 5), m_folder / "2.mp3");
    // Programs call whatever is not bare sectors WAVE.
    write("d.cue",
          "PERFORMER Ann\nTITLE Album\nFILE 1.flac WAVE\nTRACK 01 AUDIO\nTITLE One\nINDEX 01 00:00:00\n"
          "FILE 2.mp3 MP3\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n");
    const auto medium = open("d.cue");
    const auto contents = contentsOf(*medium);
    EXPECT_EQ(contents.trackType, MediaType::AudioCd);
    EXPECT_EQ(names(contents), (Names{"One", "Track 02"}));
    const auto& items = contents.of(MediaKind::Music);
    EXPECT_EQ(items[0].tags.seconds, 5);
    EXPECT_EQ(items[0].tags.artist, "Ann");
    EXPECT_EQ(items[0].rawName, "01.flac");
    EXPECT_EQ(items[1].rawName, "02.mp3");
    const auto reader = medium->open("01.flac");
    ASSERT_TRUE(reader);
    std::string begin(4, '\0');
    ASSERT_TRUE((*reader)->readAt(0, begin));
    EXPECT_EQ(begin, "fLaC");
    EXPECT_EQ((*reader)->size(), std::filesystem::file_size(m_folder / "1.flac"));
}

TEST_F(DiscImages, TracksInsideAnEncodedFileArePartsOfIt) {
    place(toneFile("flac", 5), m_folder / "d.flac");
    place(toneFile("mp3", 5), m_folder / "e.mp3");
    write("d.cue", "PERFORMER Ann\nTITLE Album\nFILE d.flac WAVE\nTRACK 01 AUDIO\nTITLE One\n"
                   "INDEX 00 00:00:00\nINDEX 01 00:00:10\nTRACK 02 AUDIO\nTITLE Two\nPREGAP 00:00:04\n"
                   "INDEX 01 00:02:20\nFILE e.mp3 MP3\nTRACK 03 AUDIO\nTITLE Three\nINDEX 01 00:00:00\n");
    const auto medium = open("d.cue");
    const auto contents = contentsOf(*medium);
    EXPECT_EQ(names(contents), (Names{"One", "Two", "Three"}));
    EXPECT_EQ(contents.of(MediaKind::Music)[0].tags.artist, "Ann");
    EXPECT_EQ(contents.of(MediaKind::Music)[0].tags.seconds, 2);
    EXPECT_EQ(contents.of(MediaKind::Music)[1].tags.seconds, 3);
    EXPECT_EQ(medium->cut("01.flac"), (SoundCut{10, 2 * 75 + 10, 4}));
    EXPECT_EQ(medium->cut("02.flac"), (SoundCut{2 * 75 + 20, {}, 0}));
    EXPECT_EQ(medium->cut("03.mp3"), std::nullopt) << "all of its file";
    const auto reader = medium->open("02.flac");
    ASSERT_TRUE(reader);
    EXPECT_EQ((*reader)->size(), std::filesystem::file_size(m_folder / "d.flac")) << "where it is cut out of";
}

TEST_F(DiscImages, DiscsCutOutOfOneFileInOtherWaysAreOthers) {
    place(toneFile("flac", 5), m_folder / "d.flac");
    const std::string first =
        "FILE d.flac WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 01 ";
    write("1.cue", first + "00:02:00\n");
    write("2.cue", first + "00:03:00\n");
    EXPECT_NE(contentsOf(*open("1.cue")).identity, contentsOf(*open("2.cue")).identity);
}

TEST_F(DiscImages, EncodedBytesAreNeverPlayedAsSound) {
    write("d.bin", m_one);
    place(toneFile("mp3", 5), m_folder / "e.mp3");
    write("d.toc", "CD_DA\nTRACK AUDIO\nFILE \"d.bin\" SWAP 0 00:01:00\nFILE \"e.mp3\" 0\n");
    EXPECT_EQ(soundOf(*open("d.toc"), "01.wav"), m_one);
}

TEST_F(DiscImages, WhatASoundFileLacksIsNamed) {
    write("d.wav", std::string("RIFF\4\0\0\0WAVE", 12));
    write("x.wav", "no sound at all");
    write("1.cue", std::string("FILE d.wav WAVE\n") + twoTracks);
    write("2.cue", std::string("FILE x.wav WAVE\n") + twoTracks);
    EXPECT_EQ(errorOf("1.cue"), "d.wav: has no sound");
    EXPECT_EQ(errorOf("2.cue"), "x.wav: neither WAVE, AIFF, FLAC nor MP3");
}

TEST_F(DiscImages, SilenceBetweenTracksIsPlayed) {
    write("d.bin", m_one + m_two);
    write("d.cue", "FILE d.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nPOSTGAP 00:00:10\n"
                   "TRACK 02 AUDIO\nPREGAP 00:00:20\nINDEX 01 00:01:00\n");
    const auto medium = open("d.cue");
    EXPECT_EQ(soundOf(*medium, "01.wav"), m_one + std::string(size_t{30} * SectorBytes, '\0'));
    EXPECT_EQ(soundOf(*medium, "02.wav"), m_two);
}

TEST_F(DiscImages, TheHiddenTrackComesLast) {
    write("d.bin", cdSound(5, 880) + m_one + m_two);
    write("d.cue", "FILE d.bin BINARY\nTRACK 01 AUDIO\nTITLE One\nINDEX 00 00:00:00\nINDEX 01 00:05:00\n"
                   "TRACK 02 AUDIO\nINDEX 01 00:06:00\n");
    const auto medium = open("d.cue");
    EXPECT_EQ(names(contentsOf(*medium)), (Names{"One", "Track 02", "Hidden track"}));
    EXPECT_EQ(soundOf(*medium, "01.wav"), m_one);
    EXPECT_EQ(soundOf(*medium, "03.wav"), cdSound(5, 880));
}

TEST_F(DiscImages, TextsComeFromTheCdTextFile) {
    write("d.bin", m_one + m_two);
    write("x.cdt", pack(0x80, 0, 0, std::string("Disc\0One\0Two", 12)) +
                       pack(0x80, 2, 1, std::string("\0", 1)) +
                       pack(0x81, 0, 2, std::string("\xC4nn\0\t\0Bob", 9)) + std::string(1, '\0'));
    write("d.cue",
          std::string("CDTEXTFILE \"X.CDT\"\nCATALOG 0724359532257\nFILE d.bin BINARY\n"
                      "TRACK 01 AUDIO\nTITLE \"Of the sheet\"\nISRC DEABC1234567\nINDEX 01 00:00:00\n"
                      "TRACK 02 AUDIO\nINDEX 01 00:01:00\n"));
    const auto medium = open("d.cue");
    EXPECT_EQ(medium->label(), "Disc");
    const auto contents = contentsOf(*medium);
    EXPECT_EQ(names(contents), (Names{"Of the sheet", "Two"}));
    EXPECT_EQ(contents.of(MediaKind::Music)[0].tags.artist, "Änn");
    EXPECT_EQ(contents.of(MediaKind::Music)[1].tags.artist, "Bob");
    EXPECT_EQ(medium->description().catalogNumber, "0724359532257");
    EXPECT_THAT(medium->description().isrcs, ElementsAre("DEABC1234567", ""));
}

TEST_F(DiscImages, WithoutTheCdTextFileTheDiscIsPlayedWithoutItsTexts) {
    write("d.bin", m_one + m_two);
    write("d.cue", std::string("CDTEXTFILE x.cdt\nFILE d.bin BINARY\n") + twoTracks);
    EXPECT_EQ(names(contentsOf(*open("d.cue"))), (Names{"Track 01", "Track 02"}));
    write("x.cdt", std::string(18, 'x'));
    EXPECT_EQ(names(contentsOf(*open("d.cue"))), (Names{"Track 01", "Track 02"}));
}

// ---- other descriptions

TEST_F(DiscImages, ATocFileDescribesADisc) {
    write("d.bin", m_one + m_two + m_three);
    write("d.toc", "CD_DA\n// a comment\nCATALOG \"0724359532257\"\n"
                   "CD_TEXT { LANGUAGE_MAP { 0 : EN }\n LANGUAGE 0 { TITLE \"Album\" PERFORMER \"Ann\" }\n"
                   " LANGUAGE 1 { TITLE \"Other\" } }\n"
                   "TRACK AUDIO\nNO COPY\nISRC \"DEABC1234567\"\n"
                   "CD_TEXT { LANGUAGE 0 { TITLE \"On\\145 \\\"1\\\"\" PERFORMER \"\" } }\n"
                   "FILE \"d.bin\" SWAP 0 00:01:00\n"
                   "TRACK AUDIO\nSILENCE 00:00:10\nFILE \"d.bin\" SWAP 00:01:00 00:01:00\nSTART 00:00:10\n"
                   "TRACK AUDIO\nFILE \"d.bin\" SWAP 88200\nSTART 00:00:15\n");
    const auto medium = open("d.toc");
    EXPECT_EQ(medium->description().form, "TOC file");
    EXPECT_EQ(medium->description().catalogNumber, "0724359532257");
    const auto contents = contentsOf(*medium);
    EXPECT_EQ(contents.trackType, MediaType::AudioCd);
    EXPECT_EQ(names(contents), (Names{"One \"1\"", "Track 02", "Track 03"}));
    EXPECT_EQ(contents.of(MediaKind::Music)[1].tags.artist, "Ann");
    EXPECT_EQ(contents.of(MediaKind::Music)[1].tags.album, "Album");
    EXPECT_EQ(soundOf(*medium, "01.wav"), m_one + std::string(size_t{10} * SectorBytes, '\0'));
    EXPECT_EQ(soundOf(*medium, "02.wav"), m_two + m_three.substr(0, size_t{15} * SectorBytes));
    EXPECT_EQ(soundOf(*medium, "03.wav"), m_three.substr(size_t{15} * SectorBytes));
}

TEST_F(DiscImages, WithoutSwapTheSoundOfATocFileHasTheHighByteFirst) {
    write("d.bin", swapped(m_one));
    write("d.toc", "CD_DA\nTRACK AUDIO\nFILE \"d.bin\" 0\n");
    EXPECT_EQ(soundOf(*open("d.toc"), "01.wav"), m_one);
    EXPECT_EQ(soundOf(*open("d.bin"), "01.wav"), m_one) << "the sectors lead to it";
}

TEST_F(DiscImages, ThreeFilesDescribeADisc) {
    write("Disc.img", m_one + m_two + m_three);
    write("disc.ccd",
          "[CloneCD]\r\nVersion=3\r\n[Disc]\r\nTocEntries=6\r\nSessions=1\r\nCATALOG=0724359532257\r\n"
          "[Session 1]\r\nPreGapMode=0\r\n"
          "[Entry 0]\r\nSession=1\r\nPoint=0xa0\r\nControl=0x00\r\nPLBA=4350\r\n"
          "[Entry 1]\r\nSession=1\r\nPoint=0xa2\r\nControl=0x00\r\nPLBA=225\r\n"
          "[Entry 2]\r\nSession=1\r\nPoint=0x01\r\nControl=0x00\r\nPLBA=0\r\n"
          "[Entry 3]\r\nSession=1\r\nPoint=0x02\r\nControl=0x00\r\nPLBA=75\r\n"
          "[Entry 4]\r\nSession=1\r\nPoint=0x03\r\nControl=0x00\r\nPLBA=150\r\n"
          "[CDText]\r\nEntries=1\r\nEntry 0=80 00 00 00 41 00 6f 6e 65 00 74 77 6f 00 33 00\r\n"
          "[TRACK 1]\r\nMODE=0\r\nINDEX 0=-150\r\nINDEX 1=0\r\nISRC=DEABC1234567\r\n"
          "[TRACK 2]\r\nMODE=0\r\nINDEX 1=75\r\n");
    const auto medium = open("disc.ccd");
    EXPECT_EQ(medium->description().form, "CCD file");
    EXPECT_EQ(medium->label(), "A");
    EXPECT_EQ(medium->description().catalogNumber, "0724359532257");
    EXPECT_EQ(medium->description().isrcs[0], "DEABC1234567");
    EXPECT_EQ(names(contentsOf(*medium)), (Names{"one", "two", "3"}));
    EXPECT_EQ(soundOf(*medium, "02.wav"), m_two);
    EXPECT_EQ(soundOf(*medium, "03.wav"), m_three);
}

TEST_F(DiscImages, AnImageMayHaveItsDescriptionAtItsEnd) {
    const std::string sound = cdSound(5, 880) + m_one + m_two;
    const uint64_t first = size_t{5} * 75 * SectorBytes;
    for (const bool newer : {true, false}) {
        const int bytes = newer ? 8 : 4;
        const auto track = [&](uint64_t pause, uint64_t begin, uint64_t end) {
            return "DEABC1234567" + big(SectorBytes, 2) + "\7" + std::string(3, '\0') + big(pause, bytes) +
                   big(begin, bytes) + big(end, bytes);
        };
        const std::string tracks =
            std::string(4, '\0') + "0724359532257" + std::string("\0\0\0\1\2", 5) +
            track(0, first, first + m_one.size()) +
            track(first + m_one.size(), first + m_one.size(), first + m_one.size() + m_two.size());
        const std::string texts = pack(0x80, 0, 0, std::string("A\0one\0two\0", 10));
        write("d.nrg", sound + (newer ? "DAOX" : "DAOI") + big(tracks.size(), 4) + tracks + "CDTX" +
                           big(texts.size(), 4) + texts + "END!" + big(0, 4) +
                           (newer ? "NER5" + big(sound.size(), 8) : "NERO" + big(sound.size(), 4)));
        const auto medium = open("d.nrg");
        ASSERT_TRUE(medium);
        EXPECT_EQ(medium->description().form, "NRG image");
        EXPECT_EQ(medium->description().catalogNumber, "0724359532257");
        EXPECT_THAT(medium->description().isrcs, ElementsAre("DEABC1234567", "DEABC1234567", ""));
        EXPECT_EQ(names(contentsOf(*medium)), (Names{"one", "two", "Hidden track"}));
        EXPECT_EQ(soundOf(*medium, "01.wav"), m_one);
        EXPECT_EQ(soundOf(*medium, "02.wav"), m_two);
        EXPECT_EQ(soundOf(*medium, "03.wav"), cdSound(5, 880));
    }
}

TEST_F(DiscImages, DescriptionsThatAreWrongAreRefusedWithTheirPlace) {
    write("d.bin", m_one);
    write("d.img", m_one);
    const struct {
        const char* name;
        std::string text;
        const char* error;
    } rows[] = {
        {"1.toc", "CD_DA\nTRACK AUDIO\nFILE \"d.bin\" 0\nHELLO\n", "line 4: HELLO: does not belong there"},
        {"2.toc", "CD_DA\nTRACK TAPE\n", "line 2: TAPE: unknown kind of track"},
        {"3.toc", "CD_DA\nTRACK AUDIO\n", "line 2: TRACK: has no sound and no data"},
        {"4.toc", "CD_DA\nFILE \"d.bin\" 0\n", "line 2: FILE: no TRACK before it"},
        {"10.toc", "CD_DA\nINDEX 00:00:20\n", "line 2: INDEX: no TRACK before it"},
        {"5.toc", "CD_DA\nTRACK AUDIO\nFILE \"d.bin\n", "line 3: \"d.bin: the text has no end"},
        {"6.toc", "CD_DA\nCD_TEXT { TITLE \"a\"\n", "line 2: CD_TEXT: its { is never closed"},
        {"7.toc", "CD_DA\nTRACK AUDIO\nFILE \"missing.bin\" 0\n", "missing.bin: no such file"},
        {"8.toc", "CD_DA\n", "names no track"},
        {"9.toc", "CD_DA\nTRACK MODE2_FORM1 RW_RAW\nFILE \"d.bin\" 0\n",
         "line 2: TRACK: sectors of this mode with sub-channels are not read"},
        {"1.ccd", "[Entry 0\n", "line 1: [Entry 0: the section's name has no end"},
        {"2.ccd", "[Entry 0]\nPoint=first\n", "line 2: Point=first: not a number"},
        {"3.ccd", "[Entry 0]\nPoint=1\nPLBA=0\n", "track 1: its session has no end"},
        {"4.ccd", "[Entry 0]\nPoint=1\nPLBA=9\n[Entry 1]\nPoint=0xA2\nPLBA=9\n",
         "track 1: ends before it begins, or lies nowhere"},
        {"5.ccd", "[TRACK 0]\n", "line 1: [TRACK 0]: not a track from 1 to 99"},
        {"6.ccd", "hello\n", "line 1: hello: no section and no value"},
        {"7.ccd", "[CDText]\nEntry 0=80 zz\n", "line 2: Entry 0=80 zz: not the bytes of a text"},
        {"9.ccd", "[CDText]\nEntry 0=80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0G\n",
         "line 2: Entry 0=80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0G: not the bytes of a text"},
        {"8.ccd", "", "names no track"},
        {"1.nrg", "DAOX" + big(5, 4) + "xxxxxNER5" + big(0, 8), "DAOX: no whole number of tracks"},
        {"2.nrg", "DAOX" + big(500, 4) + "xxxxxNER5" + big(0, 8), "DAOX: longer than the image"},
        {"3.nrg",
         "ETN2" + big(32, 4) + big(9, 8) + big(5, 8) + std::string(3, '\0') + std::string(13, '\x7F') +
             "NER5" + big(0, 8),
         "ETN2: track 1: unknown mode 127"},
        {"4.nrg", "END!" + big(0, 4) + "NER5" + big(0, 8), "names no track"},
    };
    for (const auto& row : rows) {
        write(row.name, row.text);
        EXPECT_EQ(errorOf(row.name), row.error) << row.name;
    }
}

// ---- sound and files

namespace {

// An image with two songs, in sectors of 2352 bytes.
std::string dataTrack(const TempFolder& folder, size_t firstBlock = 0) {
    place(toneFile("mp3", 5, "Of the files"), folder / "content/sub/song.mp3");
    writeFile(folder / "content/readme.txt", "nothing to play");
    const std::string image = folder / "data.iso";
    // A disc's addresses count from its beginning, wherever the track begins.
    const std::string place = firstBlock ? "-C 0," + std::to_string(firstBlock) + " " : std::string();
    const std::string command = "genisoimage -quiet -V FILES -r -J " + place + "-o '" + image + "' '" +
                                (folder / "content") + "' 2>/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return dataSectors(readFile(image), 2048, 16);
}

void expectMixed(const Contents& contents, const std::string& files) {
    EXPECT_FALSE(contents.trackType) << "a disc of files";
    EXPECT_EQ(contents.mixedMask(), 2);
    const auto& items = contents.of(MediaKind::Music);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].name, "One");
    EXPECT_EQ(items[0].tags.artist, "Ann");
    EXPECT_EQ(items[0].tags.seconds, 1);
    EXPECT_EQ(items[1].name, "Track 02");
    EXPECT_EQ(items[1].folderId, 1);
    EXPECT_EQ(items[2].name, "Of the files");
    EXPECT_EQ(contents.pathOf(items[2]), files + "/sub/song.mp3");
}

} // namespace

TEST_F(DiscImages, ADiscWithSoundBehindItsFilesIsBoth) {
    const std::string data = dataTrack(m_folder);
    write("d.bin", data + m_one + m_two);
    const auto sectors = static_cast<int>(data.size() / SectorBytes);
    write("d.cue", "FILE d.bin BINARY\nTRACK 01 MODE1/2352\nINDEX 01 00:00:00\n"
                   "TRACK 02 AUDIO\nTITLE One\nPERFORMER Ann\nINDEX 01 " +
                       cdTime(sectors) + "\nTRACK 03 AUDIO\nINDEX 01 " + cdTime(sectors + 75) + "\n");
    const auto medium = open("d.cue");
    EXPECT_EQ(medium->description().form, "cue sheet, files: cue sheet, ISO 9660 with Rock Ridge");
    const auto contents = contentsOf(*medium);
    expectMixed(contents, "FILES");
    EXPECT_EQ(soundOf(*medium, "02.wav"), m_two);
    EXPECT_TRUE(medium->open("FILES/sub/song.mp3"));
}

TEST_F(DiscImages, ADiscWithFilesInASecondSessionIsBoth) {
    const size_t begin = 150 + 11400;
    const std::string data = dataTrack(m_folder, begin);
    write("d.bin", m_one + m_two + data);
    write("d.cue",
          "FILE d.bin BINARY\nTRACK 01 AUDIO\nTITLE One\nPERFORMER Ann\nINDEX 01 00:00:00\n"
          "TRACK 02 AUDIO\nINDEX 01 00:01:00\nREM SESSION 02\nTRACK 03 MODE1/2352\nINDEX 01 00:02:00\n");
    const auto medium = open("d.cue");
    expectMixed(contentsOf(*medium), "FILES");
    auto reader = medium->open("FILES/sub/song.mp3");
    ASSERT_TRUE(reader);
    std::string bytes((*reader)->size(), '\0');
    ASSERT_TRUE((*reader)->readAt(0, bytes));
    EXPECT_EQ(bytes, readFile(m_folder / "content/sub/song.mp3"));
}

TEST_F(DiscImages, WhereTheFilesAreNothingToPlayItIsAnAudioCd) {
    const std::string data = dataTrack(m_folder);
    std::filesystem::remove_all(m_folder / "content/sub");
    const std::string image = m_folder / "data.iso";
    ASSERT_EQ(std::system(("genisoimage -quiet -V FILES -r -o '" + image + "' '" + (m_folder / "content") +
                           "' 2>/dev/null")
                              .c_str()),
              0);
    write("d.bin", m_one + dataSectors(readFile(image), 2048, 16));
    write("d.cue",
          "FILE d.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 MODE1/2352\nINDEX 01 00:01:00\n");
    EXPECT_EQ(contentsOf(*open("d.cue")).trackType, MediaType::AudioCd);
}

TEST_F(DiscImages, SectorsOfADataDiscNeedNoDescription) {
    for (const char mode : {1, 2}) {
        std::string raw = dataTrack(m_folder);
        if (mode == 2) {
            raw = dataSectors(readFile(m_folder / "data.iso"), 2048, 24);
        }
        for (size_t at = 0; at < raw.size(); at += SectorBytes) {
            raw.replace(at, 16, std::string("\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\0\0\2\0", 15) + mode);
        }
        write("raw.iso", raw);
        const auto medium = open("raw.iso");
        ASSERT_TRUE(medium);
        EXPECT_THAT(medium->description().form, HasSubstr("sectors of 2352 bytes, ISO 9660"));
        EXPECT_EQ(names(contentsOf(*medium)), (Names{"Of the files"}));
        write("long.iso", withSubChannels(raw));
        const auto longer = open("long.iso");
        ASSERT_TRUE(longer);
        EXPECT_THAT(longer->description().form, HasSubstr("sectors of 2448 bytes, ISO 9660"));
        EXPECT_EQ(names(contentsOf(*longer)), (Names{"Of the files"}));
    }
}
