#include "tests/system/Film.h"

namespace zm::test {

TEST_F(Film, IsHiddenWhileTheCarMoves) {
    ASSERT_NO_FATAL_FAILURE(startFilm());
    drive(true);
    EXPECT_TRUE(isHidden()) << screen()["video"];
    for (const Words& words :
         {Words{"app", "pause"}, Words{"app", "resume"}, Words{"key", "20"}, Words{"touch", "400", "60"},
          Words{"app", "hideonly"}, Words{"app", "resume"}}) {
        must(words);
        settle();
        EXPECT_FALSE(seesRed()) << words[0] << " " << words[1];
    }
    drive(false);
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

TEST_F(Film, IsHiddenWhateverProcessIsKilledWhileTheCarMoves) {
    ASSERT_NO_FATAL_FAILURE(startFilm());
    drive(true);
    for (const char* process : {"app", "disc"}) {
        killAndWatch(process);
    }
}

TEST_F(Film, ThatAnUnknowingApplicationShowsIsHiddenWhileTheCarMoves) {
    ASSERT_NO_FATAL_FAILURE(startFilm());
    must({"device", "--silent", "2", "0"});
    for (const char* process : {"app", "disc"}) {
        EXPECT_FALSE(seesRed());
        killAndWatch(process);
        EXPECT_TRUE(eventually([this] { return screen()["video"]["visible"] == true; })) << process;
        EXPECT_EQ(screen()["video"]["locked"], true);
        EXPECT_FALSE(seesRed()) << process;
    }
    must({"device", "--silent", "2", "1"});
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

TEST_F(Film, IsSeenByTheDriversTouchForOneDrive) {
    ASSERT_NO_FATAL_FAILURE(startFilm());
    drive(true);
    EXPECT_TRUE(isHidden()) << screen()["video"];
    showAnyway();
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    must({"kill", "app"});
    EXPECT_TRUE(eventually([this] {
        const Answer answer = ctl({"screen"});
        return answer.exit == 0 && Json::parse(answer.out)["main"]["window"] == 10;
    })) << "an application that comes back warns again";
    EXPECT_FALSE(seesRed());
    drive(false);
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    drive(true);
    EXPECT_TRUE(isHidden()) << screen()["video"];
}

TEST_F(Film, ThatIsInsertedWhileDrivingIsSeenOnlyOnceTheCarIsParked) {
    makeFilm();
    startBench({"--no-web", "--launcher", "passive"});
    drive(true);
    must({"insert", disc()});
    ASSERT_TRUE(eventually([this] {
        EXPECT_FALSE(seesRed());
        return screen()["video"].value("frames", 0) > 10;
    })) << "the decoder's pictures come";
    EXPECT_TRUE(isHidden()) << screen()["video"];
    drive(false);
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

} // namespace zm::test
