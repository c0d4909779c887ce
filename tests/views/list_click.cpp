#include "tests/views/list_view.h"

namespace zm::test {

class ListClick : public ListView {
protected:
    /** All kinds of files are on the disc, file 3 of folder 2 plays. */
    ListClick() {
        catalogue.sql("DELETE FROM files");
        for (const auto type : {Catalogue::Music, Catalogue::Video, Catalogue::Picture}) {
            catalogue.file(3, 2, type, "playing");
            catalogue.file(4, 2, type, "other");
        }
    }
    void playFile3(int type) {
        play(type);
        unit.disc.mixedType(14);
        unit.disc.track({.curMediaId = 3, .curMediaIds = 4, .mediaId = 3, .mediaIds = 4, .parentFolder = 2});
        forget();
    }
    /** File 3 of that type plays, its list is on screen. */
    void listOf(int type) {
        playFile3(type);
        press(type == PLAY_TYPE_PHOTO   ? ITEM_TAB_PHOTO
              : type == PLAY_TYPE_VIDEO ? ITEM_TAB_VIDEO
                                        : ITEM_TAB_MUSIC);
        tick();
        forget();
    }
};

TEST_F(ListClick, ATouchedRowOfMusicIsPlayedPacked) {
    listOf(PLAY_TYPE_MUSIC);
    clickRow(1);
    EXPECT_THAT(unit.commands(), ElementsAre("182,131076,1"));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    EXPECT_EQ(inside.state(), VIEW_STATE_AUDIO_PLAY);
    EXPECT_EQ(inside.playListFrom(), PLAY_LIST_MUSIC);
    EXPECT_EQ(beeps(), 1);
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClick] nPlayType=1,nUiFrom=6,nLine=1").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] nUiFrom=6,nLine=1").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] nFid=4,nFolder=2").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] wParam=0x20004").empty());
    EXPECT_FALSE(unit.log("[OnGotoAudioPlayPage]--------------").empty());
}

TEST_F(ListClick, TheRowOfMusicThatPlaysOnlyOpensThePlayPage) {
    listOf(PLAY_TYPE_MUSIC);
    clickRow(0);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(ListClick, TheSameNumberInAnotherFolderIsPlayed) {
    listOf(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 3, .parentFolder = 9});
    clickRow(0);
    EXPECT_THAT(unit.commands(), ElementsAre("182,131075,1"));
}

TEST_F(ListClick, ATouchedRowOfVideoIsAlwaysPlayedPacked) {
    listOf(PLAY_TYPE_VIDEO);
    clickRow(0);
    EXPECT_THAT(unit.commands(), ElementsAre("182,131075,3"));
    EXPECT_EQ(inside.playListFrom(), PLAY_LIST_VIDEO);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickVideo] nUiFrom=8,nLine=0").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickVideo] nFid=3,nFolder=2").empty());
    EXPECT_FALSE(
        unit.log("_PLATEN_[OnHandleUIListClickVideo]-[DiscView::OnHandleUIListClickAudio] wParam=0x20003")
            .empty());
}

TEST_F(ListClick, VideoStaysOnTheListUntilItsModeIsOn) {
    listOf(PLAY_TYPE_VIDEO);
    unit.disc.videoMode(VIDEO_MODE_OFF);
    clickRow(1);
    EXPECT_THAT(unit.commands(), ElementsAre("182,131076,3"));
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(ListClick, ATouchedPhotoIsAlwaysShownUnpacked) {
    listOf(PLAY_TYPE_PHOTO);
    clickRow(0);
    EXPECT_THAT(unit.commands(), ElementsAre("182,3,2"));
    EXPECT_EQ(inside.playListFrom(), PLAY_LIST_PHOTO);
    EXPECT_EQ(inside.state(), VIEW_STATE_PHOTO_PLAY);
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickPicture] nUiFrom=7,nLine=0").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickPicture] nFid=3,nFolder=2").empty());
}

