#include "tests/views/ListView.h"

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
        unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
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
    /** File 9 of twenty plays, their list is on screen. */
    void listTwenty() {
        play(PLAY_TYPE_MUSIC);
        unit.disc.track(
            {.curMediaId = 9, .curMediaIds = 20, .mediaId = 9, .mediaIds = 20, .parentFolder = 1});
        openList();
    }
};

TEST_F(ListClick, ATouchedRowOfMusicIsPlayedPacked) {
    listOf(PLAY_TYPE_MUSIC);
    clickRow(1);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{2}, File{4}, KIND_MUSIC)));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    EXPECT_EQ(state(), VIEW_STATE_AUDIO_PLAY);
    EXPECT_EQ(beeps(), 1);
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClick] nPlayType=1,nUiFrom=6,nLine=1").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] nUiFrom=6,nLine=1").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] nFid=4,nFolder=2").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] wParam=0x20004").empty());
    EXPECT_FALSE(unit.log("[OnGotoAudioPlayPage]--------------").empty());
    EXPECT_EQ(returnTarget(), PLAY_LIST_MUSIC);
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
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{2}, File{3}, KIND_MUSIC)));
}

TEST_F(ListClick, ATouchedRowOfVideoIsAlwaysPlayedPacked) {
    listOf(PLAY_TYPE_VIDEO);
    clickRow(0);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{2}, File{3}, KIND_VIDEO)));
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickVideo] nUiFrom=8,nLine=0").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickVideo] nFid=3,nFolder=2").empty());
    EXPECT_FALSE(
        unit.log("_PLATEN_[OnHandleUIListClickVideo]-[DiscView::OnHandleUIListClickAudio] wParam=0x20003")
            .empty());
    EXPECT_EQ(returnTarget(), PLAY_LIST_VIDEO);
}

TEST_F(ListClick, VideoStaysOnTheListUntilItsModeIsOn) {
    listOf(PLAY_TYPE_VIDEO);
    unit.disc.videoMode(VIDEO_MODE_OFF);
    clickRow(1);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{2}, File{4}, KIND_VIDEO)));
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(ListClick, ATouchedPhotoIsAlwaysShownUnpacked) {
    listOf(PLAY_TYPE_PHOTO);
    clickRow(0);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(3, 2)));
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickPicture] nUiFrom=7,nLine=0").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickPicture] nFid=3,nFolder=2").empty());
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
    EXPECT_EQ(state(), VIEW_STATE_PHOTO_PLAY);
    EXPECT_EQ(returnTarget(), PLAY_LIST_PHOTO);
}

TEST_F(ListClick, ATouchedTrackOfACdIsPlayedUnlessItPlays) {
    playFile3(PLAY_TYPE_CD);
    openList();
    forget();
    clickRow(1, WND_CD_LIST);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(4, 1)));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    forget();
    clickRow(0, WND_CD_LIST);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
}

TEST_F(ListClick, TheTrackListRemembersItsTopRow) {
    catalogue.sql("DELETE FROM files");
    catalogue.files(20, Catalogue::Music, "song");
    play(PLAY_TYPE_CD);
    unit.disc.track({.curMediaId = 8, .curMediaIds = 20, .mediaId = 8, .mediaIds = 20, .parentFolder = 1});
    openList();
    clickRow(7, WND_CD_LIST, 6);
    openList();
    EXPECT_EQ(list(WND_CD_LIST).top, 6);
    onList(WND_CD_LIST, [](CUI_BtList& list) { list.SetTopIndex(7, 1, 0, 0, 0); });
    press(ITEM_TYPE_ICON, WND_CD_LIST);
    openList();
    EXPECT_EQ(list(WND_CD_LIST).top, 7);
}

TEST_F(ListClick, ATouchedRowOfTheSearchResultPlaysAndReturnsThere) {
    playFile3(PLAY_TYPE_MUSIC);
    unit.appData("--song=other");
    openList();
    ASSERT_EQ(reported().source, LIST_FROM_SEARCH);
    unit.disc.mediaType(PLAY_TYPE_MUSIC); // after which a return would lead to all music
    forget();
    clickRow(0);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{2}, File{4}, KIND_MUSIC)));
    EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY);
    EXPECT_EQ(returnTarget(), PLAY_LIST_SEARCH);
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
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(-1, 1)));
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClick] nPlayType=1,nUiFrom=9,nLine=-1").empty());
}

TEST_F(ListClick, ARowOutsideTheListIsSentAsMinusOne) {
    listOf(PLAY_TYPE_MUSIC);
    onList(WND_MEDIA_LIST, [&](CUI_BtList& control) {
        control.InsertItem(2, -1); // one more than the catalogue's rows
        unit.view().GetUIWndMgrWrapper()->drawAllItem();
    });
    clickRow(2);
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] nFid=-1,nFolder=-1").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnHandleUIListClickAudio] wParam=0xfffeffff").empty());
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(-65537, 1)));
}

