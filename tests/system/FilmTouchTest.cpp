#include "tests/system/Film.h"

namespace zm::test {

TEST_F(Film, ThatIsPausedIsSeenAgainAfterTheLauncherHasPausedTheApplication) {
    ASSERT_NO_FATAL_FAILURE(startFilm());
    must({"key", "pause"});
    ASSERT_TRUE(eventually([this] {
        return must({"pps", "get", "zelmar/disc/status"}).find("discstate::6") != std::string::npos;
    }));
    must({"app", "pause"});
    settle();
    EXPECT_EQ(screen()["video"]["posted"], false);
    must({"app", "resume"});
    settle();
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

/** A film while the car drives, and a driver whose finger is interrupted. */
class FilmTouch : public Film {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(startFilm());
        drive(true);
        ASSERT_TRUE(isHidden()) << screen()["video"];
    }
    void step(const char* kind) {
        must({kind, m_place[0], m_place[1]});
        settle();
    }
    void pressShowAnyway() {
        m_place = showAnywayPlace();
        step("press");
    }
    void releaseIt() { step("release"); }
    bool isLocked() { return screen()["video"]["locked"] == true; }
    void app(const char* status) {
        must({"app", status});
        settle();
    }

private:
    Words m_place;
};

TEST_F(FilmTouch, OpensTheLockOnlyOnceTheFingerIsLifted) {
    pressShowAnyway();
    EXPECT_TRUE(isHidden());
    releaseIt();
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

TEST_F(FilmTouch, IsForgottenWhenTheLauncherTellsTheApplicationSomething) {
    for (const char* status : {"pause", "showonly", "hideonly", "resume"}) {
        pressShowAnyway();
        app(status);
        app("resume");
        releaseIt();
        EXPECT_TRUE(isLocked()) << status;
        EXPECT_TRUE(isHidden()) << status;
    }
    showAnyway();
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << "the next touch counts; " << screen()["video"];
}

TEST_F(FilmTouch, OnAPageThatNobodySeesOpensNothing) {
    for (const char* status : {"hideonly", "pause"}) {
        app(status);
        must({"click", "main", "10", "2103", "1"});
        settle();
        EXPECT_TRUE(isLocked()) << status;
        EXPECT_FALSE(seesRed()) << status;
        app("resume");
        EXPECT_TRUE(isHidden()) << status << ", the warning is back";
    }
}

TEST_F(FilmTouch, UnderWhichTheNumberPadComesLeavesAHealthyUnit) {
    pressShowAnyway();
    must({"key", "44"});
    settle();
    releaseIt();
    EXPECT_TRUE(isLocked());
    EXPECT_EQ(window(), 20);
    EXPECT_FALSE(seesRed());
    must({"tap", "1"}); // the number of what plays, and OK
    must({"tap", "531"});
    settle();
    EXPECT_TRUE(isHidden()) << "the pad is gone, the warning stands as before";
    showAnyway();
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
    drive(false);
    must({"touch", "400", "160"});
    settle();
    EXPECT_EQ(screen()["osd"]["visible"], true) << "touches arrive";
}

TEST_F(FilmTouch, TheFilmIsThereAgainAfterTheLauncherHidAndShowedTheApplication) {
    app("hideonly");
    app("showonly");
    drive(false);
    EXPECT_FALSE(filmRuns()) << "shown only, it captures nothing";
    app("resume");
    EXPECT_TRUE(eventually([this] { return filmRuns(); })) << screen()["video"];
}

} // namespace zm::test
