#include "tests/disc/CdImage.h"
#include "tests/disc/ServiceFixture.h"

#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <set>

using namespace zm::test;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

std::string catalogueRows(const std::string& file) {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    std::string rows;
    sqlite3_exec(
        database, "SELECT fid, folderid, ftype, filename FROM files ORDER BY fid",
        [](void* text, int count, char** cells, char**) {
            for (int i = 0; i < count; ++i) {
                *static_cast<std::string*>(text) += std::string(i ? "|" : "") + cells[i];
            }
            *static_cast<std::string*>(text) += "\n";
            return 0;
        },
        &rows, nullptr);
    sqlite3_close(database);
    return rows;
}

/** A CD of three tones in the drive of the real service. */
class AudioCdPlay : public DiscService {
protected:
    void SetUp() override {
        m_cue = writeAudioCd(m_disc.path().string(),
                             {{30, 440, "One", "Ann"}, {20, 550, "", ""}, {10, 660, "Three", ""}});
    }
    void playCd() { m_unit.play(m_cue); }
    void shorten(int sectors) {
        std::filesystem::resize_file(m_disc / "disc.bin", size_t(sectors) * SectorBytes);
    }
    Published nextTrackOfCd(int track) {
        return m_unit.next("trackinfo",
                           [=](const Published& each) { return each.json()["mediaid"] == track; });
    }
    // The track plays from its beginning.
    void expectPlays(int track) {
        SCOPED_TRACE(track);
        nextTrackOfCd(track);
        m_unit.nextState(PlayState::Playing);
    }
    void setRepeat(int mode) {
        m_unit.command(9, mode);
        m_unit.next("playstate", [=](const Published& each) { return each.json()["repeat"] == mode; });
    }
    void seekToEndOf(int seconds) {
        m_unit.command(185, seconds - 1);
        nextTime(seconds - 1, seconds - 1);
    }
    Published nextDriveState(const std::string& state) {
        return m_unit.next("drivestate",
                           [=](const Published& each) { return each.json()["state"] == state; });
    }

    std::string m_cue;
};

} // namespace

TEST_F(AudioCdPlay, IsAnnouncedAsADiscOfTracks) {
    m_unit.startService();
    m_unit.mark();
    m_unit.request({{"op", "insert"}, {"path", m_cue}});
    nextDriveState("loaded");
    const auto records = m_unit.recorder().all();
    std::vector<std::string> sequence;
    for (const auto& each : records) {
        if (each.object == "device" || each.name == "discstate" || each.name == "updatedb") {
            sequence.push_back(each.name + "=" + each.value);
        }
    }
    const std::vector<std::string> wanted{"disc=1", "discstate=1", "mixedtype=0", "mediatype=1",
                                          "updatedb=65537"};
    ASSERT_GE(sequence.size(), wanted.size());
    EXPECT_EQ(std::vector(sequence.end() - 5, sequence.end()), wanted);
    EXPECT_EQ(catalogueRows(m_unit.catalogue()), "1|1|1|One\n2|1|1|Track 02\n3|1|1|Three\n");
}

TEST_F(AudioCdPlay, TellsTrackTextsAndTime) {
    m_unit.startService(m_cue);
    m_unit.command(187, 1, 0);
    const auto track = nextTrackOfCd(1).json();
    EXPECT_EQ(track["mediaids"], 3);
    EXPECT_EQ(track["curmediaid"], 1);
    EXPECT_EQ(track["curmediaids"], 3);
    EXPECT_EQ(track["parentFolder"], 1);
    const auto texts = nextTitle("One").json();
    EXPECT_EQ(texts["artist"], "Ann");
    EXPECT_EQ(texts["album"], "Demo CD");
    const auto time = nextTime(1, 9).json();
    EXPECT_EQ(time["tracktime"], 30);
    EXPECT_EQ(time["times"], 30);
    nextTime(time["time"].get<int>() + 1, 29);
}

TEST_F(AudioCdPlay, IsDescribedOnceMoreForAPageThatOpensWhenItPlays) {
    playCd();
    EXPECT_EQ(nextTrackOfCd(1).json()["mediaids"], 3);
    nextTitle("One");
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.mark();
    m_unit.command(187, 1, 0); // an application that has just been started again
    m_unit.nextState(PlayState::Paused);
    nextTrackOfCd(1);
    nextTitle("One");
}

