#include "tests/system/SystemTest.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace zm::test {

/** The pages of other applications belong to the same head unit. */
class PlainPage : public SystemTest {
protected:
    std::string shot() {
        settle();
        must({"shot", folder + "/page.png"});
        std::ifstream stream(folder + "/page.png", std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(PlainPage, FollowsThemeAndLanguageAlsoWhileItIsInFront) {
    startBench({"--no-disc-service", "--no-web", "--launcher", "active"});
    playMusic();
    must({"click", "main", "6", "3", "1"}); // home
    const std::string night = shot();
    must({"theme", "day"});
    const std::string day = shot();
    EXPECT_NE(day, night);
    must({"language", "de"});
    const std::string german = shot();
    EXPECT_NE(german, day);
    must({"theme", "night"});
    must({"language", "en"});
    EXPECT_EQ(shot(), night);
    must({"touch", "400", "340"});
    settle();
    EXPECT_NE(shot(), night);
    must({"theme", "day"});
    must({"click", "main", "6", "3", "1"});
    EXPECT_EQ(shot(), day) << "one that comes to the front later has them too";
}

TEST_F(PlainPage, TellsTimeAndCarAlsoWhileItIsInFront) {
    startBench({"--no-disc-service", "--no-web", "--launcher", "active"});
    playMusic();
    must({"time", "09:15"});
    must({"click", "main", "6", "3", "1"}); // home
    const std::string morning = shot();
    must({"time", "09:16"});
    const std::string minuteLater = shot();
    EXPECT_NE(minuteLater, morning);
    must({"device", "6", "255"});
    const std::string muted = shot();
    EXPECT_NE(muted, minuteLater);
    must({"device", "6", "0"});
    EXPECT_EQ(shot(), minuteLater);
    must({"time", "09:15"});
    EXPECT_EQ(shot(), morning);
}

TEST_F(PlainPage, EachApplicationHasItsOwn) {
    startBench({"--no-disc-service", "--no-web", "--launcher", "active"});
    playMusic();
    std::vector<std::string> pages;
    for (const char* control : {"3", "103", "105", "106", "107", "111", "118", "119"}) {
        must({"click", "main", "6", control, "1"});
        pages.push_back(shot());
        must({"touch", "400", "340"});
        settle();
    }
    std::sort(pages.begin(), pages.end());
    EXPECT_EQ(std::unique(pages.begin(), pages.end()), pages.end());
}

} // namespace zm::test
