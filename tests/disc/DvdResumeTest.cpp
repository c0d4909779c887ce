#include "services/disc/player/ResumeFile.h"
#include "tests/disc/DvdFixture.h"

#include <filesystem>

using namespace zm::disc::model;
using namespace zm::disc::player;
using namespace zm::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

/** DVDs that are put in again. */
class DvdAgain : public Dvd {
protected:
    void eject() {
        m_unit.mark();
        m_unit.command(13);
        m_unit.next("disc", "0");
    }
    void insert(const std::string& path) {
        m_unit.mark();
        watch();
        m_unit.request({{"op", "insert"}, {"path", path}});
    }
    void insertAgain() {
        eject();
        insert(dvdImage(DvdKind::Menus));
    }
    // The head unit is switched off and on; the disc stays inside.
    void powerCycle() {
        m_unit.stopService();
        m_unit.stopObjects();
        m_unit.startObjects();
        m_unit.mark();
        watch();
        playDisc(dvdImage(DvdKind::Menus));
    }
    void playTitleUntil(int title, int time) {
        m_unit.command(184, title);
        nextPlace(title, 1);
        m_unit.command(185, time);
        nextTime(time, time + 2);
    }
    /** The first place that is published once a disc was put in. */
    void expectBegins(int title, int chapter, int from, int to) {
        const auto place =
            m_unit.next("trackinfo", [](const Published& each) { return each.json()["title"] != 0; }).json();
        EXPECT_EQ(place["title"], title);
        EXPECT_EQ(place["chapter"], chapter);
        const auto time =
            m_unit.next("playtime", [](const Published& each) { return each.json()["tracktime"] != 0; });
        EXPECT_GE(time.json()["time"], from);
        EXPECT_LE(time.json()["time"], to);
    }
    /** It begins with its menu, as a new disc. */
    void expectBeginsAnew() {
        nextMenu();
        for (const auto& each : published("trackinfo")) {
            EXPECT_EQ(nlohmann::json::parse(each)["title"], 0);
        }
    }
};

} // namespace

TEST_F(DvdAgain, TitleTimeSoundSubtitleAndModesComeBackWithTheDisc) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(1, 8);
    m_unit.command(11);
    m_unit.next("dvdstate", [](const Published& each) { return each.json()["curaudiomode"] == 2; });
    m_unit.command(18);
    m_unit.next("dvdstate", [](const Published& each) { return each.json()["cursubtitlenum"] == 81; });
    m_unit.command(9, 4);
    nextTip(10);
    nextTime(9, 10);
    insertAgain();
    m_unit.next("playstate", [](const Published& each) { return each.json()["repeat"] == 4; });
    expectBegins(1, 2, 8, 12);
    const auto detail = nlohmann::json::parse(published("dvdstate").back());
    EXPECT_EQ(detail["curaudiomode"], 2);
    EXPECT_EQ(detail["cursubtitlenum"], 81);
    EXPECT_TRUE(shows(green));
    EXPECT_TRUE(m_unit.sound().waitForTone(880));
    EXPECT_TRUE(published("msgtip").empty()) << "nothing was refused";
}

TEST_F(DvdAgain, TheyComeBackAfterPowerOffAlsoFromAFolder) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(1, 13);
    powerCycle();
    expectBegins(1, 3, 13, 16);
    EXPECT_TRUE(shows(blue));
    eject();
    insert(dvdFolder(DvdKind::Menus));
    expectBegins(1, 3, 13, 17);
}

TEST_F(DvdAgain, WhatIsKeptWhilePlayingIsNeverTenSecondsOld) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(1, 1);
    nextTime(11, 11);
    const auto discs = ResumeFile(m_unit.resume()).read();
    ASSERT_EQ(discs.size(), 1u);
    EXPECT_GE(discs[0].point.position, 1s);
    EXPECT_EQ(discs[0].point.folderId, 1);
}

TEST_F(DvdAgain, AMenuThatTheUserHasCalledIsALookAside) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(1, 8);
    m_unit.command(21);
    nextMenu();
    insertAgain();
    expectBegins(1, 2, 7, 12);
    EXPECT_TRUE(shows(green));
}

TEST_F(DvdAgain, AMenuToWhichTheDiscHasComeIsItsEnd) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(2, 7);
    nextMenu();
    insertAgain();
    expectBeginsAnew();
}

TEST_F(DvdAgain, ADiscThatWasStoppedTwiceBeginsAnew) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(1, 8);
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    insertAgain();
    expectBeginsAnew();
}

TEST_F(DvdAgain, ADiscThatWasStoppedOnceGoesOn) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(1, 8);
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    insertAgain();
    expectBegins(1, 2, 7, 11);
}

TEST_F(DvdAgain, ADiscThatHasEndedBeginsAnew) {
    play(DvdKind::Film);
    m_unit.command(9, 1);
    nextTip(7);
    nextTime(1, 2);
    m_unit.command(185, 18);
    m_unit.nextState(PlayState::Stopped);
    eject();
    insert(dvdImage(DvdKind::Film));
    expectBegins(1, 1, 0, 2);
}

TEST_F(DvdAgain, AnotherDiscIsANewOne) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(1, 8);
    eject();
    insert(dvdImage(DvdKind::Film));
    expectBegins(1, 1, 0, 2);
    eject();
    insert(dvdImage(DvdKind::Menus));
    expectBegins(1, 2, 7, 12);
}

TEST_F(DvdAgain, APlaceThatTheDiscDoesNotHaveIsItsBeginning) {
    play(DvdKind::Menus);
    nextMenu();
    playTitleUntil(1, 8);
    m_unit.stopService();
    ResumeFile file(m_unit.resume());
    auto discs = file.read();
    ASSERT_EQ(discs.size(), 1u);
    discs[0].point.folderId = 7;
    ASSERT_TRUE(file.write(discs));
    powerCycle();
    expectBeginsAnew();
}

TEST_F(Dvd, TheSourceOnAfterTwoStopsBeginsWithTheFirstPlay) {
    playTitle(1);
    for (int i = 0; i < 2; ++i) {
        m_unit.command(22);
        m_unit.nextState(PlayState::Stopped);
    }
    m_unit.command(187, 0, 0);
    m_unit.nextState(PlayState::Stopped);
    m_unit.mark();
    m_unit.command(187, 1, 0);
    m_unit.nextState(PlayState::Playing);
    nextMenu();
}