TEST_F(AudioCdPlay, NextAndPreviousGoRoundTheDisc) {
    playCd();
    for (const int track : {2, 3, 1}) {
        m_unit.command(1);
        nextTrackOfCd(track);
        nextTip(3);
        m_unit.nextState(PlayState::Playing);
    }
    m_unit.command(2);
    nextTrackOfCd(3);
    nextTip(2);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(AudioCdPlay, PreviousBeginsATrackAnewThatHasPlayedForThreeSeconds) {
    playCd();
    m_unit.command(1);
    nextTrackOfCd(2);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(185, 5);
    nextTime(5, 7);
    m_unit.mark();
    m_unit.command(2);
    nextTrackOfCd(2);
    nextTip(2);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(2);
    nextTrackOfCd(1);
}

TEST_F(AudioCdPlay, ATrackIsChosenByItsNumber) {
    playCd();
    m_unit.command(182, 3, 1); // a touched row
    nextTrackOfCd(3);
    nextTitle("Three");
    m_unit.nextState(PlayState::Playing);
    m_unit.command(182, 2, 0); // a number that was typed
    nextTrackOfCd(2);
    nextTitle("Track 02"); // the page shows the name of the list
    m_unit.nextState(PlayState::Playing);
    for (const int none : {0, 4, 99}) {
        m_unit.command(182, none, 1);
        nextTip(1);
    }
    nextTime(1, 19);
}

TEST_F(AudioCdPlay, IsPausedSoughtAndRepeatedInPart) {
    playCd();
    m_unit.command(185, 20);
    nextTime(20, 20);
    m_unit.command(5);
    m_unit.nextState(PlayState::Paused);
    m_unit.command(185, 5);
    nextTime(5, 5);
    m_unit.command(5);
    m_unit.nextState(PlayState::Playing);
    const int begin = nextTime(6, 9).json()["time"];
    m_unit.command(10);
    nextTime(begin + 2, 20);
    m_unit.command(10);
    nextTip(12);
    nextTime(begin, begin + 1);
    m_unit.command(22);
    m_unit.nextState(PlayState::Stopped);
    nextTime(0, 0);
}

TEST_F(AudioCdPlay, IsScannedBothWaysAndOnIntoTheNextTrack) {
    playCd();
    m_unit.command(3);
    m_unit.next("playspeed", "2");
    m_unit.nextState(PlayState::Forward);
    nextTip(18);
    nextTime(2, 20);
    m_unit.command(4);
    m_unit.next("playspeed", "-2");
    m_unit.nextState(PlayState::Backward);
    expectPlays(1);
    m_unit.command(185, 25);
    nextTime(25, 25);
    for (int i = 0; i < 4; ++i) {
        m_unit.command(3);
    }
    m_unit.next("playspeed", "20");
    expectPlays(2);
}

TEST_F(AudioCdPlay, TheEndOfTheLastTrackIsWhatTheRepeatModeSays) {
    playCd();
    m_unit.command(182, 3, 0);
    expectPlays(3);
    seekToEndOf(10);
    expectPlays(1); // all
    setRepeat(8);
    m_unit.command(182, 3, 0);
    expectPlays(3);
    seekToEndOf(10);
    expectPlays(3); // one
    setRepeat(1);
    seekToEndOf(10);
    m_unit.nextState(PlayState::Stopped);
    nextTrackOfCd(1); // off: it stands at the beginning
    m_unit.command(5);
    expectPlays(1);
}

TEST_F(AudioCdPlay, ModesLeaveFoldersOut) {
    playCd();
    for (const int mode : {8, 1, 2}) {
        m_unit.command(9);
        m_unit.next("playstate", [=](const Published& each) { return each.json()["repeat"] == mode; });
    }
    for (const int mode : {1, 0}) {
        m_unit.command(7);
        m_unit.next("playstate", [=](const Published& each) { return each.json()["shuffle"] == mode; });
    }
    m_unit.command(9, 4);
    nextTip(1);
    m_unit.command(7, 2);
    nextTip(1);
}

TEST_F(AudioCdPlay, AShuffledRoundPlaysEachTrackOnce) {
    playCd();
    m_unit.command(7, 1);
    std::set<int> tracks{1};
    for (int i = 0; i < 2; ++i) {
        m_unit.command(1);
        const auto other = m_unit.next(
            "trackinfo", [&](const Published& each) { return !tracks.contains(each.json()["mediaid"]); });
        tracks.insert(other.json()["mediaid"].get<int>());
    }
    EXPECT_EQ(tracks, (std::set{1, 2, 3}));
    EXPECT_EQ(m_unit.since("keyinvalid").size(), 0u);
}

TEST_F(AudioCdPlay, WhatOnlyOtherDiscsHaveIsRefused) {
    playCd();
    for (const int command : {11, 12, 18, 19, 20, 21, 145, 163, 183, 184, 188, 189}) {
        m_unit.command(command, 1, 1);
        nextTip(1);
    }
}

TEST_F(AudioCdPlay, IsEjectedAndTheNextDiscShowsNothingOfIt) {
    playCd();
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting);
    m_unit.next("disc", "0");
    m_unit.next("mediatype", "255");
    nextTitle("");
    TempFolder music;
    place(toneFile("mp3", 5, "A file"), music / "1.mp3");
    m_unit.request({{"op", "insert"}, {"path", music.path().string()}});
    m_unit.next("mixedtype", "2");
    m_unit.next("mediatype", "2");
    nextTitle("A file");
    EXPECT_EQ(catalogueRows(m_unit.catalogue()), "1|1|1|A file\n");
}