TEST_F(ListClick, ATouchedTrackOfACdIsPlayedUnlessItPlays) {
    playFile3(PLAY_TYPE_CD);
    openList();
    forget();
    clickRow(1, WND_CD_LIST);
    EXPECT_THAT(unit.commands(), ElementsAre("182,4,1"));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    forget();
    clickRow(0, WND_CD_LIST);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(ListClick, TheTrackListRemembersItsTopRow) {
    catalogue.files(20, Catalogue::Music, "song");
    playFile3(PLAY_TYPE_CD);
    openList();
    clickRow(7, WND_CD_LIST, 6);
    EXPECT_EQ(inside.listTopIndex(), 6);
    openList();
    onList(WND_CD_LIST, [](CUI_BtList& list) { list.SetTopIndex(4, 1, 0, 0, 0); });
    press(ITEM_TYPE_ICON, WND_CD_LIST);
    EXPECT_EQ(inside.listTopIndex(), 4);
}

TEST_F(ListClick, ATouchedRowOfTheSearchResultPlaysAndReturnsThere) {
    playFile3(PLAY_TYPE_MUSIC);
    unit.appData("--song=other");
    openList();
    ASSERT_EQ(inside.listFrom(), LIST_FROM_SEARCH);
    inside.setPlayListFrom(PLAY_LIST_MUSIC);
    clickRow(0);
    EXPECT_THAT(unit.commands(), ElementsAre("182,131076,1"));
    EXPECT_EQ(inside.playListFrom(), PLAY_LIST_SEARCH);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(ListClick, TheTrackListPlaysOnACdOnly) {
    playFile3(PLAY_TYPE_CD);
    openList();
    unit.disc.mediaType(PLAY_TYPE_MUSIC);
    forget();
    clickRow(1, WND_CD_LIST);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(beeps(), 1);
}

TEST_F(ListClick, OnACdTheFilePageClicksItsTracks) {
    playFile3(PLAY_TYPE_CD);
    openList();
    forget();
    clickRow(-1); // nothing is selected on the file page: no such row
    EXPECT_THAT(unit.commands(), ElementsAre("182,-1,1"));
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClick] nPlayType=1,nUiFrom=9,nLine=-1").empty());
}

TEST_F(ListClick, ARowOutsideTheListIsSentAsMinusOne) {
    listOf(PLAY_TYPE_MUSIC);
    inside.clickRow(ROW_MUSIC, LIST_FROM_ALL_AUDIO, 99);
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] nFid=-1,nFolder=-1").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] wParam=0xfffeffff").empty());
    EXPECT_THAT(unit.commands(), ElementsAre("182,-65537,1"));
}

TEST_F(ListClick, OtherKindsOfRowsDoNothing) {
    listOf(PLAY_TYPE_MUSIC);
    for (const int kind : {0, 4, 255}) {
        inside.clickRow(kind, LIST_FROM_ALL_AUDIO, 0);
    }
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(ListClick, TheTopRowIsRemembered) {
    catalogue.sql("DELETE FROM files");
    catalogue.files(20, Catalogue::Music, "song");
    listOf(PLAY_TYPE_MUSIC);
    clickRow(7, WND_MEDIA_LIST, 6);
    EXPECT_EQ(inside.listTopIndex(), 6);
}

struct ControlCase {
    int control;
    int beeps;
    const char* application;
};

TEST_F(ListClick, PlainControlsOfTheListPages) {
    listOf(PLAY_TYPE_MUSIC);
    const ControlCase rows[] = {{6003, 1, ""},
                                {6004, 1, ""},
                                {6005, 1, ""},
                                {3, 1, "zmhome null"},
                                {103, 1, "zmradio null"},
                                {111, 1, "zmasr --type=ui"},
                                {7777, 0, ""},
                                {99, 1, ""}};
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        for (const ControlCase& row : rows) {
            SCOPED_TRACE(std::to_string(page) + " " + std::to_string(row.control));
            forget();
            press(row.control, page);
            EXPECT_EQ(beeps(), row.beeps);
            EXPECT_THAT(unit.commands(), IsEmpty());
            if (*row.application) {
                EXPECT_THAT(applications(), ElementsAre(row.application));
            } else {
                EXPECT_THAT(applications(), IsEmpty());
            }
        }
    }
    forget();
    press(ITEM_ALL_MUSIC, WND_CD_LIST); // has nothing to choose
    EXPECT_EQ(beeps(), 1);
    EXPECT_EQ(inside.listFrom(), LIST_FROM_ALL_AUDIO);
}

TEST_F(ListClick, TheSourceMenuOpensAndCloses) {
    listOf(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
        press(5002, page);
        EXPECT_FALSE(unit.main.item(page, 501).visible);
        EXPECT_TRUE(unit.main.item(page, 500).visible);
        EXPECT_EQ(unit.main.item(page, ITEM_TAB_MUSIC).state, ITEM_STATE_SELECTED);
        press(500, page);
        EXPECT_TRUE(unit.main.item(page, 501).visible);
        EXPECT_FALSE(unit.main.item(page, 500).visible);
        EXPECT_EQ(beeps(), 2);
        forget();
    }
}

TEST_F(ListClick, ReturnToThePlayingPageOfMusic) {
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
        listOf(PLAY_TYPE_MUSIC);
        press(ITEM_TYPE_ICON, page);
        EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
        EXPECT_EQ(beeps(), 1);
    }
}

