#include "tests/views/FolderView.h"

namespace zm::test {

class FolderMark : public FolderView {
protected:
    /** A file of folder 5 plays. */
    void playNow(int file) {
        unit.disc.track(
            {.curMediaId = file, .curMediaIds = 8, .mediaId = 1, .mediaIds = 8, .parentFolder = 5});
    }
};

TEST_F(FolderMark, ThePlayingFileOfAFolderIsMarkedAndSelected) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        listFolders(kind);
        playNow(6);
        clickRow(4);
        tick();
        EXPECT_THAT(marked(WND_FOLDER_LIST), ElementsAre(6));
        EXPECT_EQ(contents().current, 5);
        EXPECT_EQ(contents().top, 3);
        EXPECT_FALSE(unit.log("[OnFunc_FolderListJump_Index]--SetCurSel:5").empty());
        playNow(7);
        EXPECT_EQ(contents().current, 5) << "only once";
    }
}

TEST_F(FolderMark, TheFirstFileOfAFolderIsMarkedLikeAnyOther) {
    openFolder(FOLDER_KINDS[0], 5);
    playNow(1);
    EXPECT_THAT(marked(WND_FOLDER_LIST), ElementsAre(1));
}

TEST_F(FolderMark, TheTopRowOfAFoldersFiles) {
    const struct {
        int row;
        int remembered;
        int top;
    } rows[] = {{2, 0, 0}, {3, 0, 1}, {4, 3, 3}, {2, 3, 0}, {7, 3, 5}, {5, 3, 3}, {6, 3, 4}, {3, 3, 3}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.row) + " " + std::to_string(row.remembered));
        listFolders(FOLDER_KINDS[0]);
        playNow(row.row + 1);
        clickRow(4, WND_MEDIA_LIST, row.remembered); // the top row of whatever list is left is remembered
        tick();
        EXPECT_EQ(contents().current, row.row);
        EXPECT_EQ(contents().top, row.top);
    }
}

TEST_F(FolderMark, WhenNothingOfTheFolderPlaysTheFirstRowIsSelected) {
    openFolder(FOLDER_KINDS[0], 5, 7);
    EXPECT_THAT(marked(WND_FOLDER_LIST), IsEmpty());
    EXPECT_EQ(contents().current, 0);
    playNow(3);
    EXPECT_THAT(marked(WND_FOLDER_LIST), ElementsAre(3));
    EXPECT_EQ(contents().current, 0) << "only once";
}

TEST_F(FolderMark, TheMarkFollowsTheTrackAndGoesWithIt) {
    openFolder(FOLDER_KINDS[0], 5);
    ASSERT_EQ(contents().current, 2);
    unit.disc.track({.curMediaId = 4, .parentFolder = 5});
    EXPECT_THAT(marked(WND_FOLDER_LIST), ElementsAre(4));
    EXPECT_EQ(contents().current, 2);
    unit.disc.track({.curMediaId = 4, .parentFolder = 6});
    EXPECT_THAT(marked(WND_FOLDER_LIST), IsEmpty());
}

TEST_F(FolderMark, ThePlayingFolderIsSelectedWithoutAMark) {
    listFolders(FOLDER_KINDS[0], 7);
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(list().current, 6);
    EXPECT_EQ(list().top, 3);
    EXPECT_FALSE(unit.log("[OnFunc_FolderListJump_Index]--SetCurSel:6").empty());
}

TEST_F(FolderMark, TheTopRowOfTheFolders) {
    const struct {
        int row;
        int remembered;
        int top;
    } rows[] = {{7, 4, 4}, {7, 3, 4}, {6, 3, 3}, {3, 4, 0}, {4, 4, 4}, {7, 8, 4}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.row) + " " + std::to_string(row.remembered));
        openFolder(FOLDER_KINDS[0], 2, 2, row.remembered);
        listFolders(FOLDER_KINDS[0], row.row + 1);
        EXPECT_EQ(list().current, row.row);
        EXPECT_EQ(list().top, row.top);
    }
}

TEST_F(FolderMark, ThePlayingFolderIsSelectedOnlyWhenItWasOpenedLast) {
    listFolders(FOLDER_KINDS[0], 7);
    clickRow(2, WND_MEDIA_LIST, 1); // folder 3
    tick();
    press(BTN_FOLDER_UP, WND_FOLDER_LIST);
    tick();
    EXPECT_EQ(list().current, 2); // the row that was left, with its top row
    EXPECT_EQ(list().top, 1);
}

TEST_F(FolderMark, ATopRowTooFarFromTheSelectedFolderIsMoved) {
    listFolders(FOLDER_KINDS[0], 7);
    clickRow(2, WND_MEDIA_LIST, 1);
    tick();
    for (const auto& [row, remembered, top] : {std::tuple{7, 2, 4}, {2, 5, 0}, {5, 3, 3}, {5, 2, 2}}) {
        press(BTN_FOLDER_UP, WND_FOLDER_LIST);
        tick();
        clickRow(row, WND_MEDIA_LIST, remembered);
        tick();
        press(BTN_FOLDER_UP, WND_FOLDER_LIST);
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

TEST_F(FolderMark, WithoutThePlayingFolderNothingIsSelectedAtFirst) {
    listFolders(FOLDER_KINDS[0], 99);
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(list().current, -1);
    EXPECT_EQ(list().top, 0);
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
