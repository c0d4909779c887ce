// What the driver sees of a film: under the pages, and while the car drives not at all.
#include "tests/views/FilmView.h"

namespace zm::test {

namespace {

constexpr int FILM_FILE = 3;

class Film : public FilmView {
public:
    void insert(int type) {
        unit.disc.videoMode(VIDEO_MODE_ON);
        unit.disc.insert(type, type == PLAY_TYPE_VIDEO || type == PLAY_TYPE_PHOTO ? 14 : 0);
        unit.disc.track({.curMediaId = FILM_FILE,
                         .curMediaIds = 8,
                         .mediaId = FILM_FILE,
                         .mediaIds = 8,
                         .parentFolder = 5});
    }
    void typeOnPad(int number) {
        unit.touchItem(unit.main, WND_GOTO, GOTO_KEY_1 + number - 1);
        unit.touchItem(unit.main, WND_GOTO, GOTO_KEY_OK);
    }
    /** As an application that has forgotten that the car drives. */
    void misbehave() {
        unit.onViewThread([this] {
            unit.view().SetVisible("zmdisc_video_win", true);
            unit.view().ShowWnd(WND_VIDEO, true, 0);
            unit.view().FlushContext();
        });
    }
    /** On the overlay of the film, or on the page that is shown in its place. */
    void openSources() {
        if (unit.main.window() == WND_VIDEO) {
            unit.touch(400, 240);
            unit.touchItem(unit.osd, unit.osd.window(), OSD_CTRL_SRC_OPEN);
        } else {
            unit.touchItem(unit.main, unit.main.window(), OSD_CTRL_SRC_OPEN);
        }
    }
    /** The page that takes the touches is what is seen. */
    void expectPage(int page) {
        EXPECT_EQ(unit.main.window(), page);
        EXPECT_EQ(filmPixels(), 0);
    }

