#include "services/disc/player/ResumeFile.h"
#include "tests/disc/CdImage.h"
#include "tests/disc/ServiceFixture.h"

#include <filesystem>

using namespace zm::test;
using namespace zm::disc::model;
using namespace zm::disc::player;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

/** Discs that are put in again. */
class DiscServiceResume : public DiscService {
protected:
    void eject() {
        m_unit.mark();
        m_unit.command(13);
        m_unit.next("disc", "0");
    }
    void insert(const std::string& path) {
        m_unit.mark();
        m_unit.request({{"op", "insert"}, {"path", path}});
    }
    void insertAgain() {
        eject();
        insert(m_disc.path().string());
    }
    // The head unit is switched off and on; the disc stays inside.
    void powerCycle() {
        m_unit.stopService();
        m_unit.stopObjects();
        m_unit.startObjects();
        m_unit.mark();
        m_unit.startService(m_disc.path().string());
        m_unit.command(187, 1);
    }
    void choose(int folder, int file, int kind = 1) {
        m_unit.command(182, folder << 16 | file, kind);
        nextTrack(folder, file);
        m_unit.nextState(PlayState::Playing);
    }
    void expectModes(int repeat, int shuffle) {
        m_unit.next("playstate", [=](const Published& each) {
            return each.json()["repeat"] == repeat && each.json()["shuffle"] == shuffle;
        });
    }
    // The next item that starts, and the first time that it tells.
    void expectStarts(int folder, int file, int from, int to) {
        const auto track =
            m_unit.next("trackinfo", [](const Published& each) { return each.json()["curmediaid"] != 0; });
        EXPECT_EQ(track.json()["parentFolder"], folder);
        EXPECT_EQ(track.json()["curmediaid"], file);
        m_unit.nextState(PlayState::Playing);
        const auto time = m_unit.next("playtime", [](const Published&) { return true; }).json()["time"];
        EXPECT_GE(time, from);
        EXPECT_LE(time, to);
    }
};

} // namespace

TEST_F(DiscServiceResume, ItemPositionAndModesComeBackWithTheDisc) {
    play();
    choose(2, 2);
    m_unit.command(9, 4);
    m_unit.command(7, 2);
    expectModes(4, 2);
    m_unit.command(185, 12);
    nextTime(12, 13);
    eject();
    TempFolder other;
    place(toneFile("ogg", 30, "Another"), other / "x.ogg");
    insert(other.path().string());
    nextTitle("Another");
    m_unit.command(9, 2);
    m_unit.command(7, 4);
    expectModes(2, 0);
    eject();
    insert(m_disc.path().string());
    expectModes(4, 2);
    expectStarts(2, 2, 12, 16);
}

TEST_F(DiscServiceResume, TheyComeBackAfterPowerOff) {
    play();
    choose(2, 3);
    m_unit.command(9, 8);
    expectModes(8, 0);
    m_unit.command(185, 20);
    nextTime(20, 21);
    powerCycle();
    expectModes(8, 0);
    expectStarts(2, 3, 20, 23);
}

TEST_F(DiscServiceResume, WhatIsKeptWhilePlayingIsNeverTenSecondsOld) {
    play();
    nextTime(11, 11, 60s);
    const auto discs = ResumeFile(m_unit.resume()).read();
    ASSERT_EQ(discs.size(), 1u);
    EXPECT_GE(discs[0].point.position, 1s);
    EXPECT_EQ(discs[0].point.fileId, 1);
    nextTime(16, 16, 60s);
    EXPECT_GE(ResumeFile(m_unit.resume()).read().at(0).point.position, 6s);
}

