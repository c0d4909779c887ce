#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace zm::test;
using namespace zm::disc;
using namespace std::chrono_literals;

namespace {

constexpr const char* noMusic = "this is no music, whatever its name says";

Published nextFile(DiscUnit& unit, int file) {
    return unit.next("trackinfo", [=](const Published& each) { return each.json()["curmediaid"] == file; });
}

} // namespace

TEST(DiscFault, AnUnreadableFileIsAnnouncedAndSkipped) {
    TempFolder disc;
    writeFile(disc / "1.mp3", noMusic);
    place(toneFile("mp3", 5), disc / "2.mp3");
    DiscUnit unit;
    unit.startService(disc.path().string());
    unit.command(187, 1, 0);
    nextFile(unit, 1);
    unit.next("errorstatus", "32");
    unit.next("errorstatus", "0");
    nextFile(unit, 2);
    unit.nextState(PlayState::Playing);
}

TEST(DiscFault, TheApplicationsOwnSkipDoesNotSkipTwice) {
    TempFolder disc;
    writeFile(disc / "1.mp3", noMusic);
    place(toneFile("mp3", 5), disc / "2.mp3");
    place(toneFile("ogg", 5), disc / "3.ogg");
    DiscUnit unit;
    unit.startService(disc.path().string());
    unit.command(187, 1, 0);
    unit.next("errorstatus", "32");
    unit.command(182, 2, 1); // next file, folder 1
    nextFile(unit, 2);
    unit.nextState(PlayState::Playing);
    unit.mark();
    EXPECT_FALSE(unit.follows("playtime", "none", 800ms));
    EXPECT_TRUE(unit.since("trackinfo").empty());
}

TEST(DiscFault, TheApplicationsSkipThatComesLateIsIgnored) {
    TempFolder disc;
    writeFile(disc / "1.mp3", noMusic);
    place(toneFile("mp3", 5), disc / "2.mp3");
    DiscUnit unit;
    unit.startService(disc.path().string());
    unit.command(187, 1, 0);
    unit.next("errorstatus", "0"); // at start
    unit.next("errorstatus", "32");
    unit.nextState(PlayState::Playing);
    unit.mark();
    unit.command(182, 2, 1);
    EXPECT_FALSE(unit.follows("playtime", "none", 500ms));
    EXPECT_TRUE(unit.since("trackinfo").empty()) << "file 2 is not begun again";
    unit.command(182, 2, 1);
    nextFile(unit, 2);
}

TEST(DiscFault, TheApplicationsWrapAtTheFoldersEndIsUnderstood) {
    TempFolder disc;
    place(toneFile("mp3", 1), disc / "1.mp3");
    writeFile(disc / "2.mp3", noMusic);
    place(toneFile("ogg", 5), disc / "a/1.ogg");
    DiscUnit unit;
    unit.play(disc.path().string());
    unit.next("errorstatus", "32");
    unit.command(182, 1, 3); // item 1, and the item's number plus one where the folder goes
    unit.next("trackinfo", [](const Published& each) { return each.json()["parentFolder"] == 2; });
    EXPECT_TRUE(unit.since("keyinvalid").empty());
}

TEST(DiscFault, TheUsersChoiceEndsTheSkip) {
    TempFolder disc;
    writeFile(disc / "1.mp3", noMusic);
    place(toneFile("mp3", 5), disc / "2.mp3");
    place(toneFile("ogg", 5), disc / "3.ogg");
    DiscUnit unit;
    unit.startService(disc.path().string());
    unit.command(187, 1, 0);
    unit.next("errorstatus", "32");
    unit.command(182, 3, 1);
    nextFile(unit, 3);
    unit.nextState(PlayState::Playing);
    EXPECT_FALSE(unit.follows("errorstatus", "0", 500ms)) << "taken back before the choice was begun";
}

TEST(DiscFault, AFullRoundOfUnreadableFilesStopsWithTheErrorState) {
    TempFolder disc;
    for (const char* name : {"1.mp3", "2.flac", "3.ogg"}) {
        writeFile(disc / name, noMusic);
    }
    DiscUnit unit;
    unit.startService(disc.path().string());
    unit.command(187, 1, 0);
    for (int file = 1; file <= 3; ++file) {
        nextFile(unit, file);
        unit.next("errorstatus", "32");
    }
    unit.nextState(PlayState::Error);
    unit.mark();
    EXPECT_FALSE(unit.follows("errorstatus", "32", 700ms)) << "it stays stopped";
}

