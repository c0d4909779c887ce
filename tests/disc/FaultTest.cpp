#include "base/Paths.h"
#include "platform/linux/slog/LogFile.h"
#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace zm::test;
using namespace zm::disc::engine;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

constexpr const char* noMusic = "this is no music, whatever its name says";

class DiscFault : public testing::Test {
protected:
    void placeTone(const std::string& name, int seconds) {
        place(toneFile(std::filesystem::path(name).extension().string().substr(1), seconds), m_disc / name);
    }
    void placeUnreadable(const std::string& name) { writeFile(m_disc / name, noMusic); }
    void placeTwoTones() {
        placeTone("1.mp3", 30);
        placeTone("2.mp3", 30);
    }
    // Inserts the disc and requests it; its first file may be one that does not play.
    void start() {
        m_unit.startService(m_disc.path().string());
        m_unit.command(187, 1, 0);
    }
    void play() { m_unit.play(m_disc.path().string()); }
    void fault(const std::string& kind) { m_unit.request({{"op", "fault"}, {"kind", kind}}); }
    // For a fault before a command, which comes by another object and may overtake it: returns when it is there.
    void failingReads(const std::string& kind) {
        fault(kind);
        m_unit.next("errorstatus", "0");
    }
    Published nextFile(int file) {
        return m_unit.next("trackinfo",
                           [=](const Published& each) { return each.json()["curmediaid"] == file; });
    }
    /** Requests to the drive of which the log says that it does not know them, after all that came until now. */
    std::vector<std::string> unknownRequests() {
        const std::string words = "unknown request to the drive: ";
        std::vector<std::string> found;
        m_unit.whileServiceStands([] {});
        for (const auto& each : zm::LogReader(zm::logFile(m_unit.runtime())).last(1000)) {
            if (each.text.starts_with(words)) {
                found.push_back(each.text.substr(words.size()));
            }
        }
        return found;
    }
    // The command is answered by that state in time, whatever the disc does.
    void expectAnswer(int command, PlayState state) {
        m_unit.command(command);
        const auto asked =
            m_unit.next("zmcmd", [=](const Published& each) { return each.json()["cmd"] == command; });
        EXPECT_LE(m_unit.nextState(state).when - asked.when, 200ms);
    }

    TempFolder m_disc;
    DiscUnit m_unit;
};

} // namespace

TEST_F(DiscFault, AnUnreadableFileIsAnnouncedAndSkipped) {
    placeUnreadable("1.mp3");
    placeTone("2.mp3", 5);
    start();
    nextFile(1);
    m_unit.next("errorstatus", "32");
    m_unit.next("errorstatus", "0");
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscFault, TheApplicationsOwnSkipDoesNotSkipTwice) {
    placeUnreadable("1.mp3");
    placeTone("2.mp3", 5);
    placeTone("3.ogg", 5);
    start();
    m_unit.next("errorstatus", "32");
    m_unit.command(182, 2, 1); // next file, folder 1
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("playtime", "none", 800ms));
    EXPECT_TRUE(m_unit.since("trackinfo").empty());
}

TEST_F(DiscFault, TheApplicationsSkipThatComesLateIsIgnored) {
    placeUnreadable("1.mp3");
    placeTone("2.mp3", 5);
    start();
    m_unit.next("errorstatus", "0"); // at start
    m_unit.next("errorstatus", "32");
    m_unit.nextState(PlayState::Playing);
    m_unit.mark();
    m_unit.command(182, 2, 1);
    EXPECT_FALSE(m_unit.follows("playtime", "none", 500ms));
    EXPECT_TRUE(m_unit.since("trackinfo").empty()) << "file 2 is not begun again";
    m_unit.command(182, 2, 1);
    nextFile(2);
}

TEST_F(DiscFault, TheApplicationsWrapAtTheFoldersEndIsUnderstood) {
    placeTone("1.mp3", 1);
    placeUnreadable("2.mp3");
    placeTone("a/1.ogg", 5);
    play();
    m_unit.next("errorstatus", "32");
    m_unit.command(182, 1, 3); // item 1, and the item's number plus one where the folder goes
    m_unit.next("trackinfo", [](const Published& each) { return each.json()["parentFolder"] == 2; });
    EXPECT_TRUE(m_unit.since("keyinvalid").empty());
}

TEST_F(DiscFault, TheUsersChoiceEndsTheSkip) {
    placeUnreadable("1.mp3");
    placeTone("2.mp3", 5);
    placeTone("3.ogg", 5);
    start();
    m_unit.next("errorstatus", "32");
    m_unit.command(182, 3, 1);
    nextFile(3);
    m_unit.nextState(PlayState::Playing);
    EXPECT_FALSE(m_unit.follows("errorstatus", "0", 500ms)) << "taken back before the choice was begun";
}

TEST_F(DiscFault, AFullRoundOfUnreadableFilesStopsWithTheErrorState) {
    for (const char* name : {"1.mp3", "2.flac", "3.ogg"}) {
        placeUnreadable(name);
    }
    start();
    for (int file = 1; file <= 3; ++file) {
        nextFile(file);
        m_unit.next("errorstatus", "32");
    }
    m_unit.nextState(PlayState::Error);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("errorstatus", "32", 700ms)) << "it stays stopped";
}