TEST_F(AudioCdPlay, TheSectorsCanBeInsertedInPlaceOfTheCueSheet) {
    m_unit.play(m_disc / "disc.bin");
    m_unit.command(1);
    expectPlays(2);
}

TEST_F(AudioCdPlay, ATruncatedImagePlaysAsFarAsItGoes) {
    shorten(31 * 75); // one second of track 2, nothing of track 3
    playCd();
    seekToEndOf(30);
    expectPlays(2);
    nextTrackOfCd(3);
    m_unit.next("errorstatus", "32");
    m_unit.next("errorstatus", "0");
    expectPlays(1);
}

TEST_F(AudioCdPlay, TheApplicationsOwnSkipDoesNotSkipTwice) {
    shorten(30 * 75); // only track 1 is whole
    playCd();
    m_unit.command(1);
    m_unit.next("errorstatus", "32");
    m_unit.command(182, 3, 0); // the next track
    nextTrackOfCd(3);
    m_unit.next("errorstatus", "32");
    m_unit.command(182, 1, 0); // at the end the first one
    expectPlays(1);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("msgtip", "1", 500ms));
    for (const auto& track : m_unit.since("trackinfo")) {
        EXPECT_EQ(nlohmann::json::parse(track)["mediaid"], 1);
    }
}

TEST_F(AudioCdPlay, WithoutAnyReadableTrackItIsAnError) {
    shorten(0);
    m_unit.startService(m_cue);
    m_unit.command(187, 1, 0);
    m_unit.nextState(PlayState::Error);
}

TEST_F(AudioCdPlay, WhatCannotBeReadIsRefusedAndTheDiscInsidePlaysOn) {
    playCd();
    TempFolder other;
    writeAudioCd(other.path().string(), {{1, 440}});
    std::filesystem::remove(other / "disc.bin");
    m_unit.request({{"op", "insert"}, {"path", other / "disc.cue"}});
    EXPECT_EQ(nextDriveState("error").json()["text"], (other / "disc.cue") + ": disc.bin: no such file");
    const auto inside = nextDriveState("loaded").json();
    EXPECT_EQ(inside["path"], m_cue) << "which plays on";
    EXPECT_EQ(inside["text"], (other / "disc.cue") + ": disc.bin: no such file");
    writeFile(other / "disc.cue", "rubbish");
    m_unit.request({{"op", "insert"}, {"path", other / "disc.cue"}});
    EXPECT_EQ(nextDriveState("error").json()["text"],
              (other / "disc.cue") + ": line 1: rubbish: no line of a cue sheet");
    nextTime(1, 20);
    EXPECT_TRUE(m_unit.since("disc").empty());
}

TEST_F(AudioCdPlay, ADiscWithDataOnlyHoldsNothingToPlay) {
    writeFile(m_cue, "FILE disc.bin BINARY\nTRACK 01 MODE1/2352\nINDEX 01 00:00:00\n");
    m_unit.startService(m_cue);
    m_unit.next("disc", "1");
    m_unit.nextState(PlayState::Error);
    EXPECT_FALSE(m_unit.follows("mediatype", "1", 100ms));
}
