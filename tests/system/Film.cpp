#include "tests/system/Film.h"

#include "tests/system/Screenshot.h"

#include <cstdlib>
#include <filesystem>

namespace zm::test {

void Film::startFilm() {
    makeFilm();
    startBench({"--no-web", "--launcher", "passive", "--disc", disc()});
    ASSERT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

void Film::makeFilm() {
    std::filesystem::create_directory(disc());
    const std::string command = "ffmpeg -v error -y -f lavfi -i color=red:size=320x240:rate=25:duration=20 "
                                "-f lavfi -i sine=frequency=440:duration=20 -c:v mpeg2video -b:v 800k "
                                "-c:a mp2 -f vob '" +
                                disc() + "/film.mpg'";
    ASSERT_EQ(std::system(command.c_str()), 0);
}

// The middle of the upper half is the film's, whatever lies over its lower edge.
bool Film::seesRed() {
    const std::string file = folder + "/shot.png";
    must({"shot", file});
    const Pixel pixel = pixelOf(file, ScreenWidth / 2, ScreenHeight / 3);
    return pixel.red > 200 && pixel.green < 60 && pixel.blue < 60;
}

bool Film::filmRuns() {
    const Json all = screen();
    return all["main"]["window"] == 17 && all["video"]["visible"] == true && seesRed();
}

bool Film::isHidden() {
    const Json all = screen();
    return all["main"]["window"] == 10 && all["video"]["visible"] == false && !seesRed();
}

Words Film::showAnywayPlace() {
    const Json rect = item(10, 2103)["rect"];
    return {std::to_string(rect[0].get<int>() + rect[2].get<int>() / 2),
            std::to_string(rect[1].get<int>() + rect[3].get<int>() / 2)};
}

void Film::showAnyway() {
    const Words place = showAnywayPlace();
    must({"touch", place[0], place[1]});
}

void Film::killAndWatch(const std::string& process) {
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

void Film::drive(bool driving) {
    must({"device", "2", driving ? "0" : "1"});
    settle();
}

} // namespace zm::test