TEST_F(DiscFault, WhereAllOfAKindIsUnreadableTheNextKindPlays) {
    for (const char* name : {"1.mp3", "2.mp3", "1.mp4"}) {
        placeUnreadable(name);
    }
    place(sample({"blue.png", "-f lavfi -i color=c=blue:size=64x48 -frames:v 1"}), m_disc / "3.png");
    start();
    m_unit.next("mediatype", "2");
    nextFile(1);
    m_unit.next("errorstatus", "32");
    nextFile(2);
    m_unit.next("errorstatus", "32");
    m_unit.next("mediatype", "3");
    m_unit.next("errorstatus", "32");
    m_unit.next("mediatype", "4");
    m_unit.nextState(PlayState::Playing);
#ifndef __SANITIZE_THREAD__
    EXPECT_TRUE(m_unit.pictures().waitFor(PictureWidth / 2, PictureHeight / 2, {0, 0, 255}));
#endif
    for (const auto& each : m_unit.recorder().all()) {
        EXPECT_FALSE(each.name == "discstate" && each.value == "9") << "the disc is a good one";
    }
}

TEST_F(DiscFault, AKindThatTheUserChoosesIsTriedAgain) {
    placeUnreadable("1.mp3");
    place(sample({"blue.png", "-f lavfi -i color=c=blue:size=64x48 -frames:v 1"}), m_disc / "2.png");
    start();
    m_unit.next("mediatype", "4");
    m_unit.nextState(PlayState::Playing);
    m_unit.command(182, 1 << 16 | 1, 1);
    m_unit.next("mediatype", "2");
    m_unit.next("errorstatus", "32");
    m_unit.next("mediatype", "4");
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscFault, WithRepeatOneAnUnreadableFileIsSkippedToo) {
    placeTone("1.mp3", 5);
    placeUnreadable("2.mp3");
    placeTone("3.ogg", 5);
    play();
    m_unit.command(9, 8);
    m_unit.command(1);
    m_unit.next("errorstatus", "32");
    nextFile(3);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscFault, AFileThatEndsInTheMiddleIsPlayedAsFarAsItGoes) {
    placeTone("1.mp3", 5);
    std::filesystem::resize_file(m_disc / "1.mp3", std::filesystem::file_size(m_disc / "1.mp3") / 3);
    placeTone("2.mp3", 5);
    play();
    nextFile(2);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscFault, EjectAndStopAreAnsweredWhileReadsHang) {
    placeTone("1.flac", 30);
    placeTone("2.mp3", 30);
    play();
    failingReads("noanswer");
    m_unit.command(1); // begins to open a file, which hangs
    nextFile(2);
    expectAnswer(22, PlayState::Stopped);
    m_unit.command(131);
    nextFile(2);
    expectAnswer(13, PlayState::Ejecting);
    m_unit.next("disc", "0");
    // The drive works again with the next disc.
    m_unit.request({{"op", "insert"}, {"path", m_disc.path().string()}});
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscFault, AReadThatHangsTooLongIsAReadError) {
    placeTwoTones();
    play();
    failingReads("noanswer");
    m_unit.command(1);
    m_unit.next("errorstatus", "32", 12s);
}

TEST_F(DiscFault, ReadErrorsAreAnnounced) {
    placeTwoTones();
    play();
    failingReads("read");
    m_unit.command(1);
    m_unit.next("errorstatus", "32");
    m_unit.nextState(PlayState::Error);
}

TEST_F(DiscFault, AFifoInPlaceOfAFileDoesNotHoldAnythingUp) {
    placeTwoTones();
    play();
    std::filesystem::remove(m_disc / "2.mp3");
    ASSERT_EQ(::mkfifo((m_disc / "2.mp3").c_str(), 0600), 0);
    m_unit.command(1);
    nextFile(2);
    expectAnswer(13, PlayState::Ejecting);
}

TEST_F(DiscFault, DriveFaultsArePublishedAsDeviceErrors) {
    placeTone("1.mp3", 30);
    play();
    const char* faults[][2] = {{"surface", "34"}, {"temperature", "48"}, {"region", "144"}, {"none", "0"}};
    for (const auto& [kind, status] : faults) {
        fault(kind);
        m_unit.next("errorstatus", status);
    }
    fault("gone");
    m_unit.next("disc", "2");
    m_unit.next("mediatype", "255");
}

TEST_F(DiscFault, ADriveThatWasGoneIsBackEmptyOnceItsFaultIsTakenBack) {
    placeTwoTones();
    play();
    fault("gone");
    m_unit.next("disc", "2");
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "empty"; });
    fault("none");
    m_unit.next("disc", "0");
}

TEST_F(DiscFault, ADriveThatIsBackBeforeItsDiscIsOutIsEmptyThen) {
    placeTwoTones();
    play();
    fault("gone");
    m_unit.next("discstate", "20");
    fault("none");
    m_unit.next("disc", "0");
}

TEST_F(DiscFault, OnlyWhatTheDriveDoesNotKnowIsNamedInTheLog) {
    placeTwoTones();
    play();
    fault("surface");
    m_unit.next("errorstatus", "34");
    fault("gone");
    m_unit.next("disc", "2");
    EXPECT_EQ(unknownRequests(), std::vector<std::string>{});
    const auto becomesNamed = [&](const nlohmann::json& request) {
        m_unit.request(request);
        const auto end = std::chrono::steady_clock::now() + 15s;
        while (std::chrono::steady_clock::now() < end) {
            const auto all = unknownRequests();
            if (!all.empty() && all.back() == request.dump()) {
                return true;
            }
            std::this_thread::sleep_for(5ms);
        }
        return false;
    };
    EXPECT_TRUE(becomesNamed({{"op", "fault"}, {"kind", "dust"}}));
    EXPECT_TRUE(becomesNamed({{"op", "polish"}}));
}
