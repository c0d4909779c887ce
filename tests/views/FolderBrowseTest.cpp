#include "tests/views/FolderView.h"

namespace zm::test {

using FolderBrowse = FolderView;

TEST_F(FolderBrowse, TheFolderViewListsEveryFolderFlat) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        listFolders(kind);
        EXPECT_FALSE(unit.log("_PLATEN_[OnQueryAllFolders]-[OnQueryFolderList]--m_szListSql:select "
                              "folderid,parentid,foldername from folders where "
                              "ftype = " +
                              std::to_string(kind.fileType) + ";")
                         .empty());
        EXPECT_EQ(reported().source, kind.folders);
        EXPECT_EQ(state(), kind.state);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        EXPECT_EQ(list().rows.size(), 9u);
        EXPECT_EQ(list().rows.at(1).text, "2  folder 2");
        EXPECT_EQ(list().rows.at(1).icon(ROW_SLOT_KIND), 138);
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_FOLDER_MENU).state, ITEM_STATE_SELECTED);
    }
}

TEST_F(FolderBrowse, TheFolderViewTakesThePlayingFolderAsTheOneOpened) {
    listFolders(FOLDER_KINDS[0], 7);
    EXPECT_EQ(reported().folder, 7);
    press(ITEM_FOLDER_MENU, WND_FOLDER_LIST);
    EXPECT_EQ(reported().folder, 7);
    EXPECT_EQ(reported().source, LIST_FROM_AUDIO_FOLDERS);
}

TEST_F(FolderBrowse, ATouchedFolderShowsItsFilesUnderItsName) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        listFolders(kind);
        clickRow(4, WND_MEDIA_LIST, 2);
        EXPECT_EQ(beeps(), 1);
        EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(kind.type, 5)));
        tick();
        EXPECT_FALSE(unit.log("[OnQueryAudiosInFolder]--m_szListSql:SELECT fid,folderid,ftype,filename from "
                              "files WHERE "
                              "ftype == " +
                              std::to_string(kind.fileType) +
                              " AND folderid == 5 AND filename <> '' ORDER BY fid;")
                         .empty());
        EXPECT_FALSE(
            unit.log("[DiscView::OnOpenFolder] nListFrom=" + std::to_string(kind.folders) + ",nLine=4")
                .empty());
        EXPECT_EQ(unit.main.window(), WND_FOLDER_LIST);
        EXPECT_EQ(title(), "folder 5");
        EXPECT_EQ(contents().rows.size(), 8u);
        EXPECT_EQ(contents().rows.at(0).text, "1  file 1");
        EXPECT_EQ(contents().rows.at(0).icon(ROW_SLOT_KIND), kind.fileIcon);
        EXPECT_FALSE(tip(WND_FOLDER_LIST).visible);
        EXPECT_EQ(reported().folder, 5);
        EXPECT_EQ(reported().source, kind.contents);
    }
}

TEST_F(FolderBrowse, KeysServeTheListThatIsShown) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        const auto expectMove = [&](int page, int start) {
            ASSERT_EQ(unit.main.window(), page);
            for (const auto& [key, row] : {std::pair{K_Down, start + 1},
                                           {K_ENCODER_INC, start + 2},
                                           {K_Up, start + 1},
                                           {K_ENCODER_DEC, start}}) {
                unit.key(key);
                EXPECT_EQ(list(page).current, row) << key;
            }
        };
        listFolders(kind);
        expectMove(WND_MEDIA_LIST, 4);
        unit.key(K_Enter);
        EXPECT_EQ(beeps(), 1);
        EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(kind.type, 5)));
        tick();
        expectMove(WND_FOLDER_LIST, 2);
        EXPECT_EQ(list().current, 4);
        forget();
        unit.key(K_Down);
        unit.key(K_Enter);
        EXPECT_EQ(beeps(), 1);
        EXPECT_FALSE(
            unit.log("[DiscView::OnOpenFolder] nListFrom=" + std::to_string(kind.contents) + ",nLine=3")
                .empty());
        EXPECT_THAT(unit.commands(), testing::SizeIs(1));
    }
}