TEST(DiscFault, WithRepeatOneAnUnreadableFileIsSkippedToo) {
    TempFolder disc;
    place(toneFile("mp3", 5), disc / "1.mp3");
    writeFile(disc / "2.mp3", noMusic);
    place(toneFile("ogg", 5), disc / "3.ogg");
    DiscUnit unit;
    unit.play(disc.path().string());
    unit.command(9, 8);
    unit.command(1);
    unit.next("errorstatus", "32");
    nextFile(unit, 3);
    unit.nextState(PlayState::Playing);
}

TEST(DiscFault, AFileThatEndsInTheMiddleIsPlayedAsFarAsItGoes) {
    TempFolder disc;
    place(toneFile("mp3", 5), disc / "1.mp3");
    std::filesystem::resize_file(disc / "1.mp3", std::filesystem::file_size(disc / "1.mp3") / 3);
    place(toneFile("mp3", 5), disc / "2.mp3");
    DiscUnit unit;
    unit.play(disc.path().string());
    nextFile(unit, 2);
    unit.nextState(PlayState::Playing);
}

TEST(DiscFault, EjectAndStopAreAnsweredWhileReadsHang) {
    TempFolder disc;
    place(toneFile("flac", 30), disc / "1.flac");
    place(toneFile("mp3", 30), disc / "2.mp3");
    DiscUnit unit;
    unit.play(disc.path().string());
    unit.request({{"op", "fault"}, {"kind", "noanswer"}});
    unit.command(1); // begins to open a file, which hangs
    nextFile(unit, 2);
    unit.command(22);
    auto asked = unit.next("zmcmd", [](const Published& each) { return each.json()["cmd"] == 22; });
    EXPECT_LE(unit.nextState(PlayState::Stopped).when - asked.when, 200ms);
    unit.command(131);
    nextFile(unit, 2);
    unit.command(13);
    asked = unit.next("zmcmd", [](const Published& each) { return each.json()["cmd"] == 13; });
    EXPECT_LE(unit.nextState(PlayState::Ejecting).when - asked.when, 200ms);
    unit.next("disc", "0");
    // The drive works again with the next disc.
    unit.request({{"op", "insert"}, {"path", disc.path().string()}});
    unit.nextState(PlayState::Playing);
}

TEST(DiscFault, AReadThatHangsTooLongIsAReadError) {
    TempFolder disc;
    place(toneFile("mp3", 30), disc / "1.mp3");
    place(toneFile("mp3", 30), disc / "2.mp3");
    DiscUnit unit;
    unit.play(disc.path().string());
    unit.request({{"op", "fault"}, {"kind", "noanswer"}});
    unit.command(1);
    unit.next("errorstatus", "32", 12s);
}

TEST(DiscFault, ReadErrorsAreAnnounced) {
    TempFolder disc;
    place(toneFile("mp3", 30), disc / "1.mp3");
    place(toneFile("mp3", 30), disc / "2.mp3");
    DiscUnit unit;
    unit.play(disc.path().string());
    unit.request({{"op", "fault"}, {"kind", "read"}});
    unit.command(1);
    unit.next("errorstatus", "32");
    unit.nextState(PlayState::Error);
}

TEST(DiscFault, AFifoInPlaceOfAFileDoesNotHoldAnythingUp) {
    TempFolder disc;
    place(toneFile("mp3", 30), disc / "1.mp3");
    place(toneFile("mp3", 30), disc / "2.mp3");
    DiscUnit unit;
    unit.play(disc.path().string());
    std::filesystem::remove(disc / "2.mp3");
    ASSERT_EQ(::mkfifo((disc / "2.mp3").c_str(), 0600), 0);
    unit.command(1);
    nextFile(unit, 2);
    unit.command(13);
    const auto asked = unit.next("zmcmd", [](const Published& each) { return each.json()["cmd"] == 13; });
    EXPECT_LE(unit.nextState(PlayState::Ejecting).when - asked.when, 200ms);
}

TEST(DiscFault, DriveFaultsArePublishedAsDeviceErrors) {
    TempFolder disc;
    place(toneFile("mp3", 30), disc / "1.mp3");
    DiscUnit unit;
    unit.play(disc.path().string());
    const char* faults[][2] = {{"surface", "34"}, {"temperature", "48"}, {"region", "144"}, {"none", "0"}};
    for (const auto& [kind, status] : faults) {
        unit.request({{"op", "fault"}, {"kind", kind}});
        unit.next("errorstatus", status);
    }
    unit.request({{"op", "fault"}, {"kind", "gone"}});
    unit.next("disc", "2");
    unit.next("mediatype", "255");
}
