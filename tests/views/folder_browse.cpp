#include "tests/views/folder_view.h"

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
        EXPECT_EQ(inside.listFrom(), kind.folders);
        EXPECT_EQ(inside.state(), kind.state);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        EXPECT_EQ(list().rows.size(), 9u);
        EXPECT_EQ(list().rows.at(1).text, "2  folder 2");
        EXPECT_EQ(list().rows.at(1).icon(ROW_SLOT_KIND), 138);
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_FOLDER_MENU).state, ITEM_STATE_SELECTED);
    }
}

TEST_F(FolderBrowse, TheFolderViewTakesThePlayingFolderAsTheOneOpened) {
    listFolders(FOLDER_KINDS[0], 7);
    EXPECT_EQ(inside.clickFolderId(), 7);
    press(ITEM_FOLDER_MENU, WND_FOLDER_LIST);
    EXPECT_EQ(inside.clickFolderId(), 7);
    EXPECT_EQ(inside.listFrom(), 0);
}

TEST_F(FolderBrowse, ATouchedFolderShowsItsFilesUnderItsName) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        listFolders(kind);
        clickRow(4, WND_MEDIA_LIST, 2);
        EXPECT_EQ(beeps(), 1);
        EXPECT_THAT(unit.commands(), ElementsAre("186," + std::to_string(kind.type) + ",5"));
        EXPECT_EQ(inside.clickFolderId(), 5);
        EXPECT_EQ(inside.folderCurSel(), 4);
        EXPECT_EQ(inside.folderTopIndex(), 2);
        EXPECT_EQ(inside.listFrom(), kind.contents);
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
    }
}

TEST_F(FolderBrowse, ATouchedFileInAFolderPlaysAndSetsTheReturn) {
    const struct {
        const char* command;
        int playList;
        const char* log;
    } results[] = {{"182,327681,1", 3, "[DiscView::OnOpenFolder] nListFrom=1,nLine=0"},
                   {"182,327681,3", 4, "[DiscView::OnOpenFolder] nListFrom=3,nLine=0"},
                   {"182,1,5", 5, "[DiscView::OnOpenFolder] nListFrom=5,nLine=0"}};
    for (size_t i = 0; i < std::size(FOLDER_KINDS); ++i) {
        const FolderKind& kind = FOLDER_KINDS[i];
        SCOPED_TRACE(kind.type);
        listFolders(kind);
        clickRow(4);
        tick();
        forget();
        clickRow(0, WND_FOLDER_LIST, 1);
        EXPECT_THAT(unit.commands(), ElementsAre(results[i].command));
        EXPECT_EQ(inside.playListFrom(), results[i].playList);
        EXPECT_EQ(inside.listTopIndex(), 1);
        EXPECT_FALSE(unit.log(results[i].log).empty());
        EXPECT_FALSE(unit.log("[DiscView::OnClickFolderListWnd] m_nCurType=" + std::to_string(kind.type) +
                              ",m_nCurListFrom=" + std::to_string(kind.contents))
                         .empty());
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
    catalogue.sql("DELETE FROM folders WHERE folderid = 9");
    playIn(FOLDER_KINDS[0], 5);
    inside.gotoFolder(9);
    tick();
    EXPECT_NE(tip(WND_FOLDER_LIST).textId, 71);
    EXPECT_EQ(title(), "");
}

TEST_F(FolderBrowse, SubFoldersAloneAreNotEmpty) {
    catalogue.sql("UPDATE folders SET foldercount = 1 WHERE folderid = 9");
    playIn(FOLDER_KINDS[0], 5);
    inside.gotoFolder(9);
    EXPECT_NE(tip(WND_FOLDER_LIST).textId, 71);
}

TEST_F(FolderBrowse, OtherTypesLookLikeMusicButAreCountedAsVideo) {
    catalogue.sql(
        "UPDATE folders SET foldername = 'of video', filecount = 0 WHERE folderid = 5 AND ftype = 2");
    playIn(FOLDER_KINDS[0], 5);
    inside.setBrowsedType(PLAY_TYPE_UNKNOWN);
    inside.gotoFolder(5);
    EXPECT_EQ(inside.listFrom(), LIST_FROM_AUDIO_IN_FOLDER);
    EXPECT_EQ(title(), "of video");
    EXPECT_EQ(tip(WND_FOLDER_LIST).textId, 71);
    EXPECT_FALSE(unit.log("ftype == 1 AND folderid == 5").empty());
}

TEST_F(FolderBrowse, OtherTypesListTheFoldersOfMusicUnderTheirSource) {
    playIn(FOLDER_KINDS[0], 5);
    inside.setBrowsedType(PLAY_TYPE_UNKNOWN);
    inside.setListFrom(LIST_FROM_VIDEO_FOLDERS);
    inside.queryAllFolders();
    EXPECT_EQ(inside.listFrom(), LIST_FROM_VIDEO_FOLDERS);
    EXPECT_FALSE(unit.log("from folders where ftype = 1;").empty());
}

TEST_F(FolderBrowse, UpFromAnyFolderLeadsToTheFlatList) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        listFolders(kind);
        clickRow(4);
        tick();
        forget();
        inside.setState(VIEW_STATE_AUDIO_PLAY);
        press(1013, WND_FOLDER_LIST);
        EXPECT_EQ(beeps(), 1);
        EXPECT_EQ(inside.listFrom(), kind.folders);
        EXPECT_EQ(inside.state(), kind.state);
        EXPECT_TRUE(inside.followsPlaying());
        tick();
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        EXPECT_EQ(list().rows.size(), 9u);
        EXPECT_THAT(unit.commands(), IsEmpty());
    }
}

