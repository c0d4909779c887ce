#include "tests/disc/ServiceFixture.h"

using namespace zm::test;
using namespace zm::disc;
using namespace zm::disc::model;
using namespace std::chrono_literals;

// ---- insertion

TEST_F(DiscService, AnEmptyDriveIsPublishedAtStart) {
    m_unit.startService();
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "empty"; });
    EXPECT_EQ(m_unit.recorder().text().find("disc=1"), std::string::npos);
    const auto text = m_unit.recorder().text();
    for (const char* line :
         {"device disc=0", "device mediatype=255", "device errorstatus=0", "status discstate=0",
          "mpeginfo version=1.0", "status playstate={\"repeat\":2,\"shuffle\":0,\"scan\":0}"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line;
    }
}

TEST_F(DiscService, InsertionIsPublishedInItsOrder) {
    m_unit.startService();
    m_unit.mark();
    m_unit.request({{"op", "insert"}, {"path", m_disc.path().string()}});
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "loaded"; });
    const auto text = m_unit.recorder().text();
    size_t at = text.find("drive drive=");
    for (const char* line :
         {"\"state\":\"reading\"", "device disc=1", "status discstate=1", "device mixedtype=2",
          "device mediatype=2", "status updatedb=65537", "\"state\":\"loaded\""}) {
        at = text.find(line, at);
        ASSERT_NE(at, std::string::npos) << line << " is missing or too early in\n" << text;
    }
}

TEST_F(DiscService, LoadingIsThereToBeSeenHoweverSmallTheDisc) {
    m_unit.startService();
    m_unit.request({{"op", "insert"}, {"path", m_disc.path().string()}});
    const auto loading = m_unit.nextState(PlayState::Loading);
    EXPECT_GE(m_unit.next("mixedtype", "2").when - loading.when, 150ms);
}

TEST_F(DiscService, EachKindsCatalogueIsReported) {
    writeFile(m_disc / "clip.mp4", "");
    writeFile(m_disc / "photo.jpg", "");
    m_unit.startService(m_disc.path().string());
    m_unit.next("mixedtype", "14");
    m_unit.next("mediatype", "2");
    for (int kind = 0; kind < 3; ++kind) {
        m_unit.next("updatedb", "65537");
    }
}

TEST_F(DiscService, TheDiscWaitsUntilTheSourceIsRequested) {
    m_unit.startService(m_disc.path().string());
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "loaded"; });
    EXPECT_FALSE(m_unit.follows("discstate", "2", 500ms));
    m_unit.mark();
    m_unit.command(187, 1, 0);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, RequestingTheSourceRepeatsMediaTypeAndThenDiscState) {
    play();
    m_unit.command(187, 1, 0);
    m_unit.next("mediatype", "2");
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, ThePlayingItemIsPublishedBeforeTheStatePlaying) {
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    const auto track = nextTrack(1, 1).json();
    EXPECT_EQ(track["curmediaids"], 2);
    EXPECT_EQ(track["mediaid"], 1);
    EXPECT_EQ(track["mediaids"], 5);
    EXPECT_EQ(nextTitle("Root one").json()["artist"], "Ann");
    EXPECT_EQ(nextTime(0, 0).json()["tracktime"], 30);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, TheSourceStaysRequestedForTheNextDisc) {
    play();
    TempFolder other;
    place(toneFile("mp3", 30, "Other"), other / "x.mp3");
    m_unit.request({{"op", "insert"}, {"path", other.path().string()}});
    m_unit.next("disc", "0");
    m_unit.next("trackinfo", [](const Published& each) { return each.json()["mediaids"] == 0; });
    m_unit.next("disc", "1");
    m_unit.nextState(PlayState::Loading);
    nextTitle("Other");
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, ANewDiscShowsNothingOfTheOldOne) {
    play();
    TempFolder other;
    writeFile(other / "clip.mp4", "");
    m_unit.command(187, 0, 0);
    m_unit.nextState(PlayState::Stopped);
    m_unit.request({{"op", "insert"}, {"path", other.path().string()}});
    m_unit.next("disc", "0");
    m_unit.next("mediatype", "255");
    m_unit.next("trackinfo", [](const Published& each) { return each.json()["curmediaid"] == 0; });
    m_unit.next("ID3", [](const Published& each) { return each.json()["title"] == ""; });
    m_unit.next("playtime", [](const Published& each) { return each.json()["tracktime"] == 0; });
    m_unit.next("disc", "1");
    m_unit.next("mixedtype", "4");
}

