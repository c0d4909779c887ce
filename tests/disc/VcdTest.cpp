#include "services/disc/library/Scanner.h"
#include "services/disc/medium/OpenMedium.h"
#include "tests/disc/CdImage.h"
#include "tests/disc/GoodMedium.h"
#include "tests/disc/PictureFixture.h"

#include <gtest/gtest.h>

using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

constexpr const char* PackStart = "\0\0\x01\xBA";

std::string film(const std::string& colour, int seconds) {
    return sample(
        {"vcd-" + colour + "-" + std::to_string(seconds) + ".mpg",
         "-f lavfi -i color=" + colour + ":size=352x288:rate=25:duration=" + std::to_string(seconds) +
             " -f lavfi -i sine=frequency=440:duration=" + std::to_string(seconds) + " -target pal-vcd"});
}

// A red and a blue film behind the file system.
class Vcd : public testing::Test {
protected:
    std::string makeVcd() {
        SectorImage image;
        image.addFileSystem();
        image.addFilm(readFile(film("red", 8)));
        image.addFilm(readFile(film("blue", 8)));
        return image.write(m_disc.path().string());
    }
    void play() { m_unit.play(makeVcd()); }
    Published nextTrack(int track) {
        return m_unit.next("trackinfo",
                           [=](const Published& each) { return each.json()["mediaid"] == track; });
    }
    Published nextSecond() {
        return m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 1; });
    }
    void nextTip(int tip) { m_unit.next("msgtip", std::to_string(tip)); }
    bool shows(Colour colour) { return m_unit.pictures().waitFor(MiddleX, MiddleY, colour); }

    TempFolder m_disc;
    DiscUnit m_unit;
};

} // namespace

TEST_F(Vcd, ItsFilmsAreTheTracksBehindTheFirst) {
    const auto medium = openGood(makeVcd());
    ScanProgress progress;
    const auto contents = scan(*medium, progress);
    ASSERT_TRUE(contents);
    EXPECT_EQ(contents->trackType, MediaType::Vcd);
    EXPECT_EQ(contents->mixedMask(), 0);
    const auto& items = contents->of(MediaKind::Video);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[1].fileId, 2);
    EXPECT_EQ(items[1].name, "Track 02");
}

TEST_F(Vcd, AFilmIsReadWithoutHeadersAndEmptySectorsAtAnyPlace) {
    const auto medium = openGood(makeVcd());
    const std::string bytes = readFile(film("blue", 8));
    auto reader = medium->open("02.mpg");
    ASSERT_TRUE(reader) << reader.error();
    EXPECT_EQ((*reader)->size(), (bytes.size() + FilmBytes - 1) / FilmBytes * FilmBytes);
    for (const size_t offset : {size_t{0}, size_t{1}, FilmBytes - 1, FilmBytes, 5 * FilmBytes + 100}) {
        for (const size_t size : {size_t{1}, FilmBytes, size_t{300000}}) {
            std::string part(size, '\0');
            const auto count = (*reader)->readAt(offset, part);
            ASSERT_TRUE(count);
            EXPECT_EQ(*count, size);
            EXPECT_TRUE(part == bytes.substr(offset, size)) << offset << " " << size;
        }
    }
    std::string beyond(10, '\0');
    EXPECT_EQ(*(*reader)->readAt((*reader)->size(), beyond), 0u);
    EXPECT_EQ(*(*reader)->readAt((*reader)->size() - 3, beyond), 3u);
    EXPECT_FALSE(medium->open("03.mpg"));
}

TEST_F(Vcd, ADiscWithoutAFilmBehindTheFirstTrackIsNone) {
    SectorImage image;
    image.addFilm(std::string(PackStart, 4) + std::string(FilmBytes, 'x'));
    image.add("MODE2/2352", std::string(size_t{300} * SectorBytes, '\0'));
    image.add("MODE1/2352", dataSectors(std::string(PackStart, 4), FilmBytes, 16));
    const auto contents = openGood(image.write(m_disc.path().string()))->tracks();
    ASSERT_TRUE(contents);
    EXPECT_TRUE(contents->empty());
}

TEST_F(Vcd, ADataTrackIsReadAsAFileSystem) {
    for (const auto& [mode, header] : {std::pair{"MODE1/2352", 16}, std::pair{"MODE2/2352", 24}}) {
        TempFolder content;
        place(toneFile("mp3", 2, "In the image"), content / "a/1.mp3");
        const std::string iso = m_disc / "plain.iso";
        const std::string command = "xorriso -as mkisofs -quiet -V DATA -r -o '" + iso + "' '" +
                                    content.path().string() + "' 2>/dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0);
        SectorImage image;
        image.add(mode, dataSectors(readFile(iso), 2048, static_cast<size_t>(header)));
        const auto medium = openGood(image.write(m_disc.path().string()));
        ScanProgress progress;
        const auto contents = scan(*medium, progress);
        ASSERT_TRUE(contents) << mode;
        ASSERT_EQ(contents->of(MediaKind::Music).size(), 1u) << mode;
        EXPECT_EQ(contents->of(MediaKind::Music)[0].tags.title, "In the image");
        auto file = medium->open("a/1.mp3");
        ASSERT_TRUE(file);
        const std::string bytes = readFile(content / "a/1.mp3");
        EXPECT_EQ((*file)->size(), bytes.size());
        std::string read(bytes.size(), '\0');
        EXPECT_EQ(*(*file)->readAt(0, read), bytes.size());
        EXPECT_TRUE(read == bytes);
    }
}