TEST_F(FolderBrowse, ARowThatIsNoFileAndNoFolderDoesNothing) {
    listFolders(FOLDER_KINDS[0]);
    inside.openFolder(0, 99);
    inside.openFolder(0, -1);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(inside.listFrom(), 0);
}

TEST_F(FolderBrowse, ARowOfAnotherSourceDoesNothing) {
    listFolders(FOLDER_KINDS[0]);
    clickRow(4);
    tick();
    forget();
    inside.setListFrom(LIST_FROM_VIDEO_IN_FOLDER);
    clickRow(0, WND_FOLDER_LIST);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(FolderBrowse, WithoutItsListThePageOnlyLogs) {
    listFolders(FOLDER_KINDS[0]);
    inside.dropLists();
    press(ITEM_LIST, WND_FOLDER_LIST);
    EXPECT_FALSE(unit.log("[DiscView::OnClickFolderListWnd] m_pFolderAudioList null").empty());
    EXPECT_EQ(beeps(), 1);
}

TEST_F(FolderBrowse, WithoutAControllerATouchedFolderIsOpenedAllTheSame) {
    listFolders(FOLDER_KINDS[0]);
    onList(WND_MEDIA_LIST, [](CUI_BtList& control) { control.SetCurSel(4, 0); });
    inside.clickWithoutController(WND_MEDIA_LIST, ITEM_LIST);
    EXPECT_EQ(inside.clickFolderId(), 5);
    EXPECT_EQ(title(), "folder 5");
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(FolderBrowse, OtherTypesKeepTheirStateInTheFolderMenu) {
    playIn(FOLDER_KINDS[0], 5);
    for (const int control : {static_cast<int>(ITEM_FOLDER_MENU), 1013}) {
        inside.setBrowsedType(PLAY_TYPE_CD);
        inside.setState(VIEW_STATE_PHOTO_LIST);
        press(control, WND_FOLDER_LIST);
        EXPECT_EQ(inside.state(), VIEW_STATE_PHOTO_LIST) << control;
    }
}

/** The two queries that no page uses. */
using FolderSubQuery = FolderView;

TEST_F(FolderSubQuery, SubFoldersStandBeforeFiles) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        catalogue.folder(50, 5, static_cast<Catalogue::Type>(kind.fileType), "sub");
        playIn(kind, 5);
        inside.queryFolderList(5);
        EXPECT_EQ(inside.listFrom(), kind.contents);
        tick();
        EXPECT_EQ(contents().rows.front().text, "1  sub");
        EXPECT_EQ(contents().rows.front().icon(ROW_SLOT_KIND), kind.fileIcon); // by source, not by row
        EXPECT_EQ(contents().rows.size(), 9u);
        const std::string type = std::to_string(kind.fileType);
        EXPECT_FALSE(unit.log("[OnQueryFolderList]--SqlSecond:SELECT fid,folderid,ftype,filename from files "
                              "WHERE ftype = " +
                              type + " and folderid = 5 AND filename <> '' ORDER BY fid;")
                         .empty());
    }
    EXPECT_FALSE(unit.log("[OnQueryFolderList]-[OnQueryFolderList]--nFolderId=5").empty());
}

TEST_F(FolderSubQuery, TheRootIsAListOfFolders) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        playIn(kind, 5);
        inside.queryFolderList(1);
        EXPECT_EQ(inside.listFrom(), kind.folders);
        tick();
        EXPECT_EQ(list().rows.size(), 8u); // folders 2 to 9
    }
}

TEST_F(FolderSubQuery, OtherTypesKeepTheSource) {
    play(PLAY_TYPE_CD);
    inside.setListFrom(LIST_FROM_VIDEO_IN_FOLDER);
    inside.queryFolderList(5);
    EXPECT_EQ(inside.listFrom(), LIST_FROM_VIDEO_IN_FOLDER);
    EXPECT_FALSE(unit.log("SqlSecond:SELECT fid,folderid,ftype,filename from files WHERE ftype = 1").empty());
}

TEST_F(FolderSubQuery, TheSecondFormKeepsTheRows) {
    playIn(FOLDER_KINDS[0], 5);
    inside.queryFolderList(5);
    tick();
    ASSERT_EQ(contents().rows.size(), 8u);
    inside.queryFolderList2(5);
    EXPECT_EQ(contents().rows.size(), 8u);
    EXPECT_FALSE(unit.log("[OnQueryFolderList2]-[OnQueryFolderList]--nFolderId=5").empty());
    EXPECT_FALSE(unit.log("[OnQueryFolderList2]-[OnQueryFolderList]--SqlSecond:").empty());
    inside.queryFolderList(5);
    EXPECT_THAT(contents().rows, IsEmpty());
}

TEST_F(FolderSubQuery, OnlyTheFirstFormOrdersTheSubFolders) {
    catalogue.folder(52, 5, Catalogue::Music, "inserted first");
    catalogue.folder(51, 5, Catalogue::Music, "inserted last");
    playIn(FOLDER_KINDS[0], 5);
    inside.queryFolderList2(5);
    tick();
    EXPECT_EQ(contents().rows.at(0).text, "1  inserted first");
    EXPECT_EQ(contents().rows.at(1).text, "2  inserted last");
    inside.queryFolderList(5);
    tick();
    EXPECT_EQ(contents().rows.at(0).text, "1  inserted last");
    EXPECT_EQ(contents().rows.at(1).text, "2  inserted first");
    EXPECT_EQ(contents().rows.at(2).text, "3  file 1");
}

} // namespace zm::test