TEST_F(DiscService, APathThatCannotBeReadIsAnErrorThatNamesItAndChangesNothing) {
    play();
    for (const std::string& path : {m_disc / "nowhere", m_disc / "1.mp3"}) {
        m_unit.mark();
        m_unit.request({{"op", "insert"}, {"path", path}});
        const auto state =
            m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "error"; })
                .json();
        EXPECT_EQ(state["path"], path);
        EXPECT_NE(state["text"].get<std::string>().find(path), std::string::npos);
    }
    nextTime(0, 30);
    EXPECT_EQ(m_unit.since("disc"), std::vector<std::string>{});
}

TEST_F(DiscService, ADiscWithNothingToPlayIsADiscError) {
    TempFolder empty;
    m_unit.startService(empty.path().string());
    m_unit.next("disc", "1");
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "error"; });
    m_unit.nextState(PlayState::Error);
}

// ---- the end of an item

TEST(DiscServiceEnd, TheNextItemFollowsAndTheDiscGoesRound) {
    TempFolder disc;
    makeDisc(disc, 1);
    DiscUnit unit;
    unit.play(disc.path().string());
    for (const int position : {2, 3, 4, 5, 1}) {
        unit.next("trackinfo", [=](const Published& each) { return each.json()["mediaid"] == position; });
    }
}

TEST(DiscServiceEnd, RepeatOffStopsAfterTheLastItem) {
    TempFolder disc;
    makeDisc(disc, 1);
    DiscUnit unit;
    unit.play(disc.path().string());
    unit.command(9, 1);
    unit.command(182, 3, 2);
    unit.next("trackinfo", [](const Published& each) { return each.json()["mediaid"] == 5; });
    unit.nextState(PlayState::Stopped);
    unit.next("trackinfo", [](const Published& each) { return each.json()["mediaid"] == 1; });
}

// ---- ejection

TEST_F(DiscService, EjectIsAnsweredAtOnceAndEmptiesTheDrive) {
    play();
    m_unit.command(13);
    const auto asked = m_unit.next("zmcmd", [](const Published&) { return true; });
    const auto answer = m_unit.nextState(PlayState::Ejecting);
    EXPECT_LE(answer.when - asked.when, 200ms);
    m_unit.next("disc", "0");
    m_unit.next("mixedtype", "0");
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "empty"; });
    m_unit.mark();
    m_unit.command(131);
    EXPECT_FALSE(m_unit.follows("discstate", "2", 300ms));
    m_unit.request({{"op", "insert"}, {"path", m_disc.path().string()}});
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, TheDrivesOwnEjectDoesTheSame) {
    play();
    m_unit.request({{"op", "eject"}});
    m_unit.nextState(PlayState::Ejecting);
    m_unit.next("disc", "0");
}

// ---- what leads the application on

class DiscServiceLeaving : public DiscService {
protected:
    void SetUp() override {
        DiscService::SetUp();
        place(toneFile("mp3", 30, "Other"), m_other / "9.mp3");
    }
    void insert(const std::string& path) { m_unit.request({{"op", "insert"}, {"path", path}}); }
    // What the application is told of a disc's life, from the last time that it left; repetitions once.
    std::vector<std::string> life() {
        std::vector<std::string> values;
        for (const auto& each : m_unit.recorder().all()) {
            if (each.name == "discstate" && each.value == "20") {
                values.clear();
            }
            const std::string text = each.name + "=" + each.value;
            if ((each.name == "discstate" || each.name == "disc") &&
                (values.empty() || values.back() != text)) {
                values.push_back(text);
            }
        }
        return values;
    }
    void waitUntilEmpty() {
        m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "empty"; });
    }

    TempFolder m_other;
};

