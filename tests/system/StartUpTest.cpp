#include "BuildPaths.h"
#include "base/Paths.h"
#include "platform/linux/pps/PpsFile.h"
#include "tests/system/SystemTest.h"

#include <signal.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>

namespace zm::test {

namespace fs = std::filesystem;

constexpr const char* USAGE = "Platen:V1.0.0.1BUILD2015-09-09\n"
                              "  -v    get version\n"
                              "  -h    get help\n"
                              "  -m [MCU|MPU|...]   set packet name\n"
                              "  -c [install|uninstall]set command\n"
                              "  -f [/tmp/mcu.tar.gz]  set packet file\n"
                              "  -u [authtoken] set authtoken\n"
                              "  -p  monitor pps control\n";

/** The application started by hand, its exit status and what it logs on the way. */
class ApplicationByHand : public SystemTest {
protected:
    const std::string m_fonts = std::string(ZM_BINARY_DIR) + "/share/fonts/";
    std::string m_resources = std::string(ZM_BINARY_DIR) + "/share/rccs/";
    std::unique_ptr<Process> m_application;

    /** A bench whose own application has ended, and which waits for the one by hand. */
    void SetUp() override {
        startManual();
        must({"app", "quit"});
        ASSERT_TRUE(eventually([this] { return must({"ps"}) == "app - not running\n"; }));
    }
    void start(Words arguments) {
        setenv("ZM_RCC_PATH", m_resources.c_str(), 1);
        setenv("ZM_FONT_PATH", m_fonts.c_str(), 1);
        arguments.insert(arguments.begin(), "Platen");
        m_application = std::make_unique<Process>(arguments, folder);
        m_group = "1-" + std::to_string(m_application->pid()) + "-zelmar-" + arguments[1];
    }
    void startAndShow(const Words& arguments) {
        start(arguments);
        ASSERT_TRUE(eventually([this] { return ctl({"screen"}).exit == 0; })) << m_application->err();
        settle();
        // The overlay's window is the last step of the start.
        EXPECT_TRUE(eventually([this] { return screen()["osd"]["shown"] == Json({20}); }));
    }
    int end(int signal) {
        m_application->signal(signal);
        return m_application->wait();
    }
    /** The resource files under names that begin with "car-", and a path that ends with these letters. */
    void prefixResources() {
        fs::copy(m_resources, folder + "/rccs", fs::copy_options::recursive);
        for (const char* name : {"DISC.zmrc_device", "OVERLAY.zmrc_device"}) {
            fs::rename(folder + "/rccs/" + name, folder + "/rccs/car-" + name);
        }
        m_resources = folder + "/rccs/car-";
    }

