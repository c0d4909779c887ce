#include "tests/system/SystemTest.h"

#include <spng.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zm::test {

namespace {

constexpr int Width = 800;
constexpr int Height = 480;

} // namespace

/** A real red film in the drive of the whole system, and what the driver sees in the middle of the screen. */
class Film : public SystemTest {
protected:
    void makeFilm() {
        std::filesystem::create_directory(disc());
        const std::string command =
            "ffmpeg -v error -y -f lavfi -i color=red:size=320x240:rate=25:duration=20 "
            "-f lavfi -i sine=frequency=440:duration=20 -c:v mpeg2video -b:v 800k "
            "-c:a mp2 -f vob '" +
            disc() + "/film.mpg'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    std::string disc() { return folder + "/disc"; }
    /** The middle of the upper half is the film's, whatever lies over its lower edge. */
    bool seesRed() {
        const std::string file = folder + "/shot.png";
        must({"shot", file});
        std::ifstream stream(file, std::ios::binary);
        const std::string png((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
        std::vector<unsigned char> pixels(size_t{3} * Width * Height);
        const std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> reader(spng_ctx_new(0), spng_ctx_free);
        EXPECT_EQ(spng_set_png_buffer(reader.get(), png.data(), png.size()), 0);
        EXPECT_EQ(spng_decode_image(reader.get(), pixels.data(), pixels.size(), SPNG_FMT_RGB8, 0), 0);
        const unsigned char* pixel = &pixels[size_t{3} * (Width * (Height / 3) + Width / 2)];
        return pixel[0] > 200 && pixel[1] < 60 && pixel[2] < 60;
    }
    bool filmRuns() {
        const Json all = screen();
        return all["main"]["window"] == 17 && all["video"]["visible"] == true && seesRed();
    }
    bool isHidden() {
        const Json all = screen();
        return all["main"]["window"] == 10 && all["video"]["visible"] == false && !seesRed();
    }
    /** A touch of the driver on "show anyway". */
    void showAnyway() {
        const Json rect = item(10, 2103)["rect"];
        must({"touch", std::to_string(rect[0].get<int>() + rect[2].get<int>() / 2),
              std::to_string(rect[1].get<int>() + rect[3].get<int>() / 2)});
    }
    /** Kills that process; the film is not seen while and after it comes back. */
    void killAndWatch(const std::string& process) {
        must({"kill", process});
        bool seen = seesRed();
        settle();
        const int frames = screen()["video"].value("frames", 0);
        EXPECT_TRUE(eventually([&] {
            seen = seen || seesRed();
            return screen()["video"].value("frames", 0) > frames + 10;
        })) << "the decoder's pictures come again";
        EXPECT_FALSE(seen) << process;
    }
    void drive(bool driving) {
        must({"device", "2", driving ? "0" : "1"});
        settle();
    }
};

TEST_F(Film, IsHiddenWhileTheCarMoves) {
    makeFilm();
    startBench({"--no-web", "--launcher", "passive", "--disc", disc()});
    ASSERT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    drive(true);
    EXPECT_TRUE(isHidden()) << screen()["video"];
    for (const Words& words :
         {Words{"app", "pause"}, Words{"app", "resume"}, Words{"key", "20"}, Words{"touch", "400", "60"},
          Words{"app", "hideonly"}, Words{"app", "resume"}}) {
        must(words);
        settle();
        EXPECT_FALSE(seesRed()) << words[0] << " " << words[1];
    }
    drive(false);
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

TEST_F(Film, IsHiddenWhateverProcessIsKilledWhileTheCarMoves) {
    makeFilm();
    startBench({"--no-web", "--launcher", "passive", "--disc", disc()});
    ASSERT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    drive(true);
    for (const char* process : {"app", "disc"}) {
        killAndWatch(process);
    }
}

TEST_F(Film, ThatAnUnknowingApplicationShowsIsHiddenWhileTheCarMoves) {
    makeFilm();
    startBench({"--no-web", "--launcher", "passive", "--disc", disc()});
    ASSERT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    must({"device", "--silent", "2", "0"});
    for (const char* process : {"app", "disc"}) {
        EXPECT_FALSE(seesRed());
        killAndWatch(process);
        EXPECT_TRUE(eventually([this] { return screen()["video"]["visible"] == true; })) << process;
        EXPECT_EQ(screen()["video"]["locked"], true);
        EXPECT_FALSE(seesRed()) << process;
    }
    must({"device", "--silent", "2", "1"});
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

TEST_F(Film, IsSeenByTheDriversTouchForOneDrive) {
    makeFilm();
    startBench({"--no-web", "--launcher", "passive", "--disc", disc()});
    ASSERT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    drive(true);
    EXPECT_TRUE(isHidden()) << screen()["video"];
    showAnyway();
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    must({"kill", "app"});
    EXPECT_TRUE(eventually([this] {
        const Answer answer = ctl({"screen"});
        return answer.exit == 0 && Json::parse(answer.out)["main"]["window"] == 10;
    })) << "an application that comes back warns again";
    EXPECT_FALSE(seesRed());
    drive(false);
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    drive(true);
    EXPECT_TRUE(isHidden()) << screen()["video"];
}

TEST_F(Film, ThatIsInsertedWhileDrivingIsSeenOnlyOnceTheCarIsParked) {
    makeFilm();
    startBench({"--no-web", "--launcher", "passive"});
    drive(true);
    must({"insert", disc()});
    ASSERT_TRUE(eventually([this] {
        EXPECT_FALSE(seesRed());
        return screen()["video"].value("frames", 0) > 10;
    })) << "the decoder's pictures come";
    EXPECT_TRUE(isHidden()) << screen()["video"];
    drive(false);
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

} // namespace zm::test