TEST_F(FolderBrowse, NoKeyServesTheSearchResult) {
    playIn(FOLDER_KINDS[0], 5);
    unit.appData("--song=file");
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
    ASSERT_EQ(list().current, 2);
    forget();
    for (const int key : {K_Down, K_Up, K_ENCODER_INC, K_ENCODER_DEC, K_Enter}) {
        unit.key(key);
    }
    EXPECT_EQ(list().current, 2);
    EXPECT_EQ(beeps(), 0);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
}

TEST_F(FolderBrowse, ATouchedFileInAFolderPlaysAndSetsTheReturn) {
    const struct {
        std::string command;
        int playList;
        const char* log;
    } results[] = {
        {PlayTrack(Folder{5}, File{1}, KIND_MUSIC), 3, "[DiscView::OnOpenFolder] nListFrom=1,nLine=0"},
        {PlayTrack(Folder{5}, File{1}, KIND_VIDEO), 4, "[DiscView::OnOpenFolder] nListFrom=3,nLine=0"},
        {PlayTrack(1, 5), 5, "[DiscView::OnOpenFolder] nListFrom=5,nLine=0"}};
    for (size_t i = 0; i < std::size(FOLDER_KINDS); ++i) {
        const FolderKind& kind = FOLDER_KINDS[i];
        SCOPED_TRACE(kind.type);
        listFolders(kind);
        clickRow(4);
        tick();
        forget();
        clickRow(0, WND_FOLDER_LIST, 1);
        EXPECT_THAT(unit.commands(), ElementsAre(results[i].command));
        EXPECT_FALSE(unit.log(results[i].log).empty());
        EXPECT_FALSE(unit.log("[DiscView::OnClickFolderListWnd] m_nCurType=" + std::to_string(kind.type) +
                              ",m_nCurListFrom=" + std::to_string(kind.contents))
                         .empty());
        EXPECT_EQ(returnTarget(), results[i].playList);
        tick();
        EXPECT_EQ(unit.main.window(), WND_FOLDER_LIST);
        EXPECT_EQ(contents().top, 1) << "as it was left";
    }
    EXPECT_FALSE(unit.log("[DiscView::OnClickFolderListWnd] nCtrlId=2000,m_nCurListFrom=5").empty());
}

TEST_F(FolderBrowse, AnEmptyFolderShowsItsTip) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        listFolders(kind);
        clickRow(8);
        tick();
        EXPECT_EQ(unit.main.window(), WND_FOLDER_LIST);
        EXPECT_THAT(contents().rows, IsEmpty());
        EXPECT_TRUE(tip(WND_FOLDER_LIST).visible);
        EXPECT_EQ(tip(WND_FOLDER_LIST).textId, kind.emptyText);
        EXPECT_EQ(title(), "folder 9");
    }
}

TEST_F(FolderBrowse, ACountThatIsMissingIsNoEmptyFolder) {
    listFolders(FOLDER_KINDS[0]);
    catalogue.sql("DELETE FROM folders WHERE folderid = 9");
    clickRow(8);
    tick();
    EXPECT_EQ(unit.main.window(), WND_FOLDER_LIST);
    EXPECT_NE(tip(WND_FOLDER_LIST).textId, 71);
    EXPECT_EQ(title(), "");
}

TEST_F(FolderBrowse, SubFoldersAloneAreNotEmpty) {
    catalogue.sql("UPDATE folders SET foldercount = 1 WHERE folderid = 9");
    listFolders(FOLDER_KINDS[0]);
    clickRow(8);
    EXPECT_NE(tip(WND_FOLDER_LIST).textId, 71);
}