    /** What the latest run logged of its steps: severity, blank, text without the program's tag. */
    std::vector<std::string> steps() {
        const char* STEPS[] = {"_PLATEN_[main]-", "_PLATEN_[ViewInit]-[DiscView::ViewInit]",
                               "_PLATEN_[SetVoicePlayPar]-", "_PLATEN_[SetWaitDeviceStateTimer]-"};
        std::vector<std::string> result;
        for (const std::string& line : lines({"log", "-n", "1000000"})) {
            if (line.find("main begin") != std::string::npos) {
                result.clear();
            }
            const bool isStep = std::ranges::any_of(
                STEPS, [&](const char* step) { return line.find(step) != std::string::npos; });
            if (isStep) {
                result.push_back(line.substr(0, 2) + line.substr(line.find("_PLATEN_") + 8));
            }
        }
        return result;
    }
    /** The steps up to the main view's initialisation. */
    std::vector<std::string> firstSteps() const {
        return {"5 [main]-\\n\\n----------------Platen V1.0.0.1BUILD2015-09-09 : Sep  9 2015 10:08:13 main "
                "begin --------------------\\n",
                "6 [main]-theApp.Init",
                "6 [main]-" + m_group + ", zmdisc, DISC.zmrc_device, " + m_resources + ", " + m_fonts +
                    ", 800, 480"};
    }
    static std::vector<std::string> chained(std::vector<std::string> first,
                                            const std::vector<std::string>& then) {
        first.insert(first.end(), then.begin(), then.end());
        return first;
    }

private:
    std::string m_group;
};

using ApplicationOptions = SystemTest;

TEST_F(ApplicationOptions, NoArgumentsAndOptionsPrintTheUsage) {
    for (const Words& arguments : {Words{}, Words{"-h"}, Words{"-p"}, Words{"-m", "MCU"},
                                   Words{"-c", "install"}, Words{"-f", "/tmp/x"}, Words{"-u", "token"},
                                   Words{"-x"}, Words{"-m"}, Words{"--song=x"}, Words{"-p", "disc"}}) {
        Words words{"Platen"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        Process process(words, folder);
        EXPECT_EQ(process.wait(), 0);
        EXPECT_EQ(process.out(), USAGE) << (arguments.empty() ? "no arguments" : arguments[0]);
    }
    EXPECT_FALSE(fs::exists(folder + "/slog")) << "nothing was begun";
}

TEST_F(ApplicationOptions, TheVersionOptionPrintsNameAndVersion) {
    Process process({"Platen", "-v", "disc"}, folder);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.out(), "Platen:V1.0.0.1BUILD2015-09-09\n");
}

TEST_F(ApplicationByHand, StartsInOrderAndEndsWithZero) {
    startAndShow({"disc"});
    EXPECT_EQ(screen()["main"]["shown"], Json({1}));
    EXPECT_EQ(end(SIGTERM), 0);
    EXPECT_EQ(
        steps(),
        chained(firstSteps(),
                {"6 [main]-theApp.ViewInit", "6 [ViewInit]-[DiscView::ViewInit]", "6 [main]-theOsd.Init",
                 "6 [main]-theOsd.ViewInit", "6 [main]-theApp.JoinView", "6 [main]-viewController.Init",
                 "6 [SetWaitDeviceStateTimer]-**************[DiscView::SetWaitDeviceStateTimer]"
                 "*******************",
                 "6 [main]----------StartEventLoop-----------", "5 [main]-main end"}));
}

TEST_F(ApplicationByHand, ASongArmsVoicePlayBehindTheViewsContent) {
    startAndShow({"disc", "--song='Blue Sky'"});
    EXPECT_EQ(end(SIGINT), 0);
    const auto seen = steps();
    const auto song = std::ranges::find(seen, "6 [SetVoicePlayPar]-[DiscView::SetVoicePlayPar]song=Blue Sky");
    ASSERT_NE(song, seen.end());
    EXPECT_EQ(song[-1], "6 [ViewInit]-[DiscView::ViewInit]");
    EXPECT_EQ(song[1], "6 [main]-theOsd.Init");
}

TEST_F(ApplicationByHand, TheFirstArgumentStandsInTheWindowGroupOnly) {
    startAndShow({"another", "disc"});
    EXPECT_EQ(end(SIGTERM), 0);
    const auto seen = steps();
    EXPECT_THAT(std::vector(seen.begin(), seen.begin() + 3), testing::ElementsAreArray(firstSteps()));
}

TEST_F(ApplicationByHand, AFirstArgumentOfAnyLengthAndBytesDoesNoHarm) {
    for (const std::string& argument :
         {std::string("\xff\xfe"), std::string(1000, 'x'), std::string(239, 'x') + "\xe4\xb8\xad"}) {
        startAndShow({argument});
        EXPECT_EQ(end(SIGTERM), 0);
    }
}

TEST_F(ApplicationByHand, ResourceNamesFollowThePathWithoutASlash) {
    prefixResources();
    startAndShow({"disc"});
    EXPECT_EQ(end(SIGTERM), 0);
}

TEST_F(ApplicationByHand, AMissingMainResourceEndsWithOne) {
    prefixResources();
    fs::remove(m_resources + "DISC.zmrc_device");
    start({"disc"});
    EXPECT_EQ(m_application->wait(), 1);
    EXPECT_EQ(steps(), chained(firstSteps(), {"2 [main]-==========view init error=========="}));
}

TEST_F(ApplicationByHand, AMissingOverlayResourceEndsWithOne) {
    prefixResources();
    fs::remove(m_resources + "OVERLAY.zmrc_device");
    start({"disc"});
    EXPECT_EQ(m_application->wait(), 1);
    EXPECT_EQ(steps(), chained(firstSteps(),
                               {"6 [main]-theApp.ViewInit", "6 [ViewInit]-[DiscView::ViewInit]",
                                "6 [main]-theOsd.Init", "2 [main]-==========osdview init error=========="}));
}

TEST_F(ApplicationByHand, AnObjectThatCannotBeOpenedSpoilsNeitherStartNorEnd) {
    // The object's name belongs to a folder from now on.
    ASSERT_TRUE(ppsUnlink(ppsSocket(folder), "/pps/zelmar/disc/mpeginfo"));
    must({"pps", "put", "zelmar/disc/mpeginfo/inside", "a::1"});
    startAndShow({"disc"});
    EXPECT_THAT(m_application->err(), HasSubstr("/pps/zelmar/disc/mpeginfo"));
    putDevice({"disc::1", "mediatype::2"});
    putStatus({"discstate::2"});
    EXPECT_EQ(window(), 6);

    EXPECT_EQ(end(SIGTERM), 0) << "what was not open need not be closed";
    EXPECT_THAT(steps(), testing::Contains("5 [main]-main end"));
}

/** The application as the bench starts it. */
using StartUp = SystemTest;

TEST_F(StartUp, APlayerThatLacksAnObjectStaysAwayOnceTheDriverHasQuitIt) {
    startManual();
    const auto ended = [this] { return must({"ps"}) == "app - not running\n"; };
    must({"app", "quit"});
    ASSERT_TRUE(eventually(ended));
    // The object's name belongs to a folder from now on.
    ASSERT_TRUE(ppsUnlink(ppsSocket(folder), "/pps/zelmar/disc/mpeginfo"));
    must({"pps", "put", "zelmar/disc/mpeginfo/inside", "a::1"});
    must({"app", "start"});
    playMusic();
    must({"app", "quit"});
    EXPECT_TRUE(eventually(ended)) << must({"ps"});
    // One that failed is named with its deaths and comes back after 0.1 s.
    must({"wait", "500"});
    EXPECT_TRUE(ended()) << must({"ps"});
}

} // namespace zm::test
