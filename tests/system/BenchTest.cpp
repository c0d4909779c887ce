#include "tests/system/SystemTest.h"

#include <signal.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

namespace zm::test {

using BenchStart = SystemTest;
using BenchChildren = SystemTest;

TEST_F(BenchStart, PrintsReadyAloneWithoutThePageAfterTheFirstResume) {
    bench = std::make_unique<Process>(
        Words{"zmbench", "--runtime", folder, "--no-disc-service", "--manual-clock", "--no-web"}, folder);
    EXPECT_EQ(bench->line(), "ready");
    EXPECT_THAT(must({"log"}), HasSubstr("APPS_STATUS_RESUME"));
}

TEST_F(BenchStart, PrintsTheAddressOfThePage) {
    bench = std::make_unique<Process>(
        Words{"zmbench", "--runtime", folder, "--no-disc-service", "--manual-clock", "--port", "0"}, folder);
    EXPECT_THAT(bench->line(), MatchesRegex("ready http://127.0.0.1:[0-9]+/\\?token=[0-9a-f]+"));
}

TEST_F(BenchStart, MakesTheRuntimeFolderForItsUserAlone) {
    std::filesystem::remove_all(folder);
    startManual();
    struct stat info {};
    ASSERT_EQ(stat(folder.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
}

TEST_F(BenchStart, ASecondBenchOnTheSameFolderEndsWithAClearError) {
    startManual();
    Process second({"zmbench", "--runtime", folder, "--no-web"}, folder);
    EXPECT_EQ(second.wait(), 1);
    EXPECT_THAT(second.err(), HasSubstr("another bench already runs in " + folder));
    EXPECT_EQ(second.out(), "");
    EXPECT_EQ(window(), 1) << "the first one goes on";
}

TEST_F(BenchStart, TheNextBenchTakesAFolderOverThatAKilledOneLeft) {
    startManual();
    bench->signal(SIGKILL);
    EXPECT_EQ(bench->wait(), 1000 + SIGKILL);
    startManual();
    EXPECT_EQ(window(), 1);
}

TEST_F(BenchStart, EndsInOrderWithItsChildren) {
    startManual();
    const int application = std::stoi(lines({"ps"}).at(0).substr(4));
    EXPECT_EQ(endBench(), 0);
    EXPECT_EQ(kill(application, 0), -1);
    EXPECT_EQ(errno, ESRCH);
}

TEST_F(BenchStart, WrongArgumentsEndWithTheUsage) {
    for (const Words& words :
         {Words{"--nonsense"}, Words{"--port", "x"}, Words{"--port"}, Words{"--launcher", "lazy"},
          Words{"extra"}, Words{"--catalogue", "file"}, Words{"--disc", "x", "--no-disc-service"},
          Words{"--port", "0", "--no-web"}, Words{"--manual-clock", "--launcher", "active"},
          Words{"--app-args", "'open"}}) {
        Words line{"zmbench", "--runtime", folder};
        line.insert(line.end(), words.begin(), words.end());
        Process process(line, folder);
        EXPECT_EQ(process.wait(), 2) << words[0];
        EXPECT_THAT(process.err(), HasSubstr("usage: zmbench")) << words[0];
    }
}

TEST_F(BenchStart, ADiscThatDoesNotExistIsNamed) {
    Process process({"zmbench", "--runtime", folder, "--no-web", "--disc", "/nowhere/disc"}, folder);
    EXPECT_EQ(process.wait(), 1);
    EXPECT_THAT(process.err(), HasSubstr("/nowhere/disc"));
}

TEST_F(BenchStart, ADiscGivenAtTheStartIsInTheDrive) {
    std::filesystem::create_directory(folder + "/empty");
    startBench({"--no-web", "--launcher", "passive", "--disc", folder + "/empty"});
    EXPECT_TRUE(eventually([this] { return must({"disc"}).find(folder + "/empty") != std::string::npos; }))
        << must({"disc"});
}

TEST_F(BenchStart, TheApplicationByHandFailsWithinTwoSecondsWithoutABench) {
    const auto begin = std::chrono::steady_clock::now();
    Process process({"Platen", "disc"}, folder);
    EXPECT_EQ(process.wait(), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(2500));
    EXPECT_NE(process.err(), "") << "it says why";
}

TEST_F(BenchStart, ApplicationArgumentsReachTheApplication) {
    startManual({"--app-args", "--song='Blue Sky'"});
    const int application = std::stoi(lines({"ps"}).at(0).substr(4));
    std::ifstream stream("/proc/" + std::to_string(application) + "/cmdline");
    std::string line((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    EXPECT_EQ(line, std::string("Platen\0disc\0--song=Blue Sky\0", 28));
}

TEST_F(BenchStart, NothingIsWrittenOutsideTheRuntimeFolder) {
    startManual();
    playMusic();
    for (const char* name : {"pps.sock", "screen.sock", "shell.sock", "ctl.sock", "slog"}) {
        EXPECT_TRUE(std::filesystem::exists(folder + "/" + name)) << name;
    }
    EXPECT_FALSE(std::filesystem::exists("/pps"));
    EXPECT_FALSE(std::filesystem::exists("/dev/qdb"));
}

TEST_F(BenchChildren, AKilledApplicationIsNamedAndStartedAgain) {
    startManual();
    playMusic();
    const std::string before = must({"ps"});
    must({"kill", "app"});
    settle();
    EXPECT_NE(must({"ps"}), before);
    EXPECT_THAT(bench->err(), HasSubstr("Platen was killed by signal 9"));
    EXPECT_EQ(window(), 6) << "the objects told the new one of the disc before it was resumed";
}

TEST_F(BenchChildren, AnApplicationThatComesBackWhileDrivingShowsNoVideo) {
    startManual();
    putDevice({"disc::1", "mediatype::0", "videomode::1"});
    putStatus({"discstate::2"});
    ASSERT_EQ(window(), 17);
    must({"device", "2", "0"});
    settle();
    ASSERT_EQ(window(), 10);
    must({"kill", "app"});
    settle();
    EXPECT_EQ(window(), 10);
    EXPECT_EQ(screen()["video"].value("visible", false), false);
    const std::string log = must({"log", "-n", "100000"});
    EXPECT_EQ(log.find("m_bVideoIsVisible=1", log.rfind("main begin")), std::string::npos)
        << "not even for a moment";
    must({"device", "2", "1"});
    settle();
    EXPECT_EQ(window(), 17);
}

TEST_F(BenchChildren, FiveDeathsInAMinuteAreEnoughAndAppStartBeginsAnew) {
    startManual();
    for (int death = 0; death < 5; ++death) {
        must({"kill", "app"});
        settle();
    }
    EXPECT_EQ(must({"ps"}), "app - died too often, given up (deaths: 5)\n");
    EXPECT_THAT(bench->err(), HasSubstr("not started again"));
    EXPECT_THAT(mustFail({"screen"}), HasSubstr("not running"));
    must({"app", "start"});
    settle();
    EXPECT_EQ(window(), 1);
}

TEST_F(BenchChildren, AnApplicationThatEndsInOrderStaysDownUntilItIsStarted) {
    startManual();
    must({"app", "quit"});
    ASSERT_TRUE(eventually([this] { return must({"ps"}) == "app - not running\n"; }));
    settle();
    EXPECT_THAT(mustFail({"touch", "1", "1"}), HasSubstr("not running"));
    must({"app", "start"});
    settle();
    EXPECT_EQ(window(), 1);
    EXPECT_EQ(bench->err().find("started again in"), std::string::npos);
}

TEST_F(BenchChildren, StartingARunningApplicationChangesNothing) {
    startManual();
    const std::string before = must({"ps"});
    must({"app", "start"});
    settle();
    EXPECT_EQ(must({"ps"}), before);
}

TEST_F(BenchChildren, TheDiscServiceIsWatchedToo) {
    startBench({"--no-web"});
    ASSERT_THAT(lines({"ps"}),
                ElementsAre(MatchesRegex("disc [0-9]+ running"), MatchesRegex("app [0-9]+ running")));
    const std::string before = lines({"ps"}).at(0);
    must({"kill", "disc"});
    EXPECT_TRUE(eventually([&] {
        const std::string now = lines({"ps"}).at(0);
        return now != before && now.ends_with(" running (deaths: 1)");
    }));
    EXPECT_THAT(bench->err(), HasSubstr("zmdiscd was killed by signal 9"));
}

} // namespace zm::test
