#include "tests/system/MusicFolder.h"
#include "tests/system/Pages.h"
#include "tests/system/SystemTest.h"

#include <csignal>
#include <filesystem>
#include <fstream>

namespace zm::test {

namespace {

constexpr int FolderPage = 25;

} // namespace

/** What the driver reads of a disc of files, on the lists and on the play page. */
class Library : public SystemTest {
protected:
    Library() {
        writeMusicFolder(folder + "/disc/Album", 2);
        rename("Album/song 1.wav", "Album/01 - The First Song.wav");
        rename("Album/song 2.wav", "Album/02 - The Second Song.wav");
        for (const char* photo : {"Album/cover.jpg", "Trip/beach.jpg"}) {
            std::filesystem::create_directories(
                std::filesystem::path(folder + "/disc/" + photo).parent_path());
            std::ofstream(folder + "/disc/" + photo) << "no picture";
        }
        start();
    }

    void start(const Words& more = {}) {
        Words words{"--no-web", "--launcher", "passive", "--disc", folder + "/disc"};
        words.insert(words.end(), more.begin(), more.end());
        startBench(words);
    }
    std::string elapsed() { return item(PlayPage, Elapsed)["text"]; }
    bool playsOn(const std::string& from) { return plays("The Second Song") && elapsed() >= from; }
    // Seconds of the item that plays, as the disc service tells them.
    int publishedTime() {
        for (const auto& line : lines({"pps", "get", "zelmar/disc/playing"})) {
            if (const std::string prefix = "playtime:json:"; line.starts_with(prefix)) {
                return Json::parse(line.substr(prefix.size()))["time"];
            }
        }
        return -1;
    }
    // No program gets a moment for an orderly end: a child hears of the bench's death, but stands still then.
    void powerOff() {
        const auto pids = children();
        for (const int pid : pids) {
            ::kill(pid, SIGSTOP);
        }
        bench->signal(SIGKILL);
        EXPECT_EQ(bench->wait(), 1000 + SIGKILL);
        for (const int pid : pids) {
            ::kill(pid, SIGKILL);
        }
    }
    void playSecondSong() {
        ASSERT_TRUE(eventually([this] { return plays("The First Song"); })) << screen()["main"];
        must({"appdata", "--song=second song"});
        ASSERT_TRUE(eventually([this] { return plays("The Second Song"); })) << screen()["main"];
        must({"pps", "put", "zelmar/disc/control", R"(zmcmd:json:{"cmd":185,"param1":30,"param2":0})"});
        ASSERT_TRUE(eventually([this] { return playsOn("00:36"); })) << screen()["main"];
    }

    void rename(const std::string& from, const std::string& to) {
        std::filesystem::rename(folder + "/disc/" + from, folder + "/disc/" + to);
    }
    void click(int window, int control) {
        must({"click", "main", std::to_string(window), std::to_string(control), "1"});
    }
    bool plays(const std::string& title) {
        return window() == PlayPage && item(PlayPage, Title)["text"] == title;
    }
    bool lists(int page, const Words& rows) {
        Words shown;
        const Json list = item(page, List);
        for (const auto& row : list["rows"]) {
            shown.push_back(row["text"]);
        }
        return window() == page && shown == rows;
    }
    void touchRow(int page, int row) {
        const Json rect = item(page, List)["rect"];
        const int height = rect[3].get<int>() / 5;
        must({"touch", std::to_string(rect[0].get<int>() + 100),
              std::to_string(rect[1].get<int>() + height * row + height / 2)});
    }
};

TEST_F(Library, SongsAreShownAndAskedForByTheirNames) {
    ASSERT_TRUE(eventually([this] { return plays("The First Song"); })) << screen()["main"];
    click(PlayPage, ToList);
    EXPECT_TRUE(eventually([this] {
        return lists(MediaPage, {"1  The First Song", "2  The Second Song"});
    })) << item(MediaPage, List);
    must({"appdata", "--song=second song"});
    EXPECT_TRUE(eventually([this] { return plays("The Second Song"); })) << screen()["main"];
}

TEST_F(Library, AfterAPowerOffTheSongGoesOnWhereItWas) {
    playSecondSong();
    for (int round = 0; round < 2; ++round) {
        const int left = publishedTime();
        ASSERT_GE(left, 30);
        powerOff();
        start();
        ASSERT_TRUE(eventually([this] { return plays("The Second Song"); })) << screen()["main"];
        // Read at once: what plays meanwhile must not make up for what was lost.
        const int found = publishedTime();
        EXPECT_GE(found, left - 10) << round;
        EXPECT_LE(found, left + 5) << round;
        EXPECT_TRUE(eventually([this] { return elapsed() >= "00:30"; })) << screen()["main"];
    }
}

TEST_F(Library, WhereDiscsWereLeftCanBeKeptOutsideOfTheRuntimeFolder) {
    const TemporaryFolder data;
    const std::string file = data.path() + "/discs";
    endBench();
    std::filesystem::remove(folder + "/resume.sqlite");
    start({"--resume", file});
    playSecondSong();
    endBench();
    EXPECT_FALSE(std::filesystem::exists(folder + "/resume.sqlite"));
    start({"--resume", file});
    EXPECT_TRUE(eventually([this] { return playsOn("00:30"); })) << screen()["main"];
}

TEST_F(Library, PhotosAreListedWithoutCoversAndAFolderWithoutAnySaysSo) {
    ASSERT_TRUE(eventually([this] { return plays("The First Song"); })) << screen()["main"];
    click(PlayPage, ToList);
    ASSERT_TRUE(eventually([this] { return window() == MediaPage; }));
    click(MediaPage, PhotoTab);
    EXPECT_TRUE(eventually([this] { return lists(MediaPage, {"1  beach"}); })) << item(MediaPage, List);
    click(MediaPage, Folders);
    EXPECT_TRUE(eventually([this] {
        return lists(MediaPage, {"1  disc", "2  Trip"});
    })) << item(MediaPage, List)
        << "of the folders with photos in or below them";
    touchRow(MediaPage, 0);
    EXPECT_TRUE(eventually([this] {
        return lists(FolderPage, {}) && item(FolderPage, EmptyText)["visible"] == true &&
               item(FolderPage, EmptyText)["text"] == "No photos here";
    })) << item(FolderPage, EmptyText);
}

} // namespace zm::test
