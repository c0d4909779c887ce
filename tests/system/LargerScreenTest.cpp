// The whole unit on larger screens: real films at their place, and what it is told from outside.
#include "tests/system/Screenshot.h"
#include "tests/system/SystemTest.h"

#include <cstdlib>
#include <filesystem>

namespace zm::test {

class LargerScreen : public SystemTest {
protected:
    /** A red film of that shape plays. */
    void play(const std::string& size, const std::string& screenSize) {
        std::filesystem::create_directory(folder + "/disc");
        const std::string command = "ffmpeg -v error -y -f lavfi -i color=red:size=" + size +
                                    ":rate=25:duration=20 -c:v mpeg2video -b:v 800k -f vob '" + folder +
                                    "/disc/film.mpg'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        startBench({"--no-web", "--launcher", "passive", "--screen", screenSize, "--disc", folder + "/disc"});
        ASSERT_TRUE(eventually([this] { return isRed(400, 200); })) << screen()["video"];
    }
    bool isRed(int x, int y) {
        const std::string file = folder + "/shot.png";
        must({"shot", file});
        const Pixel pixel = pixelOf(file, x, y);
        return pixel.red > 200 && pixel.green < 60 && pixel.blue < 60;
    }
};

TEST_F(LargerScreen, AWideFilmFillsOneOfItsOwnShape) {
    ASSERT_NO_FATAL_FAILURE(play("640x360", "1280x720"));
    for (const auto& [x, y] :
         {std::pair(2, 2), std::pair(1277, 2), std::pair(1277, 717), std::pair(640, 360)}) {
        EXPECT_TRUE(isRed(x, y)) << x << "," << y;
    }
}

TEST_F(LargerScreen, AWideFilmHasItsBarsOnANarrowerOne) {
    ASSERT_NO_FATAL_FAILURE(play("640x360", "1024x600"));
    EXPECT_FALSE(isRed(512, 8)) << "576 of 600 lines are the film's";
    EXPECT_FALSE(isRed(512, 591));
    EXPECT_TRUE(isRed(512, 16));
    EXPECT_TRUE(isRed(512, 583));
    EXPECT_TRUE(isRed(1, 300));
    EXPECT_TRUE(isRed(1022, 300));
}

TEST_F(LargerScreen, AFilmOfTheOldShapeKeepsItInTheMiddle) {
    ASSERT_NO_FATAL_FAILURE(play("320x240", "1280x720"));
    EXPECT_FALSE(isRed(155, 360)) << "960 of 1280 columns are the film's";
    EXPECT_FALSE(isRed(1124, 360));
    EXPECT_TRUE(isRed(164, 360));
    EXPECT_TRUE(isRed(1115, 360));
}

TEST_F(LargerScreen, OtherApplicationsFillItAndLeadBackWhereTheirButtonIsSeen) {
    startBench({"--no-web", "--no-disc-service", "--screen", "1280x720"});
    playMusic();
    must({"click", "main", "6", "3", "1"}); // home
    const std::string file = folder + "/shot.png";
    must({"shot", file});
    const Pixel corner = pixelOf(file, 1279, 719);
    EXPECT_GT(corner.red + corner.green + corner.blue, 0) << "no black beside the page";
    const std::string home = must({"shot", "--digest"});
    must({"touch", "400", "340"}); // where the button lies on the usual screen
    settle();
    EXPECT_EQ(must({"shot", "--digest"}), home);
    must({"touch", "640", "510"});
    settle();
    EXPECT_NE(must({"shot", "--digest"}), home);
}

TEST_F(LargerScreen, ASizeThatNoPageIsMadeForIsRefused) {
    Process refused({"zmbench", "--runtime", folder, "--screen", "1920x1080"}, folder);
    EXPECT_EQ(refused.wait(), 2);
    EXPECT_THAT(refused.err(), HasSubstr("zmbench: --screen: \"1920x1080\" is no size of a screen that the "
                                         "pages are made for, expected 800x480, 1024x600 or 1280x720"));
}

TEST_F(LargerScreen, ARecordNamesItInItsHead) {
    startManual({"--screen", "1024x600"});
    must({"touch", "1023", "599"});
    EXPECT_THAT(must({"record", "--all", "-"}),
                AllOf(HasSubstr(" --screen 1024x600"), HasSubstr("touch 1023 599")));
}

} // namespace zm::test
