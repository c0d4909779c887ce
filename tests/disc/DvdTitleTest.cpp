#include "BuildPaths.h"
#include "tests/disc/DvdFixture.h"

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

TEST_F(Dvd, ChaptersFollowEachOtherInPictureSoundAndNumbers) {
    playTitle(1);
    EXPECT_TRUE(shows(red));
    EXPECT_TRUE(m_unit.sound().waitForTone(440));
    nextPlace(1, 2);
    EXPECT_TRUE(shows(green));
    nextPlace(1, 3);
    EXPECT_TRUE(shows(blue));
    nextPlace(2, 1); // as the disc wants it
    EXPECT_TRUE(shows(cyan));
}

TEST_F(Dvd, TitlesChaptersAndTimesAreChosenByNumber) {
    playTitle(1);
    m_unit.command(183, 3);
    nextPlace(1, 3);
    EXPECT_TRUE(shows(blue));
    m_unit.command(184, 2);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
    m_unit.command(184, 1);
    nextPlace(1, 1);
    m_unit.command(185, 8);
    nextPlace(1, 2);
    nextTime(8, 9);
    EXPECT_TRUE(shows(green));
    for (const auto& [command, number] :
         {std::pair{183, 4}, {183, 0}, {184, 3}, {184, 0}, {185, 18}, {185, -1}}) {
        m_unit.mark();
        m_unit.command(command, number);
        nextTip(1);
    }
    EXPECT_TRUE(shows(green)) << "what is not there changes nothing";
}

TEST_F(Dvd, ATitleIsChosenFromAMenuToo) {
    play(DvdKind::Menus);
    nextMenu();
    m_unit.command(184, 2);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
    nextTime(2, 3);
}

TEST_F(Dvd, ADiscWithAUdfFileSystemAloneIsPlayed) {
    TempFolder folder;
    const std::string image = folder / "dvd.iso";
    const std::string command = std::string(ZM_SOURCE_DIR) + "/tests/disc/make-udf 1.02 '" +
                                dvdFolder(DvdKind::Menus) + "' '" + image + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    playDisc(image);
    nextMenu();
    touchButton(2);
    nextPlace(2, 1);
    EXPECT_TRUE(shows(cyan));
    const auto loaded = m_unit.recorder().all();
    EXPECT_TRUE(std::any_of(loaded.begin(), loaded.end(), [](const Published& each) {
        return each.name == "drivestate" && each.json().value("kind", "") == "DVD-Video" &&
               each.json()["form"] == "UDF 1.02";
    }));
}

TEST_F(Dvd, NextAndPreviousGoOverTheEndsOfTitles) {
    playTitle(1);
    for (const auto& [title, chapter] : {std::pair{1, 2}, {1, 3}, {2, 1}, {2, 2}}) {
        m_unit.command(1);
        nextPlace(title, chapter);
    }
    m_unit.mark();
    m_unit.command(1);
    nextTip(1); // behind the last one there is nothing
    for (const auto& [title, chapter] : {std::pair{2, 1}, {1, 3}, {1, 2}, {1, 1}}) {
        m_unit.command(2);
        nextPlace(title, chapter);
    }
    EXPECT_TRUE(shows(red));
}

TEST_F(Dvd, SoundIsChosenAndToldAndThePlaceStays) {
    playTitle(1);
    EXPECT_TRUE(m_unit.sound().waitForTone(440));
    m_unit.command(11);
    const auto detail =
        m_unit.next("dvdstate", [](const Published& each) { return each.json()["curaudiomode"] == 2; })
            .json();
    EXPECT_EQ(detail["totalaudiomode"], 2);
    EXPECT_EQ(detail["curaudiolan"], "de");
    EXPECT_EQ(detail["audiotype"], "AC-3");
    EXPECT_EQ(detail["audiochannel"], "2.0");
    EXPECT_TRUE(m_unit.sound().waitForTone(880));
    EXPECT_TRUE(shows(red));
    m_unit.command(11);
    m_unit.next("dvdstate", [](const Published& each) { return each.json()["curaudiomode"] == 1; });
    EXPECT_TRUE(m_unit.sound().waitForTone(440));
}