    using FilmView::unit;
};

/** Something that happens while a film plays. */
struct Event {
    const char* name;
    void (*happen)(Film& at);
};

const Event EVENTS[] = {
    {"key of the pad", [](Film& at) { at.unit.key(K_GOTO); }},
    {"return key on the pad",
     [](Film& at) {
         at.unit.key(K_GOTO);
         at.unit.key(K_Return);
         at.unit.advance(50ms);
     }},
    {"pad closed",
     [](Film& at) {
         at.unit.key(K_GOTO);
         at.unit.touchItem(at.unit.main, WND_GOTO, GOTO_KEY_CLOSE);
         at.unit.advance(50ms);
     }},
    {"number of what plays on the pad",
     [](Film& at) {
         at.unit.key(K_GOTO);
         at.typeOnPad(FILM_FILE);
     }},
    {"another number on the pad",
     [](Film& at) {
         at.unit.key(K_GOTO);
         at.typeOnPad(FILM_FILE + 1);
     }},
    {"number spoken", [](Film& at) { at.unit.appData("--kb_val=4 --kb_ret=1"); }},
    {"song spoken", [](Film& at) { at.unit.appData("--song='file'"); }},
    {"song spoken, and it plays",
     [](Film& at) {
         at.unit.appData("--song='file'");
         at.unit.advance(50ms);
         at.unit.disc.mediaType(PLAY_TYPE_MUSIC);
         at.unit.disc.state(DISC_STATE_PLAYING);
     }},
    {"pause and resume",
     [](Film& at) {
         at.unit.app("pause");
         at.unit.app("resume");
     }},
    {"show-only and resume",
     [](Film& at) {
         at.unit.app("showonly");
         at.unit.app("resume");
     }},
    {"hide-only and resume",
     [](Film& at) {
         at.unit.app("hideonly");
         at.unit.app("resume");
     }},
    {"source popup", [](Film& at) { at.openSources(); }},
    {"touch", [](Film& at) { at.unit.touch(400, 240); }},
    {"language", [](Film& at) { at.unit.language("ar"); }},
    {"colours",
     [](Film& at) {
         at.unit.act({"theme", "day"});
     }},
    {"video mode off and on",
     [](Film& at) {
         at.unit.disc.videoMode(VIDEO_MODE_OFF);
         at.unit.disc.videoMode(VIDEO_MODE_ON);
     }},
    {"stopped and played again",
     [](Film& at) {
         at.unit.disc.state(DISC_STATE_STOPPED);
         at.unit.disc.state(DISC_STATE_PLAYING);
     }},
    {"next disc",
     [](Film& at) {
         at.unit.disc.eject();
         at.insert(PLAY_TYPE_VCD);
     }},
    {"clock", [](Film& at) { at.unit.time("9:30", 12); }},
    {"the same status again", [](Film& at) { at.unit.device(DEV_STATUS_PARKING, 0); }},
    {"the status cannot be read",
     [](Film& at) {
         at.unit.act({"device", "2", "fail"});
     }},
};

class FilmWhileDriving : public Film, public testing::WithParamInterface<int> {
protected:
    /** A disc of that type plays and its film is all that is seen. */
    void begin() {
        park();
        unit.disc.eject();
        insert(GetParam());
        ASSERT_EQ(unit.main.window(), WND_VIDEO);
        ASSERT_EQ(filmPixels(), WHOLE_SCREEN);
    }
};

} // namespace

TEST_P(FilmWhileDriving, NothingBringsItBack) {
    for (const Event& event : EVENTS) {
        SCOPED_TRACE(event.name);
        begin();
        drive();
        EXPECT_EQ(filmPixels(), 0) << "at once";
        event.happen(*this);
        EXPECT_EQ(filmPixels(), 0);
        unit.advance(12s);
        EXPECT_EQ(filmPixels(), 0) << "later";
    }
}

TEST_P(FilmWhileDriving, NothingLeavesItThereWhenTheCarStarts) {
    for (const Event& event : EVENTS) {
        SCOPED_TRACE(event.name);
        begin();
        event.happen(*this);
        drive();
        EXPECT_EQ(filmPixels(), 0);
        unit.advance(12s);
        EXPECT_EQ(filmPixels(), 0) << "later";
    }
}

INSTANTIATE_TEST_SUITE_P(, FilmWhileDriving,
                         testing::Values(PLAY_TYPE_DVD, PLAY_TYPE_VCD, PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO));

TEST_F(Film, OtherPagesLieOverIt) {
    insert(PLAY_TYPE_VIDEO);
    ASSERT_EQ(filmPixels(), WHOLE_SCREEN);
    unit.key(K_GOTO);
    expectPage(WND_GOTO);
    unit.key(K_Return);
    unit.advance(50ms);
    expectPage(WND_MEDIA_LIST);
}

TEST_F(Film, TheListOfASpokenSongLiesOverIt) {
    insert(PLAY_TYPE_VIDEO);
    unit.appData("--song='file'");
    unit.advance(50ms);
    expectPage(WND_MEDIA_LIST);
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    unit.disc.state(DISC_STATE_PLAYING);
    expectPage(WND_AUDIO_PLAY);
}

TEST_F(Film, ThatTheApplicationShowsOnItsOwnIsNotSeenWhileDriving) {
    insert(PLAY_TYPE_DVD);
    unit.deviceSilently(DEV_STATUS_PARKING, 0);
    EXPECT_EQ(unit.main.window(), WND_VIDEO) << "it was not told";
    EXPECT_EQ(unit.video().at("visible"), true) << "as it was asked for";
    EXPECT_EQ(unit.video().at("locked"), true);
    EXPECT_EQ(filmPixels(), 0);
    misbehave();
    EXPECT_EQ(filmPixels(), 0);
    // Nobody touched the button where it is not seen.
    unit.click(WND_PARKING, PARK_CTRL_CONTINUE);
    EXPECT_EQ(unit.video().at("visible"), true);
    EXPECT_EQ(filmPixels(), 0);
    misbehave();
    EXPECT_EQ(filmPixels(), 0);
    unit.deviceSilently(DEV_STATUS_PARKING, 1);
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
    unit.deviceFails(DEV_STATUS_PARKING);
    EXPECT_EQ(filmPixels(), 0);
}

TEST_F(Film, IsSeenForThisDriveByTheDriversTouch) {
    insert(PLAY_TYPE_VIDEO);
    drive();
    showAnyway();
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_EQ(unit.video().at("locked"), false);
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
    drive();
    unit.disc.videoMode(VIDEO_MODE_OFF);
    misbehave();
    unit.app("pause");
    unit.app("resume");
    EXPECT_EQ(unit.main.window(), WND_PARKING);
    EXPECT_EQ(filmPixels(), 0) << "the application asks again";
    showAnyway();
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
    park();
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
    drive();
    EXPECT_EQ(filmPixels(), 0) << "the next drive";
    misbehave();
    EXPECT_EQ(filmPixels(), 0);
}

TEST_F(Film, IsSeenByAClickOnTheParkingPageThatIsShown) {
    insert(PLAY_TYPE_PHOTO);
    drive();
    unit.click(WND_PARKING, PARK_CTRL_CONTINUE);
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
}

TEST_F(Film, IsCoveredByThePadUntilTheNumberOfWhatPlaysIsTyped) {
    insert(PLAY_TYPE_VIDEO);
    unit.key(K_GOTO);
    EXPECT_EQ(filmPixels(), 0);
    typeOnPad(FILM_FILE);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_EQ(state(), VIEW_STATE_VIDEO_PLAY);
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
}

TEST_F(Film, IsNotBackWhenThePadIsClosedAfterTheCarHasStarted) {
    insert(PLAY_TYPE_VIDEO);
    unit.key(K_GOTO);
    drive();
    typeOnPad(FILM_FILE);
    EXPECT_EQ(unit.main.window(), WND_PARKING);
    EXPECT_EQ(unit.video().at("visible"), false);
    park();
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
}

TEST_F(Film, IsBackWhenThePadIsClosedAfterTheCarHasStopped) {
    insert(PLAY_TYPE_PHOTO);
    drive();
    unit.key(K_GOTO);
    park();
    EXPECT_EQ(unit.main.window(), WND_GOTO);
    typeOnPad(FILM_FILE);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
}

TEST_F(Film, TheOverlayLiesOverIt) {
    insert(PLAY_TYPE_VIDEO);
    unit.touch(400, 240);
    const int seen = filmPixels();
    EXPECT_LT(seen, WHOLE_SCREEN);
    EXPECT_GT(seen, 0);
}

} // namespace zm::test
