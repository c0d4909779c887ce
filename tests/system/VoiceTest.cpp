#include "tests/system/MusicFolder.h"
#include "tests/system/Pages.h"
#include "tests/system/SystemTest.h"

#include <cstdlib>
#include <filesystem>

namespace zm::test {

namespace {

constexpr int FilmBar = 2;
constexpr int LeaveFilm = 4;
constexpr int MusicTab = 503;
constexpr int FilmTab = 504;
constexpr int AllMusic = 542;

constexpr int MusicType = 2;
constexpr int FilmType = 3;
constexpr int PhotoType = 4;

} // namespace

/** A song that is asked for while something else plays, and lists that are only looked at. */
class Voice : public SystemTest {
protected:
    void writeSongs() {
        writeMusicFolder(disc(), 3); // the first of them plays by itself
        std::filesystem::rename(disc() + "/song 3.wav", disc() + "/Song of Fog.wav");
    }
    void writeFilm(const std::string& to) {
        std::filesystem::create_directories(to);
        make("-f lavfi -i color=red:size=160x120:rate=25:duration=60 -c:v mpeg2video -f vob",
             to + "/film.mpg");
    }
    void writePhoto() { make("-f lavfi -i color=blue:size=160x120 -frames:v 1", disc() + "/photo.png"); }

    std::string disc() { return folder + "/disc"; }
    std::string filmDisc() { return folder + "/films"; }

    void startMixed() {
        writeSongs();
        writeFilm(disc());
        writePhoto();
        start(disc());
        ASSERT_TRUE(eventually([this] { return plays(MusicType) && window() == PlayPage; }));
    }
    void start(const std::string& inside) {
        startBench({"--no-web", "--launcher", "passive", "--disc", inside});
    }

    void click(int page, int control, const std::string& view = "main") {
        must({"click", view, std::to_string(page), std::to_string(control), "1"});
    }
    void openList(int tab, size_t rows) {
        click(MediaPage, tab);
        ASSERT_TRUE(eventually([&] { return item(MediaPage, List)["rows"].size() == rows; }));
    }
    /** Touches the only row of that tab's list. */
    void choose(int tab, int kind) {
        openList(tab, 1);
        const Json rect = item(MediaPage, List)["rect"];
        must({"touch", std::to_string(rect[0].get<int>() + 100), std::to_string(rect[1].get<int>() + 30)});
        ASSERT_TRUE(eventually([&] { return plays(kind) && window() == VideoPage; })) << state();
    }
    void chooseFilm() { choose(FilmTab, FilmType); }
    void say(const std::string& request) { must({"appdata", request}); }

    std::string value(const std::string& object, const std::string& name) {
        for (const auto& line : lines({"pps", "get", "zelmar/disc/" + object})) {
            if (line.starts_with(name + ":")) {
                return line.substr(line.find(':', name.size() + 1) + 1);
            }
        }
        return "";
    }
    bool plays(int kind) {
        return value("device", "mediatype") == std::to_string(kind) && value("status", "discstate") == "2";
    }
    bool playsFog() {
        return plays(MusicType) && window() == PlayPage && item(PlayPage, Title)["text"] == "Song of Fog";
    }
    int seconds() { return Json::parse(value("playing", "playtime"))["time"]; }
    std::string state() {
        return "kind " + value("device", "mediatype") + ", state " + value("status", "discstate") +
               ", page " + std::to_string(window()) + ", " + item(PlayPage, Title)["text"].get<std::string>();
    }
    /** The film has gone on without a break for three seconds more. */
    void expectFilmGoesOn() {
        const int before = seconds();
        EXPECT_TRUE(eventually([&] { return !plays(FilmType) || seconds() >= before + 3; }));
        EXPECT_TRUE(plays(FilmType)) << state();
        EXPECT_GE(seconds(), before + 3);
    }

private:
    void make(const std::string& arguments, const std::string& file) {
        const std::string command = "ffmpeg -v error -y " + arguments + " '" + file + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
};

TEST_F(Voice, ASongThatIsAskedForOverAFilmPlays) {
    startMixed();
    chooseFilm();
    say("--song=\"Fog\"");
    EXPECT_TRUE(eventually([this] { return playsFog(); })) << state();
}

TEST_F(Voice, ASongThatIsAskedForOverAPhotoPlays) {
    startMixed();
    choose(PhotoTab, PhotoType);
    say("--singer=Fog");
    EXPECT_TRUE(eventually([this] { return playsFog(); })) << state();
}

TEST_F(Voice, ASongThatIsAskedForOverAListOfAnyKindPlays) {
    startMixed();
    for (const int tab : {FilmTab, MusicTab}) {
        chooseFilm();
        click(FilmBar, LeaveFilm, "osd");
        ASSERT_TRUE(eventually([this] { return window() == MediaPage; }));
        click(MediaPage, tab);
        expectFilmGoesOn();
        say("--song=Fog");
        EXPECT_TRUE(eventually([this] { return playsFog(); })) << tab << ": " << state();
    }
}

TEST_F(Voice, ListsThatAreLookedAtLeaveTheFilmAlone) {
    startMixed();
    chooseFilm();
    for (int round = 0; round < 2; ++round) { // the second time no list is fetched anew
        click(FilmBar, LeaveFilm, "osd");
        ASSERT_TRUE(eventually([this] { return window() == MediaPage; }));
        openList(MusicTab, 3);
        click(MediaPage, Folders);
        click(MediaPage, AllMusic);
        openList(PhotoTab, 1);
        openList(MusicTab, 3);
        expectFilmGoesOn();
        openList(FilmTab, 1);
    }
}

TEST_F(Voice, ListsThatAreLookedAtLeaveTheFilmOfANewDiscAlone) {
    writeFilm(filmDisc());
    start(filmDisc());
    ASSERT_TRUE(eventually([this] { return plays(FilmType) && window() == VideoPage; })) << state();
    click(FilmBar, LeaveFilm, "osd");
    openList(FilmTab, 1);
    writeSongs();
    writeFilm(disc());
    must({"insert", "--wait", disc()});
    ASSERT_TRUE(eventually([this] { return plays(MusicType) && window() == PlayPage; })) << state();
    chooseFilm();
    click(FilmBar, LeaveFilm, "osd");
    openList(MusicTab, 3);
    expectFilmGoesOn();
    say("--song=Fog");
    EXPECT_TRUE(eventually([this] { return playsFog(); })) << state();
}

TEST_F(Voice, ASongThatIsNowhereEndsTheFilmForTheMusic) {
    startMixed();
    chooseFilm();
    say("--song=Nowhere");
    EXPECT_TRUE(eventually([this] { return plays(MusicType); })) << state();
    EXPECT_TRUE(
        eventually([this] { return must({"log"}).find("not found this song") != std::string::npos; }));
}

TEST_F(Voice, ADiscWithoutMusicPlaysOn) {
    writeFilm(filmDisc());
    start(filmDisc());
    ASSERT_TRUE(eventually([this] { return plays(FilmType) && window() == VideoPage; })) << state();
    say("--song=Fog");
    EXPECT_TRUE(eventually([this] { return item(MediaPage, EmptyText)["text"] == "No music here"; }));
    expectFilmGoesOn();
}

TEST_F(Voice, ANumberOfTheKeyboardIsNoSong) {
    startMixed();
    chooseFilm();
    say("--kb_val=1 --kb_ret=1 --song=Fog");
    expectFilmGoesOn();
}

} // namespace zm::test
