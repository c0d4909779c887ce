// Every way into the video page, with the car parked, driving, and changing between the two on the page.
#include "tests/views/FilmView.h"

namespace zm::test {

namespace {

// Places in FOLDER_KINDS.
constexpr size_t VIDEOS = 1;
constexpr size_t PHOTOS = 2;
constexpr int PLAYING_FOLDER = 5;
constexpr int THIS_FILE = 3;
constexpr int OTHER_FILE = 7;
constexpr int FIRST_ROW = 20; ///< pixels below the list's upper edge

/** The unit with what the ways are made of. Touches go through the hit test
 * wherever there is one to touch. */
class DrivingUnit : public FilmView {
public:
    using FilmView::FilmView;

    void insert(int type) {
        unit.disc.videoMode(VIDEO_MODE_ON);
        unit.disc.insert(type, type == PLAY_TYPE_VIDEO || type == PLAY_TYPE_PHOTO ? 14 : 0);
    }
    /** Music plays; the files of that kind are browsed. */
    void browseFiles(const FolderKind& kind) {
        playIn(FOLDER_KINDS[0], PLAYING_FOLDER);
        touchControl(WND_AUDIO_PLAY, ITEM_TO_LIST);
        tick();
        touchControl(WND_MEDIA_LIST, kind.tab);
        tick();
        ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
        ASSERT_FALSE(list().rows.empty());
    }
    /** A file of that kind plays; its list was returned to. */
    void returnToFiles(const FolderKind& kind) {
        playIn(kind, PLAYING_FOLDER);
        if (kind.type == PLAY_TYPE_PHOTO) {
            unit.key(K_Return);
        } else {
            unit.disc.videoMode(VIDEO_MODE_TO_LIST);
        }
        tick();
        ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
    }
    /** From a list of files to those of the folder that plays. */
    void openFolder() {
        press(ITEM_FOLDER_MENU);
        tick();
        clickRow(PLAYING_FOLDER - 1);
        tick();
        ASSERT_EQ(unit.main.window(), WND_FOLDER_LIST);
    }
    void openPad() {
        unit.key(K_GOTO);
        ASSERT_EQ(unit.main.window(), WND_GOTO);
    }
    void touchRow(int page) {
        const Rect rect = unit.main.item(page, ITEM_LIST).rect;
        unit.touch(rect.x + rect.w / 2, rect.y + FIRST_ROW);
    }
    void touchControl(int page, int control) { unit.touchItem(unit.main, page, control); }
    void typeOnPad(int number) {
        touchControl(WND_GOTO, GOTO_KEY_1 + number - 1);
        touchControl(WND_GOTO, GOTO_KEY_OK);
    }
    void wait(std::chrono::milliseconds time) { unit.advance(time); }