TEST_F(ListClick, ReturnToThePlayingPageOfACd) {
    playFile3(PLAY_TYPE_CD);
    openList();
    press(ITEM_TYPE_ICON, WND_CD_LIST);
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(ListClick, ReturnToThePlayingPageOfVideoAndPhotoWhileTheyRun) {
    for (const int type : {PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO}) {
        for (const auto& [state, page] : {std::pair{2, WND_VIDEO}, {6, WND_VIDEO}, {0, WND_MEDIA_LIST}}) {
            listOf(type);
            unit.disc.state(state);
            unit.onViewThread([&] { unit.view().ShowWnd(WND_MEDIA_LIST, true, 0); });
            press(ITEM_TYPE_ICON);
            EXPECT_EQ(unit.main.window(), page) << type << " " << state;
        }
    }
}

TEST_F(ListClick, AnotherTypesListDoesNotReturnToThePlayingPage) {
    playFile3(PLAY_TYPE_MUSIC);
    press(ITEM_TAB_VIDEO);
    tick();
    press(ITEM_TYPE_ICON);
    press(6505);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(ListClick, ReturningRemembersTheTopRow) {
    catalogue.files(20, Catalogue::Music, "song");
    for (const int control : {static_cast<int>(ITEM_TYPE_ICON), 6505}) {
        listOf(PLAY_TYPE_MUSIC);
        onList(WND_MEDIA_LIST, [](CUI_BtList& list) { list.SetTopIndex(3, 1, 0, 0, 0); });
        inside.setListTopIndex(-1);
        press(control);
        EXPECT_EQ(inside.listTopIndex(), 3) << control;
    }
}

TEST_F(ListClick, ReturningFromFoldersRemembersTheFoldersTopRow) {
    for (int id = 1; id <= 20; ++id) {
        catalogue.folder(100 + id, 1, Catalogue::Music, "folder", 0, 1);
    }
    listOf(PLAY_TYPE_MUSIC);
    press(ITEM_FOLDER_MENU);
    tick();
    onList(WND_MEDIA_LIST, [](CUI_BtList& list) { list.SetTopIndex(4, 1, 0, 0, 0); });
    inside.setListTopIndex(-1);
    press(ITEM_TYPE_ICON);
    EXPECT_EQ(inside.folderTopIndex(), 4);
    EXPECT_EQ(inside.listTopIndex(), -1);
}

TEST_F(ListClick, TheNumberPadOpens) {
    listOf(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        for (const int control : {6505, 6545}) {
            unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
            press(control, page);
            EXPECT_EQ(unit.main.window(), WND_GOTO) << page << " " << control;
        }
    }
}

TEST_F(ListClick, WithoutFilesOfTheTypeThePageIgnoresMostControls) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.mixedType(2);
    press(ITEM_TAB_VIDEO);
    forget();
    for (const int control : {2071, 542, 545, 546, 506, 6505, 6545}) {
        press(control);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST) << control;
        EXPECT_EQ(inside.listFrom(), LIST_FROM_ALL_VIDEO) << control;
        EXPECT_EQ(inside.state(), VIEW_STATE_VIDEO_LIST) << control;
    }
    EXPECT_EQ(beeps(), 7);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(ListClick, WithoutFilesOfTheTypeTheFolderPageStillServesItsMenu) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.mixedType(2);
    press(ITEM_TAB_VIDEO);
    press(2071, WND_FOLDER_LIST);
    press(6505, WND_FOLDER_LIST);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    press(542, WND_FOLDER_LIST);
    EXPECT_EQ(inside.listFrom(), LIST_FROM_ALL_AUDIO);
    press(506, WND_FOLDER_LIST);
    EXPECT_EQ(inside.listFrom(), LIST_FROM_VIDEO_FOLDERS);
    press(6545, WND_FOLDER_LIST);
    EXPECT_EQ(unit.main.window(), WND_GOTO);
}

TEST_F(ListClick, AllFilesOfATypeWithinTheTab) {
    const struct {
        int control;
        int source;
        int state;
    } rows[] = {{542, 6, 2}, {545, 8, 3}, {546, 7, 4}};
    listOf(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.control);
            press(row.control, page);
            EXPECT_EQ(inside.listFrom(), row.source);
            EXPECT_EQ(inside.state(), row.state);
            EXPECT_EQ(inside.browsedType(), PLAY_TYPE_MUSIC);
            EXPECT_TRUE(inside.followsPlaying());
            EXPECT_THAT(list().rows, IsEmpty());
            EXPECT_TRUE(unit.main.item(WND_MEDIA_LIST, row.control).visible);
            EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, row.control).state, ITEM_STATE_SELECTED);
            tick();
            EXPECT_EQ(list().rows.size(), 2u);
            EXPECT_THAT(unit.commands(), IsEmpty());
        }
    }
}

} // namespace zm::test