TEST_F(Dvd, EveryKindOfSoundIsHeard) {
    play(DvdKind::Formats);
    m_unit.next("rootmenu", "true");
    m_unit.command(188, 180, 100);
    nextPlace(1, 1);
    EXPECT_TRUE(m_unit.sound().waitForTone(300));
    struct Kind {
        int hertz;
        const char* type;
        const char* language;
    };
    for (const auto& [hertz, type, language] : {Kind{500, "MPEG", "de"}, Kind{700, "LPCM", "fr"},
                                                Kind{900, "DTS", "ja"}, Kind{300, "AC-3", "en"}}) {
        m_unit.command(11);
        const auto detail = m_unit.next(
            "dvdstate", [&, type = type](const Published& each) { return each.json()["audiotype"] == type; });
        EXPECT_EQ(detail.json()["curaudiolan"], language);
        EXPECT_EQ(detail.json()["totalaudiomode"], 4);
        EXPECT_TRUE(m_unit.sound().waitForTone(hertz)) << type << " " << m_unit.sound().tone();
    }
}

TEST_F(Dvd, SixChannelsAreMixedAsLoudAsTwoAre) {
    play(DvdKind::Formats);
    m_unit.next("rootmenu", "true");
    m_unit.command(188, 180, 100);
    nextPlace(1, 1);
    EXPECT_TRUE(m_unit.sound().waitForTone(300));
    // The left one with an eighth of full volume and the middle one with half of that.
    EXPECT_NEAR(m_unit.sound().peak(), 0.125 + 0.0625 * 0.707, 0.02);
    m_unit.command(11);
    EXPECT_TRUE(m_unit.sound().waitForTone(500));
    EXPECT_NEAR(m_unit.sound().peak(), 0.125 * 0.707, 0.02) << "one channel that was spread over two";
}

TEST_F(Dvd, SubtitlesAreShownOneAfterTheOtherThenNone) {
    playTitle(1);
    const auto nextSubtitle = [&](int number) {
        return m_unit.next("dvdstate",
                           [=](const Published& each) { return each.json()["cursubtitlenum"] == number; });
    };
    m_unit.command(18);
    EXPECT_EQ(nextSubtitle(81).json()["cursubtitlelan"], "en");
    m_unit.command(183, 2);
    EXPECT_TRUE(shows(white, MiddleX, 417));
    m_unit.command(18);
    const auto second = nextSubtitle(82).json();
    EXPECT_EQ(second["cursubtitlelan"], "de");
    EXPECT_EQ(second["totalsubtitle"], 2);
    m_unit.command(183, 2);
    EXPECT_TRUE(shows(white, MiddleX, 367));
    EXPECT_TRUE(shows(green, MiddleX, 417));
    m_unit.command(18);
    nextSubtitle(0);
    m_unit.command(183, 3);
    EXPECT_TRUE(shows(blue));
    nextTime(14, 15);
    EXPECT_TRUE(shows(blue, MiddleX, 367));
}

TEST_F(Dvd, AnAngleIsChosenWhereThereAreSome) {
    playTitle(2);
    m_unit.command(1);
    nextPlace(2, 2);
    EXPECT_TRUE(shows(yellow));
    m_unit.command(2);
    nextPlace(2, 1);
    m_unit.command(12);
    const auto detail =
        m_unit.next("dvdstate", [](const Published& each) { return each.json()["curangle"] == 2; }).json();
    EXPECT_EQ(detail["totalangle"], 2);
    m_unit.command(1);
    nextPlace(2, 2);
    EXPECT_TRUE(shows(magenta));
    m_unit.command(184, 1);
    nextPlace(1, 1);
    m_unit.mark();
    m_unit.command(12);
    nextTip(1);
}

TEST_F(Dvd, PauseStandsAndPlayGoesOn) {
    playTitle(1);
    nextTime(1, 2);
    m_unit.command(5);
    m_unit.nextState(PlayState::Paused);
    nextTip(5);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("discstate", "2", 1500ms));
    const auto times = m_unit.since("playtime");
    for (const auto& each : times) {
        EXPECT_LE(nlohmann::json::parse(each)["time"], 3);
    }
    m_unit.command(183, 3); // a jump goes on playing
    m_unit.nextState(PlayState::Playing);
    nextPlace(1, 3);
    EXPECT_TRUE(shows(blue));
    nextTime(14, 15);
}