    using FilmView::playIn;
    using FilmView::unit;
};

using Step = void (*)(DrivingUnit&);

/** One way into the video page. */
struct Way {
    const char* name;
    Step prepare; ///< up to the last thing before
    Step enter;
    int drivingPage = WND_PARKING; ///< where it leads while driving
    bool shownBefore = true;       ///< false: the launcher has not resumed the application yet
};

void noPreparation(DrivingUnit&) {}

template <size_t Kind>
void browseFiles(DrivingUnit& at) {
    at.browseFiles(FOLDER_KINDS[Kind]);
}

template <size_t Kind>
void browseFolder(DrivingUnit& at) {
    at.browseFiles(FOLDER_KINDS[Kind]);
    at.openFolder();
}

template <size_t Kind>
void returnToFiles(DrivingUnit& at) {
    at.returnToFiles(FOLDER_KINDS[Kind]);
}

template <size_t Kind>
void returnToFolder(DrivingUnit& at) {
    at.returnToFiles(FOLDER_KINDS[Kind]);
    at.openFolder();
}

template <size_t Kind>
void openPad(DrivingUnit& at) {
    at.returnToFiles(FOLDER_KINDS[Kind]);
    at.openPad();
}

template <int Type>
void insert(DrivingUnit& at) {
    at.insert(Type);
}

template <int Page>
void touchRow(DrivingUnit& at) {
    at.touchRow(Page);
}

template <int Type>
void pause(DrivingUnit& at) {
    at.insert(Type);
    at.unit.app("pause");
}

void resume(DrivingUnit& at) {
    at.unit.app("resume");
}

void askForNumber(DrivingUnit& at) {
    at.unit.appData("--kb_val=" + std::to_string(OTHER_FILE) + " --kb_ret=1");
}

void typeOnPad(DrivingUnit& at) {
    at.typeOnPad(OTHER_FILE);
}

void typeWhatPlays(DrivingUnit& at) {
    at.typeOnPad(THIS_FILE);
}

void pressEnter(DrivingUnit& at) {
    at.unit.key(K_Down);
    at.unit.key(K_Enter);
}

template <int Page>
void touchToPlaying(DrivingUnit& at) {
    at.touchControl(Page, ITEM_TYPE_ICON);
}

void waitForTheWayBack(DrivingUnit& at) {
    at.wait(8s);
}

void closePadAndWait(DrivingUnit& at) {
    at.touchControl(WND_GOTO, GOTO_KEY_CLOSE);
    at.wait(9s);
}

void returnFromPadAndWait(DrivingUnit& at) {
    at.unit.key(K_Return);
    at.wait(9s);
}

const Way WAYS[] = {
    {"InsertedDvd", noPreparation, insert<PLAY_TYPE_DVD>},
    {"InsertedVcd", noPreparation, insert<PLAY_TYPE_VCD>},
    {"InsertedFilms", noPreparation, insert<PLAY_TYPE_VIDEO>},
    {"InsertedPhotos", noPreparation, insert<PLAY_TYPE_PHOTO>},
    {"InsertedWhilePausedThere", [](DrivingUnit& at) { at.unit.disc.presence(1); },
     [](DrivingUnit& at) {
         at.unit.disc.mediaType(PLAY_TYPE_DVD);
         at.unit.disc.videoMode(VIDEO_MODE_ON);
         at.unit.disc.state(DISC_STATE_PAUSED);
     }},
    {"TapOnAFilm", browseFiles<VIDEOS>, touchRow<WND_MEDIA_LIST>},
    {"TapOnAPhoto", browseFiles<PHOTOS>, touchRow<WND_MEDIA_LIST>},
    {"TapOnAFilmInAFolder", browseFolder<VIDEOS>, touchRow<WND_FOLDER_LIST>},
    {"TapOnAPhotoInAFolder", browseFolder<PHOTOS>, touchRow<WND_FOLDER_LIST>},
    {"TapOnWhatPlaysOverFilms", returnToFiles<VIDEOS>, touchToPlaying<WND_MEDIA_LIST>},
    {"TapOnWhatPlaysOverPhotos", returnToFiles<PHOTOS>, touchToPlaying<WND_MEDIA_LIST>},
    {"TapOnWhatPlaysInAFolder", returnToFolder<VIDEOS>, touchToPlaying<WND_FOLDER_LIST>},
    {"EnterKeyOverFilms", browseFiles<VIDEOS>, pressEnter},
    {"EnterKeyOverPhotos", browseFiles<PHOTOS>, pressEnter},
    {"NumberSpokenForAFilm", returnToFiles<VIDEOS>, askForNumber},
    {"NumberSpokenForAPhoto", returnToFiles<PHOTOS>, askForNumber},
    {"NumberPadForAFilm", openPad<VIDEOS>, typeOnPad},
    {"NumberPadForAPhoto", openPad<PHOTOS>, typeOnPad},
    {"ClosedNumberPad", openPad<VIDEOS>, closePadAndWait, WND_MEDIA_LIST},
    {"NumberPadLeftByTheReturnKey", openPad<PHOTOS>, returnFromPadAndWait, WND_MEDIA_LIST},
    {"WayBackFromFilms", returnToFiles<VIDEOS>, waitForTheWayBack, WND_MEDIA_LIST},
    {"WayBackFromPhotos", returnToFiles<PHOTOS>, waitForTheWayBack, WND_MEDIA_LIST},
    {"WayBackFromAFolder", returnToFolder<VIDEOS>, waitForTheWayBack, WND_FOLDER_LIST},
    {"VideoModeOverFilms", returnToFiles<VIDEOS>,
     [](DrivingUnit& at) { at.unit.disc.videoMode(VIDEO_MODE_ON); }},
    {"VideoModeOffAndOn",
     [](DrivingUnit& at) {
         at.insert(PLAY_TYPE_DVD);
         at.unit.disc.videoMode(VIDEO_MODE_OFF);
     },
     [](DrivingUnit& at) { at.unit.disc.videoMode(VIDEO_MODE_ON); }},
    {"NumberOfWhatPlaysOnThePadOverAFilm",
     [](DrivingUnit& at) {
         at.playIn(FOLDER_KINDS[VIDEOS], PLAYING_FOLDER, THIS_FILE);
         at.openPad();
     },
     typeWhatPlays},
    {"NumberOfWhatPlaysOnThePadOverAPhoto",
     [](DrivingUnit& at) {
         at.playIn(FOLDER_KINDS[PHOTOS], PLAYING_FOLDER, THIS_FILE);
         at.openPad();
     },
     typeWhatPlays},
    {"ReturnKeyOnThePadOverAFilm",
     [](DrivingUnit& at) {
         at.playIn(FOLDER_KINDS[VIDEOS], PLAYING_FOLDER);
         at.openPad();
     },
     returnFromPadAndWait, WND_MEDIA_LIST},
    {"NumberSpokenOverThePad",
     [](DrivingUnit& at) {
         at.playIn(FOLDER_KINDS[VIDEOS], PLAYING_FOLDER);
         at.openPad();
     },
     askForNumber},
    {"SongSpokenThatIsNotThere",
     [](DrivingUnit& at) {
         at.playIn(FOLDER_KINDS[VIDEOS], PLAYING_FOLDER);
         at.unit.appData("--song=none");
         at.wait(50ms);
     },
     [](DrivingUnit& at) {
         at.touchControl(WND_MEDIA_LIST, ITEM_TAB_VIDEO);
         at.wait(9s);
     },
     WND_MEDIA_LIST},
    {"SourcesOpenedOverIt",
     [](DrivingUnit& at) {
         at.insert(PLAY_TYPE_DVD);
         if (at.unit.main.window() == WND_PARKING) {
             at.touchControl(WND_PARKING, OSD_CTRL_SRC_OPEN);
         } else {
             at.unit.touch(400, 240);
             at.unit.touchItem(at.unit.osd, 1, OSD_CTRL_SRC_OPEN);
         }
     },
     [](DrivingUnit& at) { at.wait(10s); }},
    {"OtherLanguage", insert<PLAY_TYPE_DVD>, [](DrivingUnit& at) { at.unit.language("ar"); }},
    {"OtherColours", insert<PLAY_TYPE_DVD>,
     [](DrivingUnit& at) {
         at.unit.act({"theme", "day"});
     }},
    {"ResumeOfADvd", pause<PLAY_TYPE_DVD>, resume},
    {"ResumeOfAVcd", pause<PLAY_TYPE_VCD>, resume},
    {"ResumeOfFilms", pause<PLAY_TYPE_VIDEO>, resume},
    {"ResumeOfPhotos", pause<PLAY_TYPE_PHOTO>, resume},
    {"ResumeAfterHiding",
     [](DrivingUnit& at) {
         at.insert(PLAY_TYPE_DVD);
         at.unit.app("hideonly");
     },
     resume},
    {"ResumeOfAnApplicationThatWasNeverShown", insert<PLAY_TYPE_DVD>, resume, WND_PARKING, false},
    {"NextTrack", insert<PLAY_TYPE_DVD>,
     [](DrivingUnit& at) {
         at.unit.key(K_NEXT);
         at.unit.disc.state(DISC_STATE_PAUSED);
         at.unit.disc.track({.chapter = 2, .chapters = 9, .title = 1, .titles = 3});
         at.unit.disc.state(DISC_STATE_PLAYING);
     }},
    {"StoppedAndPlayedAgain", insert<PLAY_TYPE_DVD>,
     [](DrivingUnit& at) {
         at.unit.disc.state(DISC_STATE_STOPPED);
         at.unit.disc.state(DISC_STATE_PLAYING);
         at.unit.touch(5, 240); // away with the controls that stopping brings up
         at.wait(10s);
     }},
    {"LeftTheDiscMenu", insert<PLAY_TYPE_DVD>,
     [](DrivingUnit& at) {
         at.unit.disc.rootMenu(true);
         at.unit.disc.rootMenu(false);
     }},
    {"ErrorThatPassed",
     [](DrivingUnit& at) {
         at.insert(PLAY_TYPE_DVD);
         at.unit.disc.state(DISC_STATE_ERROR);
         at.unit.disc.state(DISC_STATE_LOADING);
     },
     [](DrivingUnit& at) { at.unit.disc.state(DISC_STATE_PLAYING); }},
    {"NextDisc",
     [](DrivingUnit& at) {
         at.insert(PLAY_TYPE_DVD);
         at.unit.disc.eject();
     },
     insert<PLAY_TYPE_VCD>},
};

class DrivingWalk : public DrivingUnit, public testing::WithParamInterface<Way> {
protected:
    DrivingWalk() : DrivingUnit({.firstResume = GetParam().shownBefore}) {}