using Life = std::vector<std::string>;

TEST_F(DiscServiceLeaving, AnEjectedDiscLeadsOnToNoDisc) {
    play();
    m_unit.command(13);
    const auto out = m_unit.next("disc", "0");
    const auto rest = m_unit.nextState(PlayState::Stopped);
    EXPECT_GE(rest.when - out.when, 1s) << "also an application with much to do finds \"loading\"";
    EXPECT_EQ(life(), (Life{"discstate=20", "discstate=1", "disc=0", "discstate=0"}));
}

TEST_F(DiscServiceLeaving, ADriveThatIsGoneGivesUpItsDiscInTheSameWay) {
    play();
    m_unit.request({{"op", "fault"}, {"kind", "gone"}});
    m_unit.next("disc", "2");
    m_unit.nextState(PlayState::Stopped);
    EXPECT_EQ(life(), (Life{"discstate=20", "discstate=1", "disc=2", "discstate=0"}));
    insert(m_disc.path().string());
    m_unit.next("disc", "1");
}

TEST_F(DiscServiceLeaving, TheApplicationsEjectOfAnEmptyDriveLeadsOnToo) {
    m_unit.startService();
    waitUntilEmpty();
    m_unit.mark();
    m_unit.request({{"op", "fault"}, {"kind", "region"}});
    m_unit.command(13);
    m_unit.nextState(PlayState::Loading);
    m_unit.next("disc", "0");
    m_unit.nextState(PlayState::Stopped);
}

TEST_F(DiscServiceLeaving, AnUnplayableDiscIsGivenOutAndLeadsOn) {
    TempFolder empty;
    m_unit.startService(empty.path().string());
    m_unit.nextState(PlayState::Error);
    m_unit.mark();
    m_unit.command(13);
    m_unit.nextState(PlayState::Stopped);
    EXPECT_EQ(life(), (Life{"discstate=20", "discstate=1", "disc=0", "discstate=0"}));
}

TEST_F(DiscServiceLeaving, AFullDriveGivesItsDiscOutBeforeItTakesTheNext) {
    play();
    insert(m_other.path().string());
    const auto leaves = m_unit.nextState(PlayState::Ejecting);
    const auto out = m_unit.next("disc", "0");
    EXPECT_GE(out.when - leaves.when, 500ms);
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "empty"; });
    EXPECT_GE(m_unit.next("disc", "1").when - out.when, 100ms);
    m_unit.nextState(PlayState::Playing);
    EXPECT_EQ(life(), (Life{"discstate=20", "disc=0", "disc=1", "discstate=1", "discstate=2"}));
}

TEST_F(DiscServiceLeaving, OfTwoDiscsPutIntoAFullDriveTheLastIsTaken) {
    play();
    insert(m_disc / "a");
    m_unit.nextState(PlayState::Ejecting);
    insert(m_other.path().string());
    nextTitle("Other");
    m_unit.nextState(PlayState::Playing);
    EXPECT_EQ(life(), (Life{"discstate=20", "disc=0", "disc=1", "discstate=1", "discstate=2"}));
}

TEST_F(DiscServiceLeaving, AnEjectionAlsoTakesBackTheDiscThatWaits) {
    play();
    insert(m_disc / "a");
    m_unit.nextState(PlayState::Ejecting);
    m_unit.request({{"op", "eject"}});
    m_unit.nextState(PlayState::Stopped);
    EXPECT_EQ(life(), (Life{"discstate=20", "discstate=1", "disc=0", "discstate=0"}));
}

TEST_F(DiscServiceLeaving, AServiceStartedAgainWhileADiscLeavesLeadsOn) {
    play();
    m_unit.request({{"op", "eject"}});
    m_unit.next("tray", [](const Published& each) { return each.json()["path"] == ""; });
    m_unit.stopService();
    m_unit.startService();
    m_unit.nextState(PlayState::Loading);
    m_unit.next("disc", "0");
    m_unit.nextState(PlayState::Stopped);
    EXPECT_FALSE(m_unit.follows("disc", "1", 300ms));
}