TEST_F(FolderBrowse, OtherTypesLookLikeMusicButAreCountedAsVideo) {
    catalogue.sql(
        "UPDATE folders SET foldername = 'of video', filecount = 0 WHERE folderid = 5 AND ftype = 2");
    openFolder(FOLDER_KINDS[0], 5);
    clickRow(0, WND_FOLDER_LIST);
    unit.disc.mediaType(PLAY_TYPE_CD);
    loggedAgain("ftype == 1 AND folderid == 5");
    press(ITEM_TO_LIST, WND_AUDIO_PLAY); // back to the folder, without a type to browse
    EXPECT_EQ(title(), "of video");
    EXPECT_EQ(tip(WND_FOLDER_LIST).textId, 71);
    EXPECT_TRUE(loggedAgain("ftype == 1 AND folderid == 5"));
    EXPECT_EQ(reported().source, LIST_FROM_AUDIO_IN_FOLDER);
}

TEST_F(FolderBrowse, OtherTypesListTheFoldersOfMusicUnderTheirSource) {
    listFolders(FOLDER_KINDS[1]);
    unit.disc.mediaType(PLAY_TYPE_CD);
    ASSERT_THAT(unit.log("from folders where ftype = 1;"), IsEmpty());
    press(ITEM_FOLDER_MENU);
    EXPECT_FALSE(unit.log("from folders where ftype = 1;").empty());
    EXPECT_EQ(reported().source, LIST_FROM_VIDEO_FOLDERS);
}

TEST_F(FolderBrowse, UpFromAnyFolderLeadsToTheFlatList) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        listFolders(kind);
        clickRow(4);
        tick();
        forget();
        press(BTN_FOLDER_UP, WND_FOLDER_LIST);
        EXPECT_EQ(beeps(), 1);
        tick();
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        EXPECT_EQ(list().rows.size(), 9u);
        EXPECT_EQ(list().current, 4) << "the folder of what plays is selected again";
        EXPECT_THAT(unit.commands(), IsEmpty());
        const Reported view = reported();
        EXPECT_EQ(view.source, kind.folders);
        EXPECT_EQ(view.state, kind.state);
    }
}

TEST_F(FolderBrowse, ATouchWithoutARowDoesNothing) {
    listFolders(FOLDER_KINDS[0], 99); // none of which plays
    ASSERT_EQ(list().current, -1);
    clickRow(-1);
    EXPECT_FALSE(unit.log("[DiscView::OnOpenFolder] nListFrom=0,nLine=-1").empty());
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_EQ(reported().source, LIST_FROM_AUDIO_FOLDERS);
}

TEST_F(FolderBrowse, ARowOfAnotherSourceDoesNothing) {
    listFolders(FOLDER_KINDS[0]);
    clickRow(4);
    tick();
    forget();
    unit.disc.mediaType(PLAY_TYPE_VIDEO); // browses films, while the music of the folder is on screen
    clickRow(0, WND_FOLDER_LIST);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.log("[DiscView::OnOpenFolder] nListFrom=1"), IsEmpty());
    EXPECT_THAT(unit.log("[DiscView::OnOpenFolder] nListFrom=3"), IsEmpty());
}

TEST_F(FolderBrowse, WithoutAControllerATouchedFolderIsOpenedAllTheSame) {
    listFolders(FOLDER_KINDS[0]);
    onList(WND_MEDIA_LIST, [](CUI_BtList& control) { control.SetCurSel(4, 0); });
    clickWithoutController(WND_MEDIA_LIST, ITEM_LIST);
    EXPECT_EQ(title(), "folder 5");
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(reported().folder, 5);
}

TEST_F(FolderBrowse, TheFolderMenuLeadsToItsListsStateFromAPlayPage) {
    playIn(FOLDER_KINDS[0], 5);
    ASSERT_EQ(state(), VIEW_STATE_AUDIO_PLAY);
    press(ITEM_FOLDER_MENU);
    EXPECT_EQ(state(), VIEW_STATE_MUSIC_LIST);
}

TEST_F(FolderBrowse, OtherTypesKeepTheirStateInTheFolderMenu) {
    for (const int control : std::initializer_list<int>{ITEM_FOLDER_MENU, BTN_FOLDER_UP}) {
        reach(VIEW_STATE_PHOTO_LIST);
        unit.disc.mediaType(PLAY_TYPE_CD);
        press(control, WND_FOLDER_LIST);
        EXPECT_EQ(state(), VIEW_STATE_PHOTO_LIST) << control;
    }
}

} // namespace zm::test
