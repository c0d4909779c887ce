#include "tests/disc/CdImage.h"
#include "tests/system/MusicFolder.h"
#include "tests/system/Pages.h"
#include "tests/system/SystemTest.h"

#include <filesystem>

namespace zm::test {

namespace {

constexpr int MessagePage = 1;
constexpr int Message = 7004;
constexpr int NoDisc = 34;
constexpr int Ejecting = 110;
constexpr int RegionError = 13067;

} // namespace

/** A disc from its insertion until the application has left, as a driver sees it: an active launcher, real time. */
class DiscLife : public SystemTest {
protected:
    void SetUp() override { writeMusicFolder(disc(), 3); }
    std::string disc() { return folder + "/disc"; }
    std::string emptyDisc() {
        std::filesystem::create_directory(folder + "/nothing");
        return folder + "/nothing";
    }
    bool runs() { return must({"ps"}).find("app - not running") == std::string::npos; }
    /** The page and, on the message page, the message's text id that are shown; 0 without an application. */
    std::pair<int, int> page() {
        const auto answer = ctl({"screen"});
        if (answer.exit != 0) {
            return {0, 0};
        }
        const Json main = Json::parse(answer.out)["main"];
        const int window = main["window"];
        const int text =
            main["windows"][std::to_string(MessagePage)]["items"][std::to_string(Message)]["textId"];
        return {window, window == MessagePage ? text : 0};
    }
    /** Looks until `wanted` comes; the pages met on the way, each once in a row. */
    std::vector<std::pair<int, int>> pagesUntil(std::pair<int, int> wanted) {
        std::vector<std::pair<int, int>> met;
        EXPECT_TRUE(eventually([&] {
            const auto now = page();
            if (met.empty() || met.back() != now) {
                met.push_back(now);
            }
            return now == wanted;
        })) << "met "
            << testing::PrintToString(met);
        return met;
    }
    bool leaves() {
        return eventually([this] { return !runs(); });
    }
    void playDisc() {
        must({"insert", disc()});
        pagesUntil({PlayPage, 0});
        ASSERT_TRUE(eventually([this] { return item(PlayPage, Title)["text"] != ""; }));
    }
};

TEST_F(DiscLife, AnEjectedDiscLeadsToNoDiscAndTheApplicationLeaves) {
    startBench({"--no-web"});
    playDisc();
    must({"eject"});
    const auto met = pagesUntil({MessagePage, NoDisc});
    EXPECT_THAT(met, testing::Contains(std::pair(MessagePage, Ejecting)));
    const auto shown = std::chrono::steady_clock::now();
    ASSERT_TRUE(leaves());
    EXPECT_GE(std::chrono::steady_clock::now() - shown, std::chrono::seconds(2));
}

TEST_F(DiscLife, ADriveThatIsGoneLeadsToNoDiscAndTheApplicationLeaves) {
    startBench({"--no-web"});
    playDisc();
    must({"disc", "fault", "gone"});
    pagesUntil({MessagePage, NoDisc});
    EXPECT_TRUE(leaves());
}

TEST_F(DiscLife, AnUnplayableDiscIsGivenOutAndTheApplicationLeaves) {
    startBench({"--no-web"});
    must({"insert", emptyDisc()});
    pagesUntil({ErrorPage, 0});
    pagesUntil({MessagePage, NoDisc});
    EXPECT_TRUE(leaves());
}

TEST_F(DiscLife, AWrongRegionIsGivenOutAndTheApplicationLeaves) {
    startBench({"--no-web"});
    playDisc();
    must({"disc", "fault", "region"});
    pagesUntil({MessagePage, RegionError});
    pagesUntil({MessagePage, NoDisc});
    EXPECT_TRUE(leaves());
}

TEST_F(DiscLife, AnInsertedDiscStartsTheApplicationAgain) {
    startBench({"--no-web"});
    playDisc();
    must({"eject"});
    ASSERT_TRUE(leaves());
    must({"insert", disc()});
    pagesUntil({PlayPage, 0});
    EXPECT_TRUE(runs());
}

TEST_F(DiscLife, AnInsertedDiscBringsTheApplicationToTheFront) {
    startBench({"--no-web"});
    playDisc();
    must({"click", "main", "6", "3", "1"}); // home
    ASSERT_TRUE(eventually([this] { return must({"requests"}).find("zmhome") != std::string::npos; }));
    settle();
    must({"key", "20"});
    const std::string log = must({"log"});
    EXPECT_EQ(log.find("K_NEXT"), std::string::npos) << "home is in front";
    must({"insert", disc()});
    EXPECT_TRUE(eventually([this] {
        must({"key", "20"});
        return must({"log"}).find("K_NEXT") != std::string::npos;
    })) << "the player is in front again";
}

TEST_F(DiscLife, AnInsertedDiscBringsNothingToTheFrontWhereTheOptionSaysSo) {
    startBench({"--no-web", "--insert-stays"});
    ASSERT_TRUE(leaves()) << "no disc";
    must({"insert", disc()});
    ASSERT_TRUE(eventually([this] { return Json::parse(must({"disc"}))["state"] == "loaded"; }));
    settle();
    EXPECT_FALSE(runs());
}

TEST_F(DiscLife, APassiveLauncherSendsNothingWhenADiscIsInserted) {
    startBench({"--no-web", "--launcher", "passive"});
    must({"app", "pause"});
    must({"insert", disc()});
    ASSERT_TRUE(eventually([this] { return Json::parse(must({"disc"}))["state"] == "loaded"; }));
    settle();
    const std::string log = must({"log"});
    const std::string resumed = "APPS_STATUS_RESUME=";
    EXPECT_EQ(log.find(resumed), log.rfind(resumed)) << "only the first one";
}

TEST_F(DiscLife, ADiscServiceStartedAgainBringsNothingToTheFront) {
    startBench({"--no-web", "--disc", disc()});
    pagesUntil({PlayPage, 0});
    must({"app", "quit"});
    ASSERT_TRUE(leaves());
    must({"kill", "disc"});
    ASSERT_TRUE(eventually([this] {
        const std::string log = must({"log"});
        return log.find("disc inserted") != log.rfind("disc inserted");
    })) << "the service has found its disc again";
    ASSERT_TRUE(eventually([this] { return Json::parse(must({"disc"}))["state"] == "loaded"; }));
    settle();
    EXPECT_FALSE(runs());
}

TEST_F(DiscLife, ADiscPutIntoAFullDriveReplacesTheOneInside) {
    startBench({"--no-web"});
    playDisc();
    const auto cue = writeAudioCd(folder + "/cd", {{60, 440, "One", "Ann"}});
    must({"insert", cue});
    const auto met = pagesUntil({MessagePage, Ejecting});
    EXPECT_EQ(met.front().first == PlayPage || met.front().second == Ejecting, true);
    pagesUntil({PlayPage, 0});
    EXPECT_TRUE(eventually([this] { return item(PlayPage, Title)["text"] == "One"; }));
    EXPECT_EQ(must({"requests"}).find("QueryCloseApp"), std::string::npos);
}

} // namespace zm::test
