#include "tests/system/SystemTest.h"

#include <fstream>

namespace zm::test {

/** The launcher as drivers know it: real clock, requests are carried out. */
class ActiveLauncher : public SystemTest {
protected:
    void SetUp() override {
        startBench({"--no-disc-service", "--no-web"});
        playMusic();
        watchCommands();
    }
    void request(int control) {
        must({"click", "main", "6", std::to_string(control), "1"});
        settle();
    }
    size_t logged(const std::string& text) {
        const std::string log = must({"log"});
        size_t count = 0;
        for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) {
            ++count;
        }
        return count;
    }
    /** The middle of a plain page's area that leads back. */
    void touchReturn() {
        must({"touch", "400", "340"});
        settle();
    }
    std::string shot() {
        must({"shot", folder + "/shot.png"});
        std::ifstream stream(folder + "/shot.png", std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    }
};

TEST_F(ActiveLauncher, HomeHidesTheApplicationAndItsAreaLeadsBack) {
    const std::string page = shot();
    request(3);
    EXPECT_EQ(logged("APPS_STATUS_HIDEONLY"), 1u);
    const std::string home = shot();
    EXPECT_NE(home, page);
    EXPECT_THAT(commands(0), IsEmpty()) << "music plays on behind the home page";

    must({"touch", "100", "450"});
    must({"key", "1"});
    EXPECT_THAT(commands(0), IsEmpty()) << "input belongs to the page in front";
    EXPECT_EQ(shot(), home);

    touchReturn();
    EXPECT_EQ(logged("APPS_STATUS_RESUME="), 2u);
    EXPECT_EQ(shot(), page);
}

TEST_F(ActiveLauncher, AnotherAudioSourcePausesTheDisc) {
    // A pause within 1.2 s of the start would not note that music plays.
    request(103);
    EXPECT_EQ(logged("APPS_STATUS_PAUSE"), 1u);
    EXPECT_THAT(commands(1), ElementsAre("5,0,0"));
    must({"app", "resume"});
    settle();
    EXPECT_EQ(logged("APPS_STATUS_RESUME="), 2u);
}

TEST_F(ActiveLauncher, EveryApplicationHasItsStatus) {
    const struct {
        int control;
        const char* status;
    } rows[] = {{103, "PAUSE"},    {105, "PAUSE"}, {106, "PAUSE"},    {107, "HIDEONLY"},
                {111, "HIDEONLY"}, {118, "PAUSE"}, {119, "HIDEONLY"}, {6525, "HIDEONLY"}};
    for (const auto& row : rows) {
        const std::string text = std::string("APPS_STATUS_") + row.status + "=";
        const size_t before = logged(text);
        request(row.control);
        EXPECT_EQ(logged(text), before + 1) << row.control;
        touchReturn();
    }
}

TEST_F(ActiveLauncher, AClosedApplicationLeavesTheHomePageWhichStartsItAgain) {
    putDevice({"disc::0"});
    putStatus({"discstate::1"});
    must({"app", "quit"});
    ASSERT_TRUE(eventually([this] { return must({"ps"}) == "app - not running\n"; }));
    must({"touch", "400", "340"});
    settle();
    EXPECT_EQ(window(), 1);
}

using ActiveLauncherAtStart = SystemTest;

TEST_F(ActiveLauncherAtStart, ClosesTheApplicationWhenItAsksForIt) {
    startBench({"--no-disc-service", "--no-web"});
    putDevice({"disc::0"});
    ASSERT_EQ(item(1, 7004)["textId"], 34) << "no disc: it asks to be closed after three seconds";
    ASSERT_TRUE(eventually([this] { return must({"ps"}) == "app - not running\n"; }));
    EXPECT_THAT(must({"requests"}), HasSubstr(R"({"op":"QueryCloseApp","app":"zmdisc","data":"null"})"));
}

using PassiveLauncher = SystemTest;

TEST_F(PassiveLauncher, OnlyRecords) {
    startBench({"--no-disc-service", "--no-web", "--launcher", "passive"});
    playMusic();
    must({"click", "main", "6", "103", "1"});
    settle();
    EXPECT_THAT(must({"requests"}),
                HasSubstr(R"({"op":"QueryLauncher","app":"zmradio","type":0,"data":"null"})"));
    EXPECT_EQ(must({"log"}).find("APPS_STATUS_PAUSE"), std::string::npos);
}

} // namespace zm::test
