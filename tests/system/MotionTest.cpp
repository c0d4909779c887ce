// Whether pages move is said by an option or a command, and by the car; pictures show what has arrived.

#include "BuildPaths.h"
#include "tests/system/SystemTest.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace zm::test {

class SystemMotion : public SystemTest {
protected:
    /** A bench whose popups take ten seconds to come, so that there is time to look. */
    void start(Words words = {}) {
        const std::string pages = folder + "/pages";
        std::filesystem::copy(ZM_SOURCE_DIR "/resources", pages, std::filesystem::copy_options::recursive);
        const std::string styles = pages + "/shared/styles.zmrc";
        std::stringstream content;
        content << std::ifstream(styles).rdbuf();
        std::string text = content.str();
        const std::string from = "\"popup\": 180";
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos);
        std::ofstream(styles) << text.replace(at, from.size(), "\"popup\": 10000");
        words.insert(words.end(), {"--no-disc-service", "--no-web", "--resources", pages});
        startBench(words);
        playMusic();
        settle();
        without = must({"shot", "--digest"});
        must({"motion", "off"});
        must({"tap", "Disc"});
        with = must({"shot", "--digest"});
        EXPECT_NE(with, without);
        close();
        must({"motion", "on"});
    }
    void close() {
        must({"tap", "Close"});
        settle();
        ASSERT_EQ(must({"shot", "--digest"}), without);
    }
    std::string now() { return must({"shot", "--now", "--digest"}); }

    std::string without; ///< the popup
    std::string with;
};

TEST_F(SystemMotion, AShotShowsWhatHasArrivedUnlessItIsWantedNow) {
    start();
    must({"tap", "Disc"});
    EXPECT_TRUE(eventually([&] { return now() != without; }));
    EXPECT_NE(now(), with) << "it is on its way";
    EXPECT_EQ(must({"drawn"}), "");
    EXPECT_EQ(must({"shot", "--digest"}), with);
    EXPECT_EQ(now(), with);
    close();
    must({"tap", "Disc"});
    settle();
    EXPECT_EQ(now(), with) << "what has settled has arrived, too";
}

TEST_F(SystemMotion, NothingFadesWhileTheCarDrivesOrWhereItIsOff) {
    start();
    must({"device", "parking", "0"});
    must({"tap", "Disc"});
    EXPECT_EQ(now(), with);
    must({"device", "parking", "1"});
    close();
    must({"tap", "Disc"});
    EXPECT_TRUE(eventually([&] { return now() != without; }));
    EXPECT_NE(now(), with);
    must({"device", "--silent", "parking", "fail"});
    EXPECT_TRUE(eventually([&] { return now() == with; })) << "it drives off half way";
    must({"device", "parking", "1"});
    close();
    must({"motion", "off"});
    must({"tap", "Disc"});
    EXPECT_EQ(now(), with);
}

TEST_F(SystemMotion, AnApplicationThatComesLaterIsToldToo) {
    start({"--motion", "off"});
    must({"motion", "off"});
    must({"kill", "app"});
    EXPECT_TRUE(eventually([&] {
        return ctl({"screen", "--text"}).out.find("main 6") != std::string::npos;
    }));
    settle();
    must({"tap", "Disc"});
    EXPECT_EQ(now(), with);
}

TEST_F(SystemMotion, AnotherWordIsRefused) {
    startManual();
    EXPECT_THAT(mustFail({"motion", "slow"}, 2), HasSubstr("motion on|off"));
}

} // namespace zm::test
