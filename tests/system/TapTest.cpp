#include "tests/system/MusicFolder.h"
#include "tests/system/SystemTest.h"

namespace zm::test {

/** What is on the screen is read and touched by its text. */
using Tap = SystemTest;

TEST_F(Tap, TheScreenIsReadWithIds) {
    startManual();
    playMusic();
    must({"pps", "put", "zelmar/disc/playing",
          R"(ID3:json:{"title":"The Song","artist":"Nobody","album":""})"});
    settle();
    const auto text = lines({"screen", "--text"});
    EXPECT_EQ(text.at(0), "main 6");
    EXPECT_THAT(text, testing::Contains("  5      Disc"));
    EXPECT_THAT(text, testing::Contains("  6524   (button)")) << "what has no text is touched by its id";
    EXPECT_THAT(text, testing::Not(testing::Contains(HasSubstr("Radio"))))
        << "the popup of the sources is hidden";
}

TEST_F(Tap, TouchesWhatHasThatTextOrId) {
    startManual();
    playMusic();
    watchCommands();
    must({"tap", "6524"});
    EXPECT_THAT(commands(1), ElementsAre("1,0,0"));
    must({"tap", "Disc"});
    settle();
    EXPECT_THAT(must({"screen", "--text"}), HasSubstr("Radio"));
    must({"requests", "--clear"});
    must({"tap", "rad"});
    settle();
    EXPECT_THAT(must({"requests"}), HasSubstr("zmradio"));
}

TEST_F(Tap, SaysWhatIsThereInstead) {
    startManual();
    playMusic();
    EXPECT_THAT(mustFail({"tap", "6525000"}), HasSubstr("the nearest is 6525"));
    EXPECT_THAT(mustFail({"tap", "Disk"}), HasSubstr("did you mean \"Disc\"?"));
    EXPECT_THAT(mustFail({"tap", "2067"}), HasSubstr("2067 \"00:00\" is only shown, it cannot be touched"));
    must({"tap", "5"});
    settle();
    EXPECT_THAT(mustFail({"tap", "2075"}), HasSubstr("no item")) << "it lies below the popup now";
    EXPECT_THAT(mustFail({"tap"}, 2), HasSubstr("usage: zmctl tap"));
}

} // namespace zm::test