TEST_F(ListClick, TheTopRowIsRemembered) {
    catalogue.sql("DELETE FROM files");
    catalogue.files(20, Catalogue::Music, "song");
    listTwenty();
    clickRow(7, WND_MEDIA_LIST, 6);
    openList();
    EXPECT_EQ(list().top, 6);
}

struct ListControl {
    int control;
    int beeps;
    const char* application;
};

TEST_F(ListClick, PlainControlsOfTheListPages) {
    listOf(PLAY_TYPE_MUSIC);
    const ListControl rows[] = {{6003, 1, ""},
                                {6004, 1, ""},
                                {6005, 1, ""},
                                {3, 1, "zmhome null"},
                                {103, 1, "zmradio null"},
                                {111, 1, "zmasr --type=ui"},
                                {7777, 0, ""},
                                {99, 1, ""}};
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        for (const ListControl& row : rows) {
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
    EXPECT_EQ(reported().source, LIST_FROM_ALL_AUDIO);
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
    press(ITEM_GOTO);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(ListClick, ReturningRemembersTheTopRow) {
    catalogue.sql("DELETE FROM files");
    catalogue.files(20, Catalogue::Music, "song");
    int top = 5;
    for (const int control : std::initializer_list<int>{ITEM_TYPE_ICON, ITEM_GOTO}) {
        listTwenty();
        onList(WND_MEDIA_LIST, [&](CUI_BtList& list) { list.SetTopIndex(top, 1, 0, 0, 0); });
        press(control);
        openList();
        EXPECT_EQ(list().top, top++) << control;
    }
}

TEST_F(ListClick, ReturningFromFoldersRemembersTheFoldersTopRow) {
    for (int id = 1; id <= 20; ++id) {
        catalogue.folder(100 + id, 1, Catalogue::Music, "folder", 0, 1);
    }
    listOf(PLAY_TYPE_MUSIC);
    press(ITEM_FOLDER_MENU);
    tick();
    for (const auto& [top, playing] : {std::pair{4, 105}, {3, 106}}) {
        onList(WND_MEDIA_LIST, [top = top](CUI_BtList& list) { list.SetTopIndex(top, 1, 0, 0, 0); });
        press(ITEM_TYPE_ICON);
        unit.disc.track({.curMediaId = 3, .curMediaIds = 4, .parentFolder = playing});
        openList();
        EXPECT_EQ(list().top, 0) << "the list of files has its own";
        press(ITEM_FOLDER_MENU);
        tick();
        EXPECT_EQ(list().top, top);
    }
}

TEST_F(ListClick, TheNumberPadOpens) {
    listOf(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        for (const int control : {ITEM_GOTO, ITEM_GOTO_PAD}) {
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
    for (const int control :
         std::initializer_list<int>{ITEM_TYPE_ICON, ITEM_ALL_MUSIC, ITEM_ALL_VIDEO, ITEM_ALL_PHOTO,
                                    ITEM_FOLDER_MENU, ITEM_GOTO, ITEM_GOTO_PAD}) {
        press(control);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST) << control;
        const Reported view = reported();
        EXPECT_EQ(view.source, LIST_FROM_ALL_VIDEO) << control;
        EXPECT_EQ(view.state, VIEW_STATE_VIDEO_LIST) << control;
    }
    EXPECT_EQ(beeps(), 7);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(ListClick, WithoutFilesOfTheTypeTheFolderPageStillServesItsMenu) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.mixedType(2);
    press(ITEM_TAB_VIDEO);
    press(ITEM_TYPE_ICON, WND_FOLDER_LIST);
    press(ITEM_GOTO, WND_FOLDER_LIST);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    press(ITEM_ALL_MUSIC, WND_FOLDER_LIST);
    EXPECT_EQ(reported().source, LIST_FROM_ALL_AUDIO);
    press(ITEM_FOLDER_MENU, WND_FOLDER_LIST);
    EXPECT_EQ(reported().source, LIST_FROM_VIDEO_FOLDERS);
    press(ITEM_GOTO_PAD, WND_FOLDER_LIST);
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
            EXPECT_THAT(list().rows, IsEmpty());
            EXPECT_TRUE(unit.main.item(WND_MEDIA_LIST, row.control).visible);
            EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, row.control).state, ITEM_STATE_SELECTED);
            tick();
            EXPECT_EQ(list().rows.size(), 2u);
            EXPECT_EQ(list().current, 0) << "the row of what plays is selected";
            EXPECT_THAT(unit.commands(), IsEmpty());
            const Reported view = reported();
            EXPECT_EQ(view.source, row.source);
            EXPECT_EQ(view.state, row.state);
            EXPECT_EQ(view.browsed, PLAY_TYPE_MUSIC);
        }
    }
}

} // namespace zm::test
