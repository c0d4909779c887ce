// What a list remembers and draws when the driver came to it another way than straight from what plays.

#include "tests/views/Draws.h"
#include "tests/views/FolderView.h"

#include <gmock/gmock.h>

namespace zm::test {

using testing::Contains;

namespace {

/** By kind as FOLDER_KINDS: the menu's entry of all files, where that list comes from, and to which lists a play
 * page returns. */
struct Journey {
    int allFiles;
    int source;
    int list;
    int folder;
};
constexpr Journey JOURNEYS[] = {
    {ITEM_ALL_MUSIC, LIST_FROM_ALL_AUDIO, PLAY_LIST_MUSIC, PLAY_LIST_MUSIC_FOLDER},
    {ITEM_ALL_VIDEO, LIST_FROM_ALL_VIDEO, PLAY_LIST_VIDEO, PLAY_LIST_VIDEO_FOLDER},
    {ITEM_ALL_PHOTO, LIST_FROM_ALL_PHOTO, PLAY_LIST_PHOTO, PLAY_LIST_PHOTO_FOLDER},
};

} // namespace

class ListJourney : public FolderView {
protected:
    /** A file was touched in folder 5, from which the play page returns to that folder. */
    void playFromTheFolder(size_t kind) {
        openFolder(FOLDER_KINDS[kind], 5);
        clickRow(3, WND_FOLDER_LIST);
        ASSERT_EQ(returnTarget(), JOURNEYS[kind].folder);
        ASSERT_EQ(unit.main.window(), WND_FOLDER_LIST);
    }
    void expectReturnToAllFiles(size_t kind) {
        EXPECT_EQ(returnTarget(), JOURNEYS[kind].list);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        EXPECT_EQ(reported().source, JOURNEYS[kind].source);
    }
    void tracks(int file, int folder = 5) {
        unit.disc.track({.curMediaId = file, .curMediaIds = 8, .mediaId = file, .parentFolder = folder});
    }
    /** A track's report draws the whole page that is shown, once. */
    void expectPageDrawn(const std::function<void()>& report) {
        const int page = unit.main.window();
        takeDraws();
        report();
        EXPECT_THAT(takeDraws(), Contains("all").Times(1));
        EXPECT_EQ(unit.main.window(), page);
    }
};

TEST_F(ListJourney, TheWayBackOpensTheFolderThatPlaysByNow) {
    openFolder(FOLDER_KINDS[0], 5);
    clickRow(3, WND_FOLDER_LIST);
    unit.disc.track({.curMediaId = 2, .curMediaIds = 8, .mediaId = 1, .mediaIds = 8, .parentFolder = 3});
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    tick();
    ASSERT_EQ(unit.main.window(), WND_FOLDER_LIST);
    EXPECT_EQ(reported().folder, 3);
}

TEST_F(ListJourney, AFileTouchedAmongAllFilesReturnsThereEvenWhenAFolderWasTheOneBefore) {
    for (size_t kind = 0; kind < std::size(JOURNEYS); ++kind) {
        SCOPED_TRACE(FOLDER_KINDS[kind].type);
        playFromTheFolder(kind);
        press(JOURNEYS[kind].allFiles, WND_FOLDER_LIST);
        tick();
        ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST);
        clickRow(2);
        expectReturnToAllFiles(kind);
    }
}

TEST_F(ListJourney, ADiscThatLoadsAgainReturnsToAllFilesOfItsType) {
    for (size_t kind = 0; kind < std::size(JOURNEYS); ++kind) {
        SCOPED_TRACE(FOLDER_KINDS[kind].type);
        playFromTheFolder(kind);
        unit.disc.state(DISC_STATE_LOADING);
        ASSERT_EQ(unit.main.window(), WND_DISC_LOADING);
        unit.disc.state(DISC_STATE_PLAYING);
        ASSERT_EQ(unit.main.window(), kind == 0 ? WND_AUDIO_PLAY : WND_VIDEO);
        expectReturnToAllFiles(kind);
    }
}

TEST_F(ListJourney, FromATypeWithoutFilesBackToOneWithFilesTheNumberPadOpensAgain) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.mixedType(MIXED_MUSIC);
    press(ITEM_TAB_VIDEO);
    unit.key(K_GOTO);
    ASSERT_EQ(unit.main.window(), WND_MEDIA_LIST) << "there is no number to choose";
    ASSERT_FALSE(unit.main.item(WND_MEDIA_LIST, ITEM_TO_PLAYING).visible);
    press(ITEM_TAB_MUSIC);
    tick();
    EXPECT_TRUE(unit.main.item(WND_MEDIA_LIST, ITEM_TO_PLAYING).visible);
    press(ITEM_GOTO);
    EXPECT_EQ(unit.main.window(), WND_GOTO);
}

TEST_F(ListJourney, ATopRowThatPlaysStaysTheTopRow) {
    playIn(FOLDER_KINDS[0], 5, 5);
    press(ITEM_TAB_MUSIC);
    tick();
    onList(WND_MEDIA_LIST, [](CUI_BtList& control) { control.SetTopIndex(3, 1, 0, 0, 0); });
    tracks(4);
    press(ITEM_TYPE_ICON);
    openList();
    EXPECT_EQ(list().current, 3);
    EXPECT_EQ(list().top, 3);
}

/** The list that was still filling goes on as the search result. */
TEST_F(ListJourney, ASongAskedForWhileAListFillsIsSelectedThere) {
    playIn(FOLDER_KINDS[0], 5, 3);
    unit.holdCatalogue(5);
    press(ITEM_TAB_MUSIC);
    tick();
    ASSERT_EQ(list().current, 2);
    unit.releaseCatalogue();
    unit.appData("--song=\"file 3\"");
    ASSERT_EQ(reported().source, LIST_FROM_SEARCH);
    tick();
    EXPECT_EQ(list().current, 0);
}

TEST_F(ListJourney, ATrackThatMovesTheMarkDrawsThePage) {
    playIn(FOLDER_KINDS[0], 5, 3);
    press(ITEM_TAB_MUSIC);
    tick();
    ASSERT_THAT(marked(), ElementsAre(3));
    expectPageDrawn([&] { tracks(4); });
    EXPECT_THAT(marked(), ElementsAre(4));
}

TEST_F(ListJourney, ATrackThatMovesTheMarkOfAFoldersFilesDrawsThePage) {
    openFolder(FOLDER_KINDS[0], 5);
    ASSERT_THAT(marked(WND_FOLDER_LIST), ElementsAre(3));
    expectPageDrawn([&] { tracks(4); });
    EXPECT_THAT(marked(WND_FOLDER_LIST), ElementsAre(4));
}

TEST_F(ListJourney, ATrackOfAnotherFolderDrawsThePageWithoutItsMark) {
    openFolder(FOLDER_KINDS[0], 5);
    ASSERT_THAT(marked(WND_FOLDER_LIST), ElementsAre(3));
    expectPageDrawn([&] { tracks(3, 6); });
    EXPECT_THAT(marked(WND_FOLDER_LIST), IsEmpty());
}

} // namespace zm::test
