#include "tests/disc/CdImage.h"
#include "tests/disc/VcdImage.h"
#include "tests/system/Pages.h"
#include "tests/system/Screenshot.h"
#include "tests/system/SystemTest.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace zm::test {

namespace {

constexpr int TrackList = 27;
constexpr int Artist = 2061;
constexpr int Album = 2063;
constexpr int TrackNumber = 2075;
constexpr int ShownRows = 5;
constexpr int VcdOverlay = 4;
constexpr int OverlayTrack = 2152;
constexpr int PlaybackControl = 6561;
constexpr int ToPad = 6505;
constexpr int PadKey2 = 512;
constexpr int PadDisplay = 510;

} // namespace

/** A disc of tracks in the drive of the whole system, seen on its pages. */
class TrackDisc : public SystemTest {
protected:
    std::string text(int id) { return item(PlayPage, id)["text"]; }
    bool plays(const std::string& title, const std::string& track) {
        return window() == PlayPage && text(Title) == title && text(TrackNumber) == track;
    }
};

TEST_F(TrackDisc, AnAudioCdIsShownWithTitlesAndARunningTimeAndItsListPlaysATrack) {
    const auto cue =
        writeAudioCd(folder + "/cd", {{60, 440, "One", "Ann"}, {60, 550, "Two", ""}, {60, 660, "Three", ""}});
    startBench({"--no-web", "--launcher", "passive"});
    must({"insert", cue});
    ASSERT_TRUE(eventually([this] { return plays("One", "1/3"); })) << screen()["main"];
    EXPECT_EQ(text(Artist), "Ann");
    EXPECT_EQ(text(Album), "Demo CD");
    EXPECT_TRUE(eventually([this] { return text(Elapsed) >= "00:01"; }));
    EXPECT_EQ(text(Total), "01:00");
    const std::string before = text(Elapsed);
    EXPECT_TRUE(eventually([&] { return text(Elapsed) > before; })) << "the time runs";

    must({"key", "20"});
    ASSERT_TRUE(eventually([this] { return plays("Two", "2/3"); })) << "next track";
    EXPECT_EQ(text(Artist), "The Tones");

    must({"click", "main", std::to_string(PlayPage), std::to_string(ToList), "1"});
    ASSERT_TRUE(eventually([this] {
        return window() == TrackList && item(TrackList, List)["rows"].size() == 3;
    })) << screen()["main"];
    EXPECT_EQ(item(TrackList, List)["rows"][2]["text"], "3  Three");
    const Json place = item(TrackList, List)["rect"];
    const int rowHeight = place[3].get<int>() / ShownRows;
    must({"touch", "400", std::to_string(place[1].get<int>() + 2 * rowHeight + rowHeight / 2)});
    EXPECT_TRUE(eventually([this] { return plays("Three", "3/3"); })) << screen()["main"];
}

TEST_F(TrackDisc, AVcdShowsItsFilmsUnderItsOwnOverlay) {
    const std::string film = folder + "/film.mpg";
    const std::string command =
        "ffmpeg -nostdin -v error -f lavfi -i color=red:size=352x288:rate=25:duration=20 -f "
        "lavfi -i sine=frequency=440:duration=20 -target pal-vcd '" +
        film + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    std::ifstream file(film, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    SectorImage image;
    image.addFileSystem();
    image.addFilm(bytes);
    image.addFilm(bytes);
    startBench({"--no-web", "--launcher", "passive", "--disc", image.write(folder + "/vcd")});
    ASSERT_TRUE(eventually([this] {
        const Json all = screen();
        return all["main"]["window"] == VideoPage && all["video"]["visible"] == true &&
               all["video"].value("frames", 0) > 10;
    })) << screen()["video"];
    must({"touch", "400", "60"});
    ASSERT_TRUE(eventually([this] {
        return window("osd") == VcdOverlay && item(VcdOverlay, OverlayTrack, "osd")["text"] == "1/2";
    })) << screen()["osd"];
    must({"key", "20"});
    EXPECT_TRUE(eventually([this] { return item(VcdOverlay, OverlayTrack, "osd")["text"] == "2/2"; }));
    must({"click", "osd", std::to_string(VcdOverlay), std::to_string(PlaybackControl), "1"});
    EXPECT_TRUE(eventually([this] {
        return must({"pps", "get", "zelmar/disc/status"}).find("msgtip::29\n") != std::string::npos;
    }));
}

/** A VCD with a menu, driven by touches, as a driver would. */
class VcdMenuOnScreen : public TrackDisc {
protected:
    void touch(int x, int y) { must({"touch", std::to_string(x), std::to_string(y)}); }
    /** Touches the middle of what stands in a window of the overlay. */
    void touchItem(int osdWindow, int id) {
        const Json place = item(osdWindow, id, "osd")["rect"];
        touch(place[0].get<int>() + place[2].get<int>() / 2, place[1].get<int>() + place[3].get<int>() / 2);
    }
    void openOverlay() {
        if (window("osd") != VcdOverlay) {
            touch(500, 200);
        }
        ASSERT_TRUE(eventually([this] { return window("osd") == VcdOverlay; })) << screen()["osd"];
    }
    bool counts(const std::string& track) {
        return eventually([&] { return item(VcdOverlay, OverlayTrack, "osd")["text"] == track; });
    }
    bool sees(const Pixel& wanted) {
        return eventually([&] {
            const std::string file = folder + "/shot.png";
            must({"shot", file});
            const Pixel seen = pixelOf(file, 600, 200);
            const auto near = [](int a, int b) { return std::abs(a - b) < 60; };
            return window() == VideoPage && near(seen.red, wanted.red) && near(seen.green, wanted.green) &&
                   near(seen.blue, wanted.blue);
        });
    }
};

TEST_F(VcdMenuOnScreen, ItsNumbersAreTypedOnThePad) {
    startBench({"--no-web", "--launcher", "passive"});
    must({"insert", vcdImage("menu")});
    ASSERT_TRUE(sees({255, 0, 0}));
    openOverlay();
    EXPECT_TRUE(counts("--/4"));
    touchItem(VcdOverlay, ToPad);
    ASSERT_TRUE(eventually([this] { return window("osd") == Pad; })) << screen()["osd"];
    EXPECT_EQ(item(Pad, PadDisplay, "osd")["text"], "_/4");
    touchItem(Pad, PadKey2);
    touchItem(Pad, PadOk);
    ASSERT_TRUE(sees({0, 0, 255}));
    openOverlay();
    EXPECT_TRUE(counts("2/2"));
    touchItem(VcdOverlay, SoundKey);
    EXPECT_TRUE(eventually([this] { return item(VcdOverlay, StateText, "osd")["text"] == "Left channel"; }));
    touchItem(VcdOverlay, SoundKey);
    EXPECT_TRUE(eventually([this] { return item(VcdOverlay, StateText, "osd")["text"] == "Right channel"; }));
    touchItem(VcdOverlay, SoundKey);
    EXPECT_TRUE(eventually([this] { return item(VcdOverlay, StateText, "osd")["text"] == "Stereo"; }));
    // Back to the menu.
    touchItem(VcdOverlay, StopKey);
    ASSERT_TRUE(eventually([this] {
        return must({"pps", "get", "zelmar/disc/status"}).find("discstate::0\n") != std::string::npos;
    }));
    touchItem(VcdOverlay, PlayKey);
    EXPECT_TRUE(sees({255, 0, 0}));
    openOverlay();
    EXPECT_TRUE(counts("--/4"));
}

} // namespace zm::test