#ifndef __SANITIZE_THREAD__ // there nothing is decoded

TEST_F(Vcd, ItsFilmsAreShown) {
    play();
    EXPECT_TRUE(shows(red));
    m_unit.command(1);
    nextTrack(2);
    nextTip(3);
    m_unit.nextState(PlayState::Playing);
    EXPECT_TRUE(shows(blue));
    m_unit.command(185, 4);
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 5; });
}

TEST_F(Vcd, FilmsThatWereCopiedOffADiscPlay) {
    constexpr size_t EmptySectors = 30;
    constexpr size_t SectorHead = 24;
    constexpr size_t ModePlace = 15;
    const std::string mark("\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\0", 12);
    const auto sectorsOf = [&](const std::string& colour) {
        std::string sectors = dataSectors(
            std::string(EmptySectors * FilmBytes, '\0') + readFile(film(colour, 8)), FilmBytes, SectorHead);
        for (size_t at = 0; at < sectors.size(); at += SectorBytes) {
            sectors.replace(at, mark.size(), mark);
            sectors[at + ModePlace] = 2;
        }
        return sectors;
    };
    const std::string length(4, '\0');
    const std::string header = "RIFF" + length + "CDXAfmt \x10" + std::string(3 + 16, '\0') + "data" + length;
    writeFile(m_disc / "mpegav/avseq01.dat", header + sectorsOf("red"));
    writeFile(m_disc / "mpegav/avseq02.dat", header + sectorsOf("blue"));
    writeFile(m_disc / "mpegav/avseq03.dat", sectorsOf("cyan")); // the sectors alone
    m_unit.play(m_disc.path().string());
    EXPECT_TRUE(shows(red));
    m_unit.mark();
    EXPECT_NEAR(nextSecond().json()["tracktime"].get<int>(), 8, 1);
    m_unit.command(185, 5);
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 6; });
    m_unit.command(1);
    nextTip(3);
    EXPECT_TRUE(shows(blue));
    m_unit.command(1);
    nextTip(3);
    EXPECT_TRUE(shows({0, 255, 255}));
    m_unit.mark();
    EXPECT_NEAR(nextSecond().json()["tracktime"].get<int>(), 8, 1);
    m_unit.command(185, 5);
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 6; });
}

TEST_F(Vcd, TheLengthIsThatOfTheFilm) {
    play();
    EXPECT_NEAR(nextSecond().json()["tracktime"].get<int>(), 8, 1);
}

#endif

TEST_F(Vcd, IsAnnouncedBeforeItPlays) {
    m_unit.startService();
    m_unit.mark();
    m_unit.request({{"op", "insert"}, {"path", makeVcd()}});
    m_unit.next("mixedtype", "0");
    m_unit.next("mediatype", "5");
    m_unit.command(187, 1, 0);
    m_unit.next("videomode", "1");
    const auto track = nextTrack(1).json();
    EXPECT_EQ(track["mediaids"], 2);
    EXPECT_EQ(track["parentFolder"], 1);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(Vcd, TracksAreChosenAndScannedAndEndAsTheRepeatModeSays) {
    play();
    m_unit.command(182, 2, 0);
    nextTrack(2);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(3);
    nextTip(18);
    m_unit.command(3);
    m_unit.next("playspeed", "4");
    nextTrack(1); // over the end of the last one
    m_unit.nextState(PlayState::Playing);
    m_unit.command(9, 1);
    m_unit.next("playstate", [](const Published& each) { return each.json()["repeat"] == 1; });
    m_unit.command(182, 2, 0);
    nextTrack(2);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(3);
    m_unit.command(3);
    m_unit.nextState(PlayState::Stopped);
    nextTrack(1);
    EXPECT_FALSE(m_unit.follows("videomode", "3", 200ms)) << "there is no list to go back to";
}

TEST_F(Vcd, PlaybackControlIsSwitched) {
    play();
    for (const int tip : {29, 30, 29}) {
        m_unit.command(19);
        nextTip(tip);
    }
    for (const int command : {12, 18, 21, 145, 183, 184, 188, 189}) {
        m_unit.command(command, 1, 1);
        nextTip(1);
    }
}

TEST_F(Vcd, TheApplicationsOwnSkipDoesNotSkipTwice) {
    SectorImage image;
    image.addFileSystem();
    image.addFilm(readFile(film("red", 8)));
    const size_t end = image.bin.size();
    image.addFilm(readFile(film("blue", 8)));
    const auto cue = image.write(m_disc.path().string());
    m_unit.play(cue);
    // The second film is gone from the disc meanwhile.
    std::filesystem::resize_file(m_disc / "disc.bin", end);
    m_unit.command(1);
    nextTrack(2);
    m_unit.next("errorstatus", "32");
    m_unit.command(182, 1, 0); // behind the last track the first one
    nextTrack(1);
    m_unit.nextState(PlayState::Playing);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("msgtip", "1", 500ms));
    for (const auto& track : m_unit.since("trackinfo")) {
        EXPECT_EQ(nlohmann::json::parse(track)["mediaid"], 1);
    }
}
