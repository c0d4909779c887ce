#include "tests/system/MusicFolder.h"
#include "tests/system/SystemTest.h"

#include <signal.h>

#include <filesystem>
#include <fstream>

namespace zm::test {

using Command = SystemTest;

TEST_F(Command, WithoutABenchEveryCommandFailsClearly) {
    EXPECT_THAT(mustFail({"screen"}), HasSubstr("no bench runs in " + folder));
    EXPECT_THAT(mustFail({"dance"}, 2), HasSubstr("there is no command \"dance\""));
}

TEST_F(Command, WrongUsageExitsWithTwoAndTheUsageOfThatCommand) {
    startManual();
    for (const Words& words : {Words{"pps"},
                               Words{"pps", "get"},
                               Words{"pps", "put", "a"},
                               Words{"pps", "watch", "a", "-n", "0"},
                               Words{"catalogue", "hold"},
                               Words{"catalogue", "hold", "-1"},
                               Words{"app"},
                               Words{"app", "restart"},
                               Words{"appdata"},
                               Words{"appdata", "a", "b"},
                               Words{"language"},
                               Words{"theme", "pink"},
                               Words{"device", "7"},
                               Words{"device", "7", "x"},
                               Words{"device", "7", "1", "2"},
                               Words{"time", "25:00"},
                               Words{"time", "12:60"},
                               Words{"time", "12:00", "13"},
                               Words{"time", "noon"},
                               Words{"time", " 7:05"},
                               Words{"time", "+7:05"},
                               Words{"time", "7:+5"},
                               Words{"time", "7: 5"},
                               Words{"time", "7:05 "},
                               Words{"key"},
                               Words{"key", "one"},
                               Words{"touch", "1"},
                               Words{"touch", "1", "2", "--hold"},
                               Words{"touch", "1", "2", "--hold", "-1"},
                               Words{"drag", "1", "2", "3"},
                               Words{"press", "1"},
                               Words{"move"},
                               Words{"release", "1", "2", "3"},
                               Words{"click", "main", "6", "3"},
                               Words{"click", "left", "6", "3", "1"},
                               Words{"insert"},
                               Words{"eject", "now"},
                               Words{"disc", "fault"},
                               Words{"disc", "x"},
                               Words{"disc", "--json", "fault", "read"},
                               Words{"screen", "left"},
                               Words{"shot"},
                               Words{"requests", "--all"},
                               Words{"log", "-n"},
                               Words{"log", "-n", "x"},
                               Words{"clock"},
                               Words{"clock", "advance", "-5"},
                               Words{"clock", "stop", "1"},
                               Words{"settle", "-t", "x"},
                               Words{"ps", "x"},
                               Words{"kill"},
                               Words{"kill", "bench"}}) {
        EXPECT_THAT(mustFail(words, 2), HasSubstr("usage: zmctl " + words[0])) << words[0];
    }
    EXPECT_THAT(mustFail({"dance"}, 2), HasSubstr("there is no command \"dance\""));
    EXPECT_THAT(mustFail({}, 2), HasSubstr("usage: zmctl"));
}

TEST_F(Command, HelpListsTheCommandsAndExplainsEachWithoutABench) {
    const std::string list = must({"help"});
    EXPECT_EQ(must({"--help"}), list);
    EXPECT_EQ(must({"-h"}), list);
    for (const char* name :
         {"pps",  "catalogue", "app",  "appdata", "language", "device", "time",  "key",  "touch",
          "drag", "press",     "move", "release", "click",    "insert", "eject", "disc", "screen",
          "shot", "requests",  "log",  "clock",   "settle",   "ps",     "kill"}) {
        EXPECT_THAT(list, HasSubstr(std::string("\n  ") + name + " ")) << name;
        EXPECT_THAT(must({"help", name}), StartsWith(std::string("usage: zmctl ") + name)) << name;
    }
    mustFail({"help", "dance"}, 2);
}

TEST_F(Command, PpsPutWritesAllLinesAsOneChange) {
    startManual();
    must({"pps", "put", "test/one", "a::1", "b:json:{\"x\":[1,2]}", "c:n:3"});
    EXPECT_EQ(must({"pps", "get", "test/one"}), "a::1\nb:json:{\"x\":[1,2]}\nc:n:3\n");
    must({"pps", "put", "test/one", "-b", "a::2"});
    EXPECT_EQ(must({"pps", "get", "test/one"}), "a::2\nc:n:3\n");
    mustFail({"pps", "put", "test/one", "d::4", "no line"});
    EXPECT_EQ(must({"pps", "get", "test/one"}), "a::2\nc:n:3\n") << "nothing of a faulty write is kept";
    EXPECT_THAT(lines({"pps", "ls"}), testing::Contains("test/one"));
    EXPECT_THAT(mustFail({"pps", "put", "test/one", "d::4", "e::5\nf::6"}), HasSubstr("\"e::5\\nf::6\""));
    EXPECT_EQ(must({"pps", "get", "test/one"}), "a::2\nc:n:3\n");
    must({"pps", "put", "test/one", "[n]@one", "a::3"});
    EXPECT_EQ(must({"pps", "get", "test/one"}), "a::3\nc:n:3\n") << "the object's own line is no attribute";
    mustFail({"pps", "get", "test/none"});
}

TEST_F(Command, PpsWatchPrintsEachChangeEqualOnesToo) {
    startManual();
    must({"pps", "put", "test/one", "a::1"});
    Process watch({"zmctl", "pps", "watch", "test/one", "-n", "4", "-t", "20"}, folder);
    ASSERT_TRUE(eventually([&] {
        must({"pps", "put", "test/one", "mark::1"});
        return watch.line(std::chrono::milliseconds(100)) == "mark::1";
    }));
    must({"pps", "put", "test/one", "a::1", "b::2"});
    must({"pps", "put", "test/one", "a::1"});
    must({"pps", "put", "test/one", "-a"});
    EXPECT_EQ(watch.wait(), 0);
    EXPECT_EQ(watch.out(), "a::1\nb::2\na::1\n-a\n");
}

TEST_F(Command, PpsWatchEndsWhenItsTimeIsUp) {
    startManual();
    EXPECT_EQ(must({"pps", "watch", "zelmar/disc/control", "-n", "1", "-t", "0.1"}), "");
}

TEST_F(Command, LauncherMessagesReachTheApplicationEachTime) {
    startManual();
    for (const char* status : {"pause", "resume", "showonly", "hideonly", "resume", "resume"}) {
        must({"app", status});
    }
    settle();
    const std::string log = must({"log"});
    for (const char* name : {"PAUSE", "SHOWONLY", "HIDEONLY"}) {
        EXPECT_THAT(log, HasSubstr(std::string("APPS_STATUS_") + name));
    }
    size_t resumes = 0;
    for (size_t at = 0; (at = log.find("APPS_STATUS_RESUME=", at + 1)) != std::string::npos;) {
        ++resumes;
    }
    EXPECT_EQ(resumes, 4u) << "the first one, and three more";
}

TEST_F(Command, AppdataIsTakenAsItIs) {
    startManual();
    must({"appdata", "--song='Blue Sky' --singer=Nobody"});
    must({"appdata", "--follow"});
    settle();
    EXPECT_THAT(must({"log"}), HasSubstr("APPSMSG_APPDATA"));
}

TEST_F(Command, LanguageChangesTheTexts) {
    startManual();
    const std::string english = item(1, 7004)["text"];
    must({"language", "de"});
    settle();
    EXPECT_NE(item(1, 7004)["text"], english);
    EXPECT_EQ(item(1, 7004)["textId"], 33);
}

TEST_F(Command, DeviceSetsTheValueAndSendsTheMessage) {
    startManual();
    EXPECT_EQ(item(1, 20)["text"], "20.0") << "the start value";
    must({"device", "7", "-52"});
    settle();
    EXPECT_EQ(item(1, 20)["text"], "-5.2");
    must({"device", "--silent", "7", "235"});
    settle();
    EXPECT_EQ(item(1, 20)["text"], "-5.2") << "no message, no new text";
    must({"device", "7", "235"});
    settle();
    EXPECT_EQ(item(1, 20)["text"], "23.5");
    must({"device", "7", "fail"});
    settle();
    EXPECT_EQ(item(1, 20)["text"], "--.-");
}

TEST_F(Command, TimeSetsTheClock) {
    startManual();
    EXPECT_EQ(item(1, 8)["text"], "12:00") << "the start value";
    must({"time", "23:05", "12"});
    settle();
    EXPECT_EQ(item(1, 8)["text"], "11:05");
    EXPECT_EQ(item(1, 12)["visible"], true);
    must({"time", "24:30"});
    settle();
    EXPECT_EQ(item(1, 8)["text"], "24:30") << "the format stays, hours up to 24 are taken";
    EXPECT_EQ(item(1, 12)["visible"], false);
}

TEST_F(Command, KeysTouchesAndClicksBecomePlayerCommands) {
    startManual();
    playMusic();
    watchCommands();
    must({"click", "main", "6", "6523", "0"});
    must({"click", "main", "6", "6523", "1"});
    EXPECT_THAT(commands(1), ElementsAre("5,0,0"));
    const Json rect = item(6, 6523)["rect"];
    const std::string x = std::to_string(rect[0].get<int>() + rect[2].get<int>() / 2);
    const std::string y = std::to_string(rect[1].get<int>() + rect[3].get<int>() / 2);
    must({"touch", x, y});
    EXPECT_THAT(commands(1), ElementsAre("5,0,0"));
    must({"press", x, y});
    must({"move", x, y});
    must({"release", x, y});
    EXPECT_THAT(commands(1), ElementsAre("5,0,0"));
    must({"key", "99999"});
    EXPECT_THAT(commands(0), IsEmpty()) << "an unknown key is no error and does nothing";
}

TEST_F(Command, RequestsListsWhatTheApplicationAsked) {
    startManual();
    playMusic();
    must({"requests", "--clear"});
    must({"click", "main", "6", "3", "1"});
    settle();
    EXPECT_THAT(
        lines({"requests"}),
        ElementsAre(R"({"op":"ToBeep"})", R"({"op":"QueryLauncher","app":"zmhome","type":0,"data":"null"})"));
    EXPECT_EQ(lines({"requests", "--clear"}).size(), 2u);
    EXPECT_EQ(must({"requests"}), "");
}

TEST_F(Command, ScreenDescribesViewsAndVideo) {
    startManual();
    const Json all = screen();
    for (const char* member : {"window", "shown", "visible", "windows"}) {
        EXPECT_TRUE(all["main"].contains(member)) << member;
        EXPECT_TRUE(all["osd"].contains(member)) << member;
    }
    for (const char* member : {"posted", "visible", "rect", "zorder", "frames"}) {
        EXPECT_TRUE(all["video"].contains(member)) << member;
    }
    const Json one = Json::parse(must({"screen", "main", "6"}));
    EXPECT_FALSE(one.contains("osd"));
    EXPECT_EQ(one["main"]["windows"].size(), 1u);
    EXPECT_TRUE(one["main"]["windows"].contains("6"));
}

TEST_F(Command, ShotWritesAPictureOfTheScreen) {
    startManual();
    settle();
    // A relative path is the caller's: zmctl runs in the test's working folder.
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    must({"shot", "page.png"});
    std::filesystem::current_path(here);
    std::ifstream stream(folder + "/page.png", std::ios::binary);
    std::string head(24, '\0');
    stream.read(head.data(), 24);
    EXPECT_EQ(head.substr(1, 3), "PNG");
    EXPECT_EQ(head.substr(16, 8), std::string("\0\0\3\x20\0\0\1\xe0", 8)) << "800 x 480";
    EXPECT_THAT(mustFail({"shot", "/nowhere/page.png"}), HasSubstr("/nowhere/page.png"));
}

TEST_F(Command, LogPrintsSeverityAndText) {
    startManual();
    for (const auto& line : lines({"log"})) {
        EXPECT_THAT(line, MatchesRegex("[0-7] .*"));
    }
    EXPECT_EQ(lines({"log", "-n", "3"}).size(), 3u);
    EXPECT_THAT(must({"log"}), HasSubstr("\\n\\n----------------Platen V1.0.0.1BUILD2015-09-09"));
}

TEST_F(Command, LogFollowsWhatIsWritten) {
    startManual();
    Process follow({"zmctl", "log", "-n", "0", "--follow"}, folder);
    EXPECT_TRUE(eventually([&] {
        must({"app", "resume"});
        return follow.line(std::chrono::milliseconds(200)).find("APPS") != std::string::npos;
    }));
}

TEST_F(Command, ClockAdvanceFiresWhatFallsDue) {
    startManual();
    must({"clock", "advance", "14999"});
    EXPECT_EQ(item(1, 7004)["textId"], 33);
    must({"clock", "advance", "1"});
    EXPECT_EQ(item(1, 7004)["textId"], 34);
    must({"clock", "advance", "3000"});
    EXPECT_THAT(lines({"requests"}), ElementsAre(R"({"op":"QueryCloseApp","app":"zmdisc","data":"null"})"));
    EXPECT_EQ(window(), 1) << "a passive launcher only records";
}

TEST_F(Command, SettleGivesUpOnAnApplicationThatHangs) {
    startManual();
    const int application = std::stoi(lines({"ps"}).at(0).substr(4));
    kill(application, SIGSTOP);
    EXPECT_THAT(mustFail({"settle", "-t", "0.3"}), HasSubstr("not settled in time"));
    kill(application, SIGCONT);
    settle();
}

TEST_F(Command, SettleWithoutTimeLooksOnce) {
    startManual();
    settle();
    must({"settle", "-t", "0"});
}

TEST_F(Command, ValuesSetWhileNoApplicationRunsAreThereWhenOneStarts) {
    startManual();
    must({"app", "quit"});
    ASSERT_TRUE(eventually([this] { return must({"ps"}) == "app - not running\n"; }));
    must({"device", "7", "-52"});
    must({"time", "08:15"});
    must({"language", "de"});
    must({"app", "start"});
    settle();
    EXPECT_EQ(item(1, 20)["text"], "-5.2");
    EXPECT_EQ(item(1, 8)["text"], "08:15");
    EXPECT_NE(item(1, 7004)["text"], "Loading ...");
}

TEST_F(Command, ClockNeedsTheManualClock) {
    startBench({"--no-disc-service", "--no-web", "--launcher", "passive"});
    EXPECT_THAT(mustFail({"clock", "advance", "1"}), HasSubstr("--manual-clock"));
}

TEST_F(Command, TheDriveNeedsTheDiscService) {
    startManual();
    for (const Words& words : {Words{"insert", "/tmp"}, Words{"eject"}, Words{"disc"}}) {
        EXPECT_THAT(mustFail(words), HasSubstr("without a disc service")) << words[0];
    }
    EXPECT_THAT(mustFail({"kill", "disc"}), HasSubstr("disc is not running"));
}

TEST_F(Command, InsertEjectAndDiscDriveTheDiscService) {
    startBench({"--no-web", "--launcher", "passive"});
    std::filesystem::create_directory(folder + "/empty");
    EXPECT_THAT(mustFail({"insert", folder + "/none"}), HasSubstr("/none"));
    must({"insert", folder + "/empty"});
    EXPECT_TRUE(eventually([this] { return Json::parse(must({"disc"}))["path"] == folder + "/empty"; }))
        << must({"disc"});
    EXPECT_EQ(must({"disc", "--json"}), must({"disc"}));
    must({"eject"});
    EXPECT_TRUE(eventually([this] { return Json::parse(must({"disc"}))["state"] == "empty"; }))
        << must({"disc"});
}

TEST_F(Command, InsertWaitsUntilTheDiscIsReadyOrCannotBe) {
    startBench({"--no-web", "--launcher", "passive"});
    const auto state = [this] { return Json::parse(must({"disc"}))["state"]; };
    for (const char* name : {"first", "second"}) {
        writeMusicFolder(folder + "/" + name, 2);
        must({"insert", "--wait", folder + "/" + name});
        EXPECT_EQ(state(), "loaded") << name;
        EXPECT_THAT(must({"disc"}), HasSubstr(name));
    }
    must({"insert", folder + "/second", "--wait"});
    EXPECT_EQ(state(), "loaded") << "the same disc once more";
    std::filesystem::create_directory(folder + "/empty");
    EXPECT_THAT(mustFail({"insert", folder + "/empty", "--wait"}), HasSubstr(folder + "/empty: "));
    EXPECT_EQ(state(), "error");
}

TEST_F(Command, InsertSaysAtOnceWhatIsNoDisc) {
    startBench({"--no-web"});
    std::ofstream(folder + "/text.md") << "no disc";
    for (const Words& words :
         {Words{"insert", folder + "/text.md"}, Words{"insert", "--wait", folder + "/text.md"}}) {
        EXPECT_EQ(mustFail(words), "zmctl: " + folder + "/text.md: not a disc image\n");
    }
    writeMusicFolder(folder + "/songs", 2);
    must({"insert", "--wait", folder + "/songs"});
    mustFail({"insert", folder + "/text.md"});
    EXPECT_EQ(Json::parse(must({"disc"}))["state"], "loaded") << "what is inside stays";
    // A slash at its end makes no other disc of it.
    must({"insert", "--wait", folder + "/./songs/"});
    EXPECT_EQ(Json::parse(must({"disc"}))["path"], folder + "/songs");
}

TEST_F(Command, InsertWaitsUntilTheDiscPlays) {
    writeMusicFolder(folder + "/songs", 2);
    startBench({"--no-web"});
    must({"insert", "--wait", folder + "/songs"});
    EXPECT_THAT(must({"pps", "get", "zelmar/disc/status"}), HasSubstr("discstate::2\n"));
    std::filesystem::create_directory(folder + "/noise");
    for (const char* name : {"one.mp3", "two.mp3"}) {
        std::ofstream(folder + "/noise/" + name) << "this is no music";
    }
    EXPECT_EQ(mustFail({"insert", "--wait", folder + "/noise"}),
              "zmctl: " + folder + "/noise: nothing on it can be played\n");
}

TEST_F(Command, InsertIsDoneWithADiscThatIsReadyWhereThePlayerStaysBehind) {
    writeMusicFolder(folder + "/songs", 2);
    startBench({"--no-web", "--insert-stays"});
    must({"pps", "put", "zelmar/disc/control", R"(zmcmd:json:{"cmd":187,"param1":0,"param2":0})"});
    must({"insert", "--wait", folder + "/songs"});
    EXPECT_EQ(Json::parse(must({"disc"}))["state"], "loaded");
}

TEST_F(Command, AnEmptyDriveCannotReadWrongly) {
    startBench({"--no-web", "--launcher", "passive"});
    EXPECT_TRUE(eventually([this] { return Json::parse(must({"disc"}))["state"] == "empty"; }));
    EXPECT_THAT(mustFail({"disc", "fault", "read"}), HasSubstr("the drive is empty"));
    must({"disc", "fault", "temperature"});
    must({"disc", "fault", "none"});
}

TEST_F(Command, AStepTellsWhatItsCommandLedTo) {
    startManual();
    playMusic();
    must({"step", "--changes"});
    const Json step =
        Json::parse(must({"step", "--pixels", "010203", "--changes", "click", "main", "6", "6524", "1"}));
    EXPECT_EQ(step["exit"], 0);
    EXPECT_EQ(step["requests"], Json::parse(R"([{"op":"ToBeep"}])"));
    EXPECT_EQ(step["changes"], Json::parse(R"([{"object":"zelmar/disc/control",
        "lines":["zmcmd:json:{\"cmd\":1,\"param1\":0,\"param2\":0}"]}])"));
    EXPECT_THAT(step["log"][0], HasSubstr("nWndId=6,nCtrlId=6524,nBtState=1"));
    EXPECT_EQ(step["stale"], Json::object());
    EXPECT_EQ(step["pixels"], 0);
    EXPECT_EQ(step["screen"]["main"]["window"], 6);
    EXPECT_THAT(step["screen"]["main"]["windows"]["6"]["items"], IsEmpty())
        << "a skip changes nothing by itself";
    const Json clock = Json::parse(must({"step", "--changes", "time", "23:05", "24"}));
    EXPECT_EQ(clock["screen"]["main"]["windows"]["6"]["items"].size(), 1U);
    EXPECT_EQ(clock["screen"]["main"]["windows"]["6"]["items"]["8"]["text"], "23:05");
    EXPECT_GT(Json::parse(must({"step"}))["screen"]["main"]["windows"]["6"]["items"].size(), 20U);
    const Json black = Json::parse(must({"step", "--pixels", "000000", "app", "quit"}));
    EXPECT_TRUE(black["screen"].is_null()) << "no application";
    EXPECT_EQ(black["pixels"], 800 * 480);
    EXPECT_EQ(Json::parse(must({"step", "disc", "fault", "read"}))["exit"], 1);
    EXPECT_THAT(must({"record", "--all", "-"}), HasSubstr("time 23:05 24\n"))
        << "the command inside is the input";
    mustFail({"step", "--pixels", "red"}, 2);
    mustFail({"step", "--other", "settle"}, 2);
    mustFail({"step", "step", "settle"}, 2);
}

TEST_F(Command, ObjectsGoByTheirWholePathTooAndANameThatIsNoneNamesTheNearest) {
    startManual();
    must({"pps", "put", "/pps/test/one", "a::1"});
    EXPECT_EQ(must({"pps", "get", "test/one"}), "a::1\n");
    EXPECT_THAT(mustFail({"pps", "get", "test/oen"}), HasSubstr("did you mean \"test/one\"?"));
}

} // namespace zm::test
