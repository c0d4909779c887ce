#include "tests/views/folder_view.h"

namespace zm::test {

using FolderMark = FolderView;

TEST_F(FolderMark, ThePlayingFileOfAFolderIsMarkedAndSelected) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        playIn(kind, 5, 6);
        inside.setListTopIndex(-1);
        inside.gotoFolder(5);
        tick();
        EXPECT_THAT(marked(WND_FOLDER_LIST), ElementsAre(6));
        EXPECT_EQ(contents().current, 5);
        EXPECT_EQ(contents().top, 3);
        EXPECT_FALSE(inside.followsPlaying());
        EXPECT_FALSE(unit.log("[OnFunc_FolderListJump_Index]--SetCurSel:5").empty());
    }
}

TEST_F(FolderMark, TheTopRowOfAFoldersFiles) {
    const struct {
        int row;
        int remembered;
        int top;
    } rows[] = {{2, 0, 0}, {3, 0, 1}, {4, 3, 3}, {2, 3, 0}, {7, -1, 3}, {5, 3, 3}, {6, 3, 3}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.row) + " " + std::to_string(row.remembered));
        playIn(FOLDER_KINDS[0], 5, row.row + 1);
        inside.setListTopIndex(row.remembered);
        inside.gotoFolder(5);
        tick();
        EXPECT_EQ(contents().current, row.row);
        // Two rows may stand above; eight rows in all, so the list may be asked to begin at any of them.
        const int margin = 2;
        const bool inView =
            row.remembered >= 0 && row.row >= row.remembered && row.row - row.remembered <= margin;
        EXPECT_EQ(contents().top, inView ? row.remembered : std::max(row.row - margin, 0));
    }
}

TEST_F(FolderMark, WhenNothingOfTheFolderPlaysTheFirstRowIsSelected) {
    playIn(FOLDER_KINDS[0], 7, 3);
    inside.gotoFolder(5);
    tick();
    EXPECT_THAT(marked(WND_FOLDER_LIST), IsEmpty());
    EXPECT_EQ(contents().current, 0);
    EXPECT_FALSE(inside.followsPlaying());
}

TEST_F(FolderMark, TheMarkFollowsTheTrackAndGoesWithIt) {
    playIn(FOLDER_KINDS[0], 5, 3);
    inside.gotoFolder(5);
    tick();
    inside.setState(VIEW_STATE_MUSIC_LIST);
    unit.disc.track({.curMediaId = 4, .parentFolder = 5});
    EXPECT_THAT(marked(WND_FOLDER_LIST), ElementsAre(4));
    EXPECT_EQ(contents().current, 2);
    unit.disc.track({.curMediaId = 4, .parentFolder = 6});
    EXPECT_THAT(marked(WND_FOLDER_LIST), IsEmpty());
}

TEST_F(FolderMark, ThePlayingFolderIsSelectedWithoutAMark) {
    inside.setFolderTopIndex(-1);
    listFolders(FOLDER_KINDS[0], 7);
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(list().current, 6);
    EXPECT_EQ(list().top, 3);
    EXPECT_FALSE(unit.log("[OnFunc_FolderListJump_Index]--SetCurSel:6").empty());
}

TEST_F(FolderMark, TheTopRowOfTheFolders) {
    inside.setFolderTopIndex(4);
    listFolders(FOLDER_KINDS[0], 8); // row 7, three rows below the remembered top
    EXPECT_EQ(list().top, 4);
    inside.setFolderTopIndex(3);
    listFolders(FOLDER_KINDS[0], 8);
    EXPECT_EQ(list().top, 4);
    inside.setFolderTopIndex(8);
    listFolders(FOLDER_KINDS[0], 8);
    EXPECT_EQ(list().top, 4);
}

TEST_F(FolderMark, ThePlayingFolderIsSelectedOnlyWhenItWasOpenedLast) {
    listFolders(FOLDER_KINDS[0], 7);
    clickRow(2, WND_MEDIA_LIST, 1); // folder 3
    tick();
    press(1013, WND_FOLDER_LIST);
    tick();
    EXPECT_EQ(list().current, 2); // the row that was left, with its top row
    EXPECT_EQ(list().top, 1);
}

TEST_F(FolderMark, ATopRowTooFarFromTheSelectedFolderIsMoved) {
    listFolders(FOLDER_KINDS[0], 7);
    clickRow(2, WND_MEDIA_LIST, 1);
    tick();
    for (const auto& [row, remembered, top] : {std::tuple{7, 2, 4}, {2, 5, 0}, {5, -1, 2}, {5, 2, 2}}) {
        inside.setFolderCurSel(row);
        inside.setFolderTopIndex(remembered);
        press(1013, WND_FOLDER_LIST);
        tick();
        EXPECT_EQ(list().current, row);
        EXPECT_EQ(list().top, top) << row << " " << remembered;
    }
}

TEST_F(FolderMark, ATrackReportFindsThePlayingFolderWithoutSelectingIt) {
    listFolders(FOLDER_KINDS[0], 7);
    onList(WND_MEDIA_LIST, [](CUI_BtList& control) { control.SetCurSel(1, 0); });
    loggedAgain("[OnFunc_FolderListJump_Index]--SetCurSel:6");
    unit.disc.track({.curMediaId = 4, .parentFolder = 7});
    EXPECT_TRUE(loggedAgain("[OnFunc_FolderListJump_Index]--SetCurSel:6"));
    EXPECT_EQ(list().current, 1);
}

TEST_F(FolderMark, SourcesWithoutFoldersHaveNoRows) {
    listFolders(FOLDER_KINDS[0], 7);
    const Json before = unit.main.describe();
    for (const int source : {6, 7, 8, 9, 11, -1}) {
        inside.setFollowsPlaying(true);
        EXPECT_FALSE(inside.jumpFolderList(source, false));
        EXPECT_TRUE(inside.followsPlaying());
        EXPECT_FALSE(inside.jumpFolderList(source, true));
        EXPECT_FALSE(inside.followsPlaying());
    }
    EXPECT_EQ(unit.main.describe(), before);
}

TEST_F(FolderMark, AnOldMarkGoesWhenTheListShowsFolders) {
    listFolders(FOLDER_KINDS[0], 7);
    onList(WND_MEDIA_LIST,
           [](CUI_BtList& control) { control.SetItemICon(0, ICON_ROW_PLAYING, 4, ROW_SLOT_PLAYING, 1); });
    unit.disc.track({.curMediaId = 1, .parentFolder = 2});
    EXPECT_THAT(marked(), IsEmpty());
}

TEST_F(FolderMark, TheSearchResultMarksThePlayingSong) {
    playIn(FOLDER_KINDS[0], 5, 3);
    unit.appData("--song=file");
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    EXPECT_THAT(marked(), ElementsAre(3));
    EXPECT_EQ(list().current, 2);
}

} // namespace zm::test