TEST_F(DiscServiceResume, APausedDiscIsKeptAtOnce) {
    play();
    nextTime(3, 3);
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    for (int i = 0; i < 500 && ResumeFile(m_unit.resume()).read().at(0).point.position < 2500ms; ++i) {
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_GE(ResumeFile(m_unit.resume()).read().at(0).point.position, 2500ms);
}

TEST_F(DiscServiceResume, ANewDiscPlaysItsFirstItem) {
    play();
    choose(2, 2);
    eject();
    place(toneFile("mp3", 30, "One more"), m_disc / "b/1.mp3");
    insert(m_disc.path().string());
    expectStarts(1, 1, 0, 2);
}

TEST_F(DiscServiceResume, PhotosOfTheSameNamesAndOtherSizesAreANewDisc) {
    TempFolder here;
    TempFolder there;
    const std::string quarter = sample({"quarter.jpg", "-f lavfi -i color=red:size=400x240 -frames:v 1"});
    const std::string whole = sample({"whole.jpg", "-f lavfi -i color=red:size=800x480 -frames:v 1"});
    for (const char* name : {"1.jpg", "2.jpg"}) {
        place(quarter, here / name);
        place(whole, there / name);
    }
    m_unit.play(here.path().string());
    m_unit.command(1);
    nextTrack(1, 2);
    m_unit.nextState(PlayState::Playing);
    eject();
    insert(there.path().string());
    expectStarts(1, 1, 0, 0);
    eject();
    insert(here.path().string());
    expectStarts(1, 2, 0, 0);
}

TEST_F(DiscServiceResume, ADiscIsKnownByItsContentsWhereverItLies) {
    play();
    choose(2, 2);
    eject();
    TempFolder copy;
    fs::copy(m_disc.path(), copy / "again", fs::copy_options::recursive);
    insert(copy / "again");
    expectStarts(2, 2, 0, 5);
}

TEST_F(DiscServiceResume, AnotherKindThanTheFirstIsAnnouncedFromTheBeginning) {
    place(sample({"quarter.jpg", "-f lavfi -i color=red:size=400x240 -frames:v 1"}), m_disc / "a/x.jpg");
    place(sample({"other.jpg", "-f lavfi -i color=blue:size=400x240 -frames:v 1"}), m_disc / "a/y.jpg");
    play();
    m_unit.command(186, 4, 1);
    choose(2, 2, 2);
    insertAgain();
    m_unit.next("mixedtype", "10");
    EXPECT_EQ(m_unit.next("mediatype", [](const Published&) { return true; }).value, "4");
    expectStarts(2, 2, 0, 0);
}

TEST_F(DiscServiceResume, AnAudioCdIsKnownByItsTracks) {
    TempFolder cds;
    const auto ours = writeAudioCd(cds / "ours", {{20, 440, "One", "Ann"}, {20, 550, "Two", "Ann"}});
    const auto same = writeAudioCd(cds / "same", {{20, 330, "Uno", "Eva"}, {20, 220, "Due", "Eva"}});
    const auto other = writeAudioCd(cds / "other", {{20, 440, "One", "Ann"}, {21, 550, "Two", "Ann"}});
    m_unit.play(ours);
    m_unit.command(182, 2, 1);
    nextTitle("Two");
    m_unit.nextState(PlayState::Playing);
    m_unit.command(185, 10);
    nextTime(10, 11);
    eject();
    insert(other);
    expectStarts(1, 1, 0, 2);
    eject();
    insert(same);
    expectStarts(1, 2, 10, 14);
}

TEST_F(DiscServiceResume, ADamagedFileIsPutAsideAndTheFirstItemPlays) {
    play();
    choose(2, 2);
    m_unit.stopService();
    writeFile(m_unit.resume(), std::string(3000, 'x'));
    powerCycle();
    expectStarts(1, 1, 0, 2);
    EXPECT_TRUE(fs::exists(m_unit.resume() + ".damaged"));
}

TEST_F(DiscServiceResume, AFileThatCannotBeWrittenDoesNotKeepADiscFromPlaying) {
    fs::create_directory(m_unit.resume());
    play();
    choose(2, 2);
    insertAgain();
    expectStarts(2, 2, 0, 5);
}

TEST_F(DiscServiceResume, ADiscThatHasEndedBeginsAnew) {
    play();
    m_unit.command(9, 1);
    expectModes(1, 0);
    choose(2, 3);
    m_unit.command(185, 29);
    m_unit.nextState(PlayState::Stopped);
    insertAgain();
    expectStarts(1, 1, 0, 2);
}
