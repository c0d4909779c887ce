#include "tests/system/Pages.h"
#include "tests/system/Screenshot.h"
#include "tests/system/SystemTest.h"

#include <cstdlib>
#include <filesystem>

namespace zm::test {

/** Discs with covers in the drive of the whole system, and what the driver sees in their place. */
class CoversOnTheScreen : public SystemTest {
protected:
    CoversOnTheScreen() { startBench({"--no-web", "--launcher", "passive"}); }

    static void ffmpeg(const std::string& arguments) {
        ASSERT_EQ(std::system(("ffmpeg -nostdin -v error -y " + arguments).c_str()), 0) << arguments;
    }
    /** A disc with one song of that title, and beside it a cover of one colour. */
    std::string disc(const std::string& title, const std::string& color, const std::string& size) {
        const std::string path = folder + "/" + title;
        std::filesystem::create_directory(path);
        ffmpeg("-f lavfi -i sine=duration=60 -ac 1 -metadata title='" + title + "' '" + path + "/song.flac'");
        if (!color.empty()) {
            ffmpeg("-f lavfi -i color=" + color + ":s=" + size + " -frames:v 1 -pix_fmt rgb24 '" + path +
                   "/cover.png'");
        }
        return path;
    }
    /** What is drawn there at present. */
    std::string drawn() { return item(PlayPage, Cover)["picture"]; }
    bool sees(int red, int green, int blue) {
        const Json rect = item(PlayPage, Cover)["rect"];
        const std::string file = folder + "/shot.png";
        must({"shot", file});
        const Pixel pixel = pixelOf(file, rect[0].get<int>() + rect[2].get<int>() / 2,
                                    rect[1].get<int>() + rect[3].get<int>() / 2);
        const auto near = [](int a, int b) { return std::abs(a - b) < 12; };
        return near(pixel.red, red) && near(pixel.green, green) && near(pixel.blue, blue);
    }
    /** Also while a program is being started. */
    bool plays(const std::string& title) {
        return ctl({"screen"}).exit == 0 && window() == PlayPage && item(PlayPage, Title)["text"] == title;
    }

    static constexpr int Cover = 20110;
};

TEST_F(CoversOnTheScreen, AreThoseOfTheDiscInside) {
    must({"insert", disc("Red", "red", "64x64")});
    ASSERT_TRUE(eventually([&] { return plays("Red") && sees(255, 0, 0); }));
    must({"insert", disc("Blue", "blue", "500x500")});
    ASSERT_TRUE(eventually([&] { return plays("Blue") && sees(0, 0, 255); }));
    must({"insert", disc("Nothing", "", "")});
    ASSERT_TRUE(eventually([&] { return plays("Nothing") && !drawn().empty(); }));
    EXPECT_FALSE(sees(0, 0, 255));
    EXPECT_FALSE(sees(255, 0, 0));
    must({"eject"});
    ASSERT_TRUE(eventually([&] { return window() != PlayPage; }));
    EXPECT_TRUE(eventually([&] { return drawn().empty(); }));
}

TEST_F(CoversOnTheScreen, ThatAreHugeDoNotKeepThePageWaiting) {
    const std::string huge = disc("Huge", "red", "9500x9500");
    must({"insert", huge});
    // The page is there, with its title, while the cover is still being made.
    ASSERT_TRUE(eventually([&] { return plays("Huge"); }));
    EXPECT_EQ(drawn(), "");
    EXPECT_TRUE(eventually([&] { return sees(255, 0, 0); }));
}

TEST_F(CoversOnTheScreen, AreBackWhenTheApplicationIs) {
    must({"insert", disc("Red", "red", "64x64")});
    ASSERT_TRUE(eventually([&] { return plays("Red") && sees(255, 0, 0); }));
    must({"kill", "app"});
    EXPECT_TRUE(eventually([&] { return plays("Red") && sees(255, 0, 0); }));
    must({"kill", "disc"});
    EXPECT_TRUE(
        eventually([&] { return plays("Red") && sees(255, 0, 0) && std::filesystem::exists(drawn()); }));
}

} // namespace zm::test