TEST_F(Dvd, StopKeepsThePlaceAndASecondOneForgetsIt) {
    playTitle(1);
    m_unit.command(183, 2);
    nextPlace(1, 2);
    EXPECT_TRUE(shows(green));
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    nextTip(4);
    EXPECT_TRUE(m_unit.pictures().waitCleared());
    m_unit.command(131);
    m_unit.nextState(PlayState::Playing);
    nextTime(7, 12);
    EXPECT_TRUE(shows(green));
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    m_unit.mark();
    m_unit.command(131);
    m_unit.nextState(PlayState::Playing);
    nextMenu();
}

TEST_F(Dvd, FastModesShowPicturesInBothDirections) {
    play(DvdKind::Film);
    nextPlace(1, 1);
    m_unit.command(3);
    m_unit.nextState(PlayState::Forward);
    m_unit.command(3);
    m_unit.next("playspeed", "4");
    nextTip(19);
    const int frames = m_unit.pictures().frames();
    nextTime(12, 14);
    EXPECT_GE(m_unit.pictures().frames() - frames, 8);
    m_unit.command(4);
    m_unit.next("playspeed", "-2");
    m_unit.nextState(PlayState::Backward);
    nextTime(8, 10);
    m_unit.command(131);
    m_unit.next("playspeed", "1");
    m_unit.nextState(PlayState::Playing);
    nextTime(9, 12);
    EXPECT_TRUE(m_unit.sound().waitForTone(440));
}

TEST_F(Dvd, AFastModeEndsAtTheTitlesEnds) {
    play(DvdKind::Film);
    nextPlace(1, 1);
    nextTime(1, 2);
    m_unit.command(4);
    m_unit.nextState(PlayState::Backward);
    m_unit.nextState(PlayState::Playing);
    nextTime(0, 1);
    for (int i = 0; i < 4; ++i) {
        m_unit.command(3);
    }
    m_unit.next("playspeed", "20");
    m_unit.next("playspeed", "1");
    m_unit.nextState(PlayState::Playing);
    nextTime(18, 20);
}

TEST_F(Dvd, AChapterATitleOrAPassageIsRepeated) {
    playTitle(1);
    m_unit.command(9, 8);
    nextTip(9);
    nextTime(5, 6);
    m_unit.mark();
    nextTime(0, 1);
    EXPECT_TRUE(shows(red));
    m_unit.command(9, 4);
    nextTip(10);
    m_unit.command(183, 3);
    nextPlace(1, 3);
    nextPlace(1, 1);
    EXPECT_TRUE(shows(red));
    m_unit.command(9, 1);
    nextTip(7);
    nextTime(1, 2);
    m_unit.command(10);
    nextTime(3, 4);
    m_unit.command(10);
    nextTip(12);
    m_unit.mark();
    nextTime(1, 2);
    nextTime(3, 3);
    nextTime(1, 2);
    m_unit.command(10);
    nextTip(11);
    nextTime(5, 6);
}

TEST_F(Dvd, AtTheEndOfADiscItStopsOrBeginsAnew) {
    play(DvdKind::Film);
    nextTime(1, 2);
    m_unit.command(185, 19);
    nextTime(19, 20);
    nextPlace(1, 1); // "repeat all" is what a unit starts with
    m_unit.command(9, 1);
    m_unit.command(185, 18);
    nextTime(18, 20);
    m_unit.nextState(PlayState::Stopped);
    m_unit.mark();
    m_unit.command(131);
    m_unit.nextState(PlayState::Playing);
    nextTime(1, 2);
}

TEST_F(Dvd, TheSourceOffAndOnKeepsThePlace) {
    playTitle(1);
    m_unit.command(183, 2);
    nextPlace(1, 2);
    m_unit.command(187, 0, 0);
    m_unit.nextState(PlayState::Stopped);
    EXPECT_TRUE(m_unit.pictures().waitCleared());
    m_unit.command(187, 1, 0);
    m_unit.next("mediatype", "0");
    m_unit.nextState(PlayState::Playing);
    nextTime(7, 11);
    EXPECT_TRUE(shows(green));
}