TEST_F(DiscServiceLeaving, AServiceStartedAgainInTheMiddleOfAChangeTakesTheNextDisc) {
    play();
    insert(m_other.path().string());
    m_unit.nextState(PlayState::Ejecting);
    m_unit.next("tray",
                [&](const Published& each) { return each.json()["path"] == m_other.path().string(); });
    m_unit.stopService();
    m_unit.startService();
    nextTitle("Other");
    m_unit.nextState(PlayState::Playing);
}

// ---- restarts

TEST_F(DiscService, AServiceStartedAgainFindsItsDiscAndItsSource) {
    play();
    m_unit.stopService();
    m_unit.mark();
    m_unit.startService("/another/disc/on/the/command/line");
    m_unit.next("disc", "0");
    m_unit.next("disc", "1");
    nextTitle("Root one");
    m_unit.nextState(PlayState::Playing);
}

TEST_F(DiscService, AServiceStartedAgainAfterAnEjectionFindsAnEmptyDrive) {
    play();
    m_unit.request({{"op", "eject"}});
    m_unit.next("tray", [](const Published& each) { return each.json()["path"] == ""; });
    m_unit.next("drivestate", [](const Published& each) { return each.json()["state"] == "empty"; });
    m_unit.stopService();
    m_unit.mark();
    m_unit.startService(m_disc.path().string());
    m_unit.next("disc", "0");
    EXPECT_FALSE(m_unit.follows("disc", "1", 500ms));
}

TEST_F(DiscService, ARequestToTheDriveThatNobodyHasSeenIsCarriedOutAtTheNextStart) {
    m_unit.startService();
    m_unit.next("disc", "0");
    m_unit.stopService();
    m_unit.request({{"op", "insert"}, {"path", m_disc.path().string()}});
    m_unit.mark();
    m_unit.startService();
    m_unit.next("disc", "1");
    m_unit.stopService();
    m_unit.mark();
    m_unit.startService();
    m_unit.next("disc", "1"); // the tray's, once
    EXPECT_FALSE(m_unit.follows("disc", "1", 500ms));
}

TEST_F(DiscService, EverythingIsPublishedAgainWhenTheObjectsAreStartedAnew) {
    play();
    m_unit.stopObjects();
    m_unit.mark();
    m_unit.startObjects();
    m_unit.next("mediatype", "2");
    m_unit.next("disc", "1");
    m_unit.next("ID3", [](const Published& each) { return each.json()["title"] == "Root one"; });
    m_unit.nextState(PlayState::Playing);
    m_unit.next("playtime", [](const Published&) { return true; });
}

// A change that meets no objects waits for the new ones, and is then the first that these hear of.
TEST_F(DiscService, EverythingIsPublishedAgainAlsoWhereAChangeReachesTheNewObjectsFirst) {
    constexpr int Repeat = 9;
    constexpr int RepeatOne = 8;
    play();
    m_unit.whileServiceStands([&] {
        m_unit.command(Repeat, RepeatOne);
        std::this_thread::sleep_for(100ms); // until its reader has it
        m_unit.stopObjects();
    });
    m_unit.mark();
    std::this_thread::sleep_for(50ms); // until the change has met nobody
    m_unit.startObjects();
    m_unit.next("playstate", [](const Published& each) { return each.json()["repeat"] == RepeatOne; });
    m_unit.next("disc", "1");
    m_unit.next("trackinfo", [](const Published& each) { return each.json()["mediaid"] == 1; });
}

TEST(DiscServiceStart, FailsWithoutTheObjectsService) {
    TempFolder runtime;
    zm::EventLoop loop;
    const auto service = Service::start(loop, runtime.path().string(), runtime / "db", runtime / "resume", "",
                                        engineMaker(std::make_shared<PictureRecorder>()), {});
    ASSERT_FALSE(service);
    EXPECT_NE(service.error().find(runtime.path().string()), std::string::npos);
}
