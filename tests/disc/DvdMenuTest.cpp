#include "tests/disc/DvdFixture.h"

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

// Where on the screen the frame of a button is seen: its left line.
namespace {
constexpr int FrameX = 177;
int frameY(int button) {
    return 33 + 100 * button;
}
} // namespace

TEST_F(Dvd, IsAnnouncedAndShowsItsMenuWithTheFirstButtonChosen) {
    m_unit.startService();
    m_unit.mark();
    m_unit.request({{"op", "insert"}, {"path", dvdImage(DvdKind::Menus)}});
    m_unit.next("mixedtype", "0");
    m_unit.next("mediatype", "0");
    m_unit.command(187, 1, 0);
    m_unit.next("videomode", "1");
    m_unit.next("trackinfo", [](const Published& each) {
        return each.json()["titles"] == 2 && each.json()["title"] == 0 && each.json()["chapter"] == 0;
    });
    m_unit.nextState(PlayState::Playing);
    nextMenu();
    EXPECT_TRUE(shows(yellow, FrameX, frameY(1)));
    EXPECT_TRUE(shows(menuBlue, FrameX - 40, frameY(2)));
}

TEST_F(Dvd, AFolderWithItsFilesIsOneToo) {
    playDisc(dvdFolder(DvdKind::Menus));
    nextMenu();
}

TEST_F(Dvd, AFolderWithSmallLettersIsOneToo) {
    TempFolder disc;
    std::filesystem::create_directories(disc / "video_ts");
    for (const auto& file : std::filesystem::directory_iterator(dvdFolder(DvdKind::Menus) + "/VIDEO_TS")) {
        std::string name = file.path().filename().string();
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        std::filesystem::create_symlink(file.path(), disc / ("video_ts/" + name));
    }
    playDisc(disc.path().string());
    nextMenu();
    touchButton(2);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
}

TEST_F(Dvd, AFolderWhoseNamesCarryVersionsIsOneToo) {
    TempFolder disc;
    std::filesystem::create_directories(disc / "VIDEO_TS");
    for (const auto& file : std::filesystem::directory_iterator(dvdFolder(DvdKind::Menus) + "/VIDEO_TS")) {
        std::filesystem::create_symlink(file.path(),
                                        disc / ("VIDEO_TS/" + file.path().filename().string() + ";1"));
    }
    playDisc(disc.path().string());
    nextMenu();
    touchButton(2);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
}

TEST_F(Dvd, ATouchPressesTheButtonUnderTheFinger) {
    play(DvdKind::Menus);
    nextMenu();
    m_unit.command(188, 600, 20); // beside all of them
    touchButton(2);
    m_unit.next("rootmenu", "false");
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
}

TEST_F(Dvd, AButtonCanLeadToAChapter) {
    play(DvdKind::Menus);
    nextMenu();
    touchButton(3);
    const auto track = nextPlace(1, 3).json();
    EXPECT_EQ(track["chapters"], 3);
    EXPECT_EQ(track["titles"], 2);
    EXPECT_TRUE(shows(blue));
    EXPECT_EQ(nextTime(12, 13).json()["tracktime"], 18);
}

TEST_F(Dvd, AStillMenuStaysUntilSomebodyChooses) {
    play(DvdKind::Menus);
    nextMenu();
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("rootmenu", "false", 3s));
    EXPECT_TRUE(shows(yellow, FrameX, frameY(1)));
}

TEST_F(Dvd, TheMenuKeyLeadsToTheMenuAndBackToWhereTheFilmWasLeft) {
    playTitle(1);
    nextTime(2, 3);
    m_unit.command(21);
    nextMenu();
    m_unit.command(21);
    nextPlace(1, 1);
    EXPECT_TRUE(shows(red));
    const auto time = m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 1; });
    EXPECT_LE(time.json()["time"], 4);
    m_unit.command(145); // the disc's own menu
    nextMenu();
}

TEST_F(Dvd, AMenuThatMovesComesAgainWithItsSoundAfterTheLogo) {
    play(DvdKind::Formats);
    EXPECT_TRUE(shows(white));
    m_unit.next("rootmenu", "true");
    EXPECT_TRUE(m_unit.sound().waitForTone(220));
    EXPECT_TRUE(shows(yellow, 76, 100));
    // It lasts 3 s.
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("rootmenu", "false", 5s));
    EXPECT_TRUE(m_unit.sound().waitForTone(220));
    m_unit.command(188, 520, 220); // title 3
    nextPlace(3, 1);
    EXPECT_TRUE(shows(blue));
    EXPECT_TRUE(shows(red));
    m_unit.next("rootmenu", "true");
}

TEST_F(Dvd, StillPicturesOfATitleFollowEachOther) {
    play(DvdKind::Formats);
    m_unit.next("rootmenu", "true");
    m_unit.command(188, 520, 100);
    nextPlace(2, 1);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(shows(red));
    EXPECT_TRUE(shows(green));
    EXPECT_TRUE(shows(blue));
    EXPECT_GT(std::chrono::steady_clock::now() - begin, 3500ms);
    m_unit.next("rootmenu", "true");
}

TEST_F(Dvd, TheEdgeOfAButtonIsWhereItIsSeen) {
    play(DvdKind::Menus);
    nextMenu();
    // A picture of 4:3 begins 80 pixels from the left of 800, its buttons at pixel 164.
    m_unit.command(188, 140, 233);
    EXPECT_FALSE(m_unit.follows("rootmenu", "false", 700ms));
    m_unit.command(188, 156, 233);
    nextPlace(2, 1);
}