    /** Logs begin here: what was visible before does not count. */
    void begin() { m_begin = unit.log().size(); }

    void expectVideo() {
        EXPECT_EQ(unit.main.window(), WND_VIDEO);
        EXPECT_TRUE(unit.video().at("visible"));
        EXPECT_FALSE(unit.osd.visible());
        EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
    }
    void expectNoVideo(int page) {
        EXPECT_EQ(filmPixels(), 0);
        EXPECT_EQ(unit.main.window(), page);
        if (page == WND_PARKING) { // every other page lies over the video, which may stay where it is
            EXPECT_FALSE(unit.video().value("visible", false));
        }
        EXPECT_FALSE(unit.osd.visible());
        EXPECT_THAT(logged(m_begin, {"m_bVideoIsVisible=1", "m_bVideoOsd=1"}), IsEmpty())
            << "not even for a moment";
    }

private:
    size_t m_begin = 0;
};

} // namespace

TEST_P(DrivingWalk, Parked) {
    GetParam().prepare(*this);
    GetParam().enter(*this);
    expectVideo();
}

TEST_P(DrivingWalk, Driving) {
    drive();
    begin();
    GetParam().prepare(*this);
    GetParam().enter(*this);
    expectNoVideo(GetParam().drivingPage);
    park();
    if (GetParam().drivingPage != WND_PARKING) {
        EXPECT_EQ(unit.main.window(), GetParam().drivingPage) << "a list stays until its time is up";
        wait(9s);
    }
    expectVideo();
}

TEST_P(DrivingWalk, StartsToDriveOnTheWay) {
    GetParam().prepare(*this);
    drive();
    begin();
    GetParam().enter(*this);
    expectNoVideo(GetParam().drivingPage);
}

TEST_P(DrivingWalk, StartsToDriveOnThePageAndStops) {
    GetParam().prepare(*this);
    GetParam().enter(*this);
    drive();
    begin();
    expectNoVideo(WND_PARKING);
    // What plays on changes nothing.
    unit.disc.playTime(10, 100);
    unit.disc.state(DISC_STATE_PAUSED);
    unit.disc.state(DISC_STATE_STOPPED);
    unit.disc.state(DISC_STATE_PLAYING);
    unit.touch(400, 300);
    wait(20s);
    expectNoVideo(WND_PARKING);
    park();
    expectVideo();
}

INSTANTIATE_TEST_SUITE_P(, DrivingWalk, testing::ValuesIn(WAYS),
                         [](const auto& way) { return std::string(way.param.name); });

using Driving = DrivingUnit;

TEST_F(Driving, OnlyTheDriversOwnTouchDismissesTheParkingPage) {
    insert(PLAY_TYPE_DVD);
    unit.device(DEV_STATUS_PARKING, 0);
    touchControl(WND_PARKING, PARK_CTRL_CONTINUE);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_TRUE(unit.video().at("visible"));
    EXPECT_EQ(filmPixels(), WHOLE_SCREEN);
    unit.app("pause");
    unit.app("resume");
    EXPECT_EQ(unit.main.window(), WND_PARKING) << "for this once";
    EXPECT_FALSE(unit.video().at("visible"));
    EXPECT_EQ(filmPixels(), 0);
}

TEST_F(Driving, AVideoWindowThatIsPostedWhileDrivingIsNotShown) {
    unit.device(DEV_STATUS_PARKING, 0);
    insert(PLAY_TYPE_DVD);
    ASSERT_TRUE(unit.video().at("posted"));
    EXPECT_FALSE(unit.video().at("visible"));
    unit.app("pause");
    ASSERT_FALSE(unit.video().at("posted"));
    unit.app("resume");
    EXPECT_TRUE(unit.video().at("posted"));
    EXPECT_FALSE(unit.video().at("visible"));
}

TEST_F(Driving, AStatusThatCannotBeReadCountsAsDriving) {
    insert(PLAY_TYPE_DVD);
    unit.act({"device", "2", "fail"});
    EXPECT_EQ(unit.main.window(), WND_PARKING);
    EXPECT_FALSE(unit.video().at("visible"));
    EXPECT_EQ(filmPixels(), 0);
}

} // namespace zm::test
