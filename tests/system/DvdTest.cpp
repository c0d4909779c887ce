#include "tests/disc/DvdDisc.h"
#include "tests/system/Pages.h"
#include "tests/system/Screenshot.h"
#include "tests/system/SystemTest.h"

#include <signal.h>

#include <cstdlib>

namespace zm::test {

namespace {

constexpr int DvdOverlay = 1;
constexpr int TitleText = 2152;
constexpr int ChapterText = 2154;
constexpr int MenuKey = 6557;
constexpr int SubtitleKey = 6555;
constexpr int NextKey = 6524;
constexpr int AngleKey = 6556;
constexpr int RepeatKey = 6504;
constexpr int ShuffleKey = 6503;
constexpr int PadKey = 6505;
constexpr int PadDigit = 510; // of 0; others follow
constexpr int PadMode = 527;

bool isLike(const Pixel& one, const Pixel& other) {
    const auto near = [](int a, int b) { return std::abs(a - b) < 40; };
    return near(one.red, other.red) && near(one.green, other.green) && near(one.blue, other.blue);
}
constexpr Pixel menuBlue{0x20, 0x20, 0x60};
constexpr Pixel black{0, 0, 0};
constexpr Pixel red{255, 0, 0};
constexpr Pixel blue{0, 0, 255};
constexpr Pixel cyan{0, 255, 255};
constexpr Pixel magenta{255, 0, 255};

} // namespace

/** A DVD in the drive of the whole system, driven by touches, as a driver would. */
class DvdSystem : public SystemTest {
protected:
    Pixel seen(int x, int y) {
        const std::string file = folder + "/shot.png";
        must({"shot", file});
        return pixelOf(file, x, y);
    }
    bool sees(Pixel colour, int x = 500, int y = 240) {
        return eventually([&] { return window() == VideoPage && isLike(seen(x, y), colour); });
    }
    void touch(int x, int y) { must({"touch", std::to_string(x), std::to_string(y)}); }
    /** Touches the middle of a control of the overlay. */
    void touchKey(int id, int overlay = DvdOverlay) {
        const auto [x, y] = middleOf(id, overlay);
        touch(x, y);
    }
    std::pair<int, int> middleOf(int id, int overlay = DvdOverlay) {
        const Json place = item(overlay, id, "osd")["rect"];
        return {place[0].get<int>() + place[2].get<int>() / 2, place[1].get<int>() + place[3].get<int>() / 2};
    }
    bool says(const std::string& attribute) {
        return eventually([&] {
            return must({"pps", "get", "zelmar/disc/status"}).find(attribute) != std::string::npos;
        });
    }
    std::string text(int id) { return item(DvdOverlay, id, "osd")["text"]; }
    bool inMenu() {
        return must({"pps", "get", "zelmar/disc/status"}).find("rootmenu::true") != std::string::npos;
    }
    void openOverlay() {
        if (window("osd") != DvdOverlay) {
            touch(500, 200);
        }
        ASSERT_TRUE(eventually([this] { return window("osd") == DvdOverlay; })) << screen()["osd"];
    }
};

TEST_F(DvdSystem, IsDrivenByTouchesFromItsMenuToItsEjection) {
    startBench({"--no-web", "--launcher", "passive"});
    must({"insert", dvdImage(DvdKind::Menus)});
    ASSERT_TRUE(eventually([this] { return inMenu(); })) << screen()["main"];
    ASSERT_TRUE(sees(menuBlue));
    // "Title 2" is the second button: the touch is as far to the left on the disc's narrower picture.
    touch(240, 233);
    ASSERT_TRUE(sees(cyan));
    EXPECT_FALSE(inMenu());
    openOverlay();
    EXPECT_TRUE(eventually([this] { return text(TitleText) == "2/2" && text(ChapterText) == "1/2"; }));
    EXPECT_EQ(text(Total), "00:12");
    touchKey(MenuKey);
    ASSERT_TRUE(eventually([this] { return inMenu(); }));
    ASSERT_TRUE(sees(menuBlue));
    touch(240, 333);
    ASSERT_TRUE(sees(blue));
    openOverlay();
    EXPECT_TRUE(eventually([this] { return text(TitleText) == "1/2" && text(ChapterText) == "3/3"; }));
    touchKey(SoundKey);
    EXPECT_TRUE(eventually([this] { return text(StateText) == "2/2 AC-3 2.0 de"; })) << text(StateText);
    touchKey(SubtitleKey);
    EXPECT_TRUE(eventually([this] { return text(StateText) == "1/2  en"; })) << text(StateText);
    must({"eject"});
    EXPECT_TRUE(eventually([this] { return window() != VideoPage; })) << screen()["main"];
}

TEST_F(DvdSystem, EachKeyOfItsBarDoesWhatItSays) {
    startBench({"--no-web", "--launcher", "passive"});
    must({"insert", dvdImage(DvdKind::Menus)});
    ASSERT_TRUE(eventually([this] { return inMenu(); })) << screen()["main"];
    touch(240, 233);
    ASSERT_TRUE(sees(cyan));
    openOverlay();
    touchKey(AngleKey);
    EXPECT_TRUE(eventually([this] { return text(StateText) == "2/2"; })) << text(StateText);
    touchKey(NextKey);
    EXPECT_TRUE(eventually([this] { return text(ChapterText) == "2/2"; }));
    EXPECT_TRUE(sees(magenta));

    openOverlay();
    touchKey(PadKey);
    ASSERT_TRUE(eventually([this] { return window("osd") == Pad; })) << screen()["osd"];
    touchKey(PadDigit + 1, Pad);
    touchKey(PadOk, Pad);
    EXPECT_TRUE(sees(red));
    openOverlay();
    EXPECT_TRUE(eventually([this] { return text(TitleText) == "1/2"; }));
    touchKey(PadKey);
    ASSERT_TRUE(eventually([this] { return window("osd") == Pad; })) << screen()["osd"];
    touchKey(PadMode, Pad);
    touchKey(PadDigit + 3, Pad);
    touchKey(PadOk, Pad);
    EXPECT_TRUE(sees(blue));

    openOverlay();
    touchKey(RepeatKey);
    EXPECT_TRUE(says("\"repeat\":8")) << must({"pps", "get", "zelmar/disc/status"});
    touchKey(ShuffleKey);
    EXPECT_TRUE(says("msgtip::1\n")) << must({"pps", "get", "zelmar/disc/status"});
    const auto [x, y] = middleOf(NextKey);
    must({"press", std::to_string(x), std::to_string(y)});
    EXPECT_TRUE(says("discstate::10")) << "a long touch is fast forward";
    must({"release", std::to_string(x), std::to_string(y)});
    openOverlay();
    touchKey(StopKey);
    EXPECT_TRUE(says("discstate::0"));
    openOverlay();
    touchKey(PlayKey);
    EXPECT_TRUE(says("discstate::2"));
    EXPECT_TRUE(sees(blue));
    must({"eject"});
    EXPECT_TRUE(eventually([this] { return window() != VideoPage; })) << screen()["main"];
    EXPECT_TRUE(eventually([this] { return must({"disc"}).find("empty") != std::string::npos; }));
}

TEST_F(DvdSystem, StoppedOnceItGoesOnStoppedTwiceItBeginsWithItsMenu) {
    startBench({"--no-web", "--launcher", "passive"});
    must({"insert", dvdImage(DvdKind::Menus)});
    ASSERT_TRUE(eventually([this] { return inMenu(); })) << screen()["main"];
    touch(240, 333);
    ASSERT_TRUE(sees(blue));
    openOverlay();
    touchKey(StopKey);
    ASSERT_TRUE(says("discstate::0"));
    EXPECT_TRUE(sees(black, 500, 150));
    openOverlay();
    EXPECT_EQ(text(ChapterText), "3/3");
    touchKey(PlayKey);
    ASSERT_TRUE(says("discstate::2"));
    EXPECT_TRUE(sees(blue, 500, 150));
    openOverlay();
    EXPECT_TRUE(eventually([this] { return text(TitleText) == "1/2" && text(ChapterText) == "3/3"; }));

    touchKey(StopKey);
    ASSERT_TRUE(says("discstate::0"));
    openOverlay();
    touchKey(StopKey);
    EXPECT_TRUE(eventually([this] {
        return must({"pps", "get", "zelmar/disc/playing"}).find("\"title\":0") != std::string::npos;
    })) << must({"pps", "get", "zelmar/disc/playing"});
    EXPECT_TRUE(sees(black, 500, 150));
    openOverlay();
    touchKey(PlayKey);
    EXPECT_TRUE(eventually([this] { return inMenu(); })) << must({"pps", "get", "zelmar/disc/status"});
    EXPECT_TRUE(sees(menuBlue, 500, 150));
}

TEST_F(DvdSystem, WithoutItsReaderItGivesTheErrorPageAndComesOut) {
    startBench({"--no-web", "--launcher", "passive", "--disc", dvdFolder(DvdKind::Menus)});
    ASSERT_TRUE(eventually([this] { return inMenu(); }));
    const pid_t reader = dvdReaderOf(std::stoi(lines({"ps"}).at(0).substr(5)));
    ASSERT_GT(reader, 0);
    ASSERT_EQ(::kill(reader, SIGKILL), 0);
    EXPECT_TRUE(eventually([this] { return window() == ErrorPage; })) << screen()["main"];
    EXPECT_THAT(must({"disc"}), HasSubstr("signal 9"));
}

} // namespace zm::test
