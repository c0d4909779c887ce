#include "tests/views/ListView.h"

namespace zm::test {

struct TabCase {
    int tab;
    int type;
    int bit;
    int noFileText;
    int source;
    int state;
    std::string command;
    int playList;
    int menuItem;
};

const TabCase TABS[] = {
    {.tab = ITEM_TAB_MUSIC,
     .type = PLAY_TYPE_MUSIC,
     .bit = MIXED_MUSIC,
     .noFileText = 71,
     .source = LIST_FROM_ALL_AUDIO,
     .state = VIEW_STATE_MUSIC_LIST,
     .command = GotoSubList(PLAY_TYPE_MUSIC, 1),
     .playList = PLAY_LIST_MUSIC,
     .menuItem = ITEM_ALL_MUSIC},
    {.tab = ITEM_TAB_VIDEO,
     .type = PLAY_TYPE_VIDEO,
     .bit = MIXED_VIDEO,
     .noFileText = 72,
     .source = LIST_FROM_ALL_VIDEO,
     .state = VIEW_STATE_VIDEO_LIST,
     .command = GotoSubList(PLAY_TYPE_VIDEO, 1),
     .playList = PLAY_LIST_VIDEO,
     .menuItem = ITEM_ALL_VIDEO},
    {.tab = ITEM_TAB_PHOTO,
     .type = PLAY_TYPE_PHOTO,
     .bit = MIXED_PHOTO,
     .noFileText = 70,
     .source = LIST_FROM_ALL_PHOTO,
     .state = VIEW_STATE_PHOTO_LIST,
     .command = ChangeFormat(PLAY_TYPE_PHOTO), // a format, where the others send a list
     .playList = PLAY_LIST_PHOTO,
     .menuItem = ITEM_ALL_PHOTO},
};

class ListChange : public ListView {
protected:
    /** Something of another type plays. */
    void playOther(const TabCase& tab) {
        play(tab.type == PLAY_TYPE_MUSIC ? PLAY_TYPE_VIDEO : PLAY_TYPE_MUSIC);
        unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
        forget();
    }
};

TEST_F(ListChange, EachTabListsItsFiles) {
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
        for (const TabCase& tab : TABS) {
            SCOPED_TRACE(tab.tab);
            playOther(tab);
            press(tab.tab, page);
            EXPECT_EQ(beeps(), 1);
            EXPECT_THAT(unit.commands(), ElementsAre(tab.command));
            EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
            EXPECT_EQ(tip().textId, 33);
            EXPECT_TRUE(tip().visible);
            EXPECT_THAT(list().rows, IsEmpty());
            EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, tab.menuItem).state, ITEM_STATE_SELECTED);
            EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, tab.tab).state, ITEM_STATE_SELECTED);
            tick();
            EXPECT_EQ(list().rows.size(), 12u);
            EXPECT_EQ(list().current, 0) << "the file of what plays is selected";
            const Reported view = reported();
            EXPECT_EQ(view.browsed, tab.type);
            EXPECT_EQ(view.source, tab.source);
            EXPECT_EQ(view.state, tab.state);
            unit.key(K_GOTO); // which a list of nothing would not open
            EXPECT_EQ(unit.main.window(), WND_GOTO);
            EXPECT_EQ(returnTarget(), tab.playList);
        }
    }
}

TEST_F(ListChange, ADiscWithoutTheTypeShowsItsTextOverAnEmptyList) {
    for (const TabCase& tab : TABS) {
        SCOPED_TRACE(tab.tab);
        playOther(tab);
        press(tab.type == PLAY_TYPE_MUSIC ? ITEM_TAB_VIDEO : ITEM_TAB_MUSIC);
        tick();
        unit.disc.mixedType(14 & ~tab.bit);
        forget();
        press(tab.tab);
        EXPECT_THAT(unit.commands(), IsEmpty());
        EXPECT_THAT(list().rows, IsEmpty());
        EXPECT_EQ(tip().textId, tab.noFileText);
        EXPECT_TRUE(tip().visible);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, tab.menuItem).state, ITEM_STATE_SELECTED);
        unit.key(K_GOTO);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST) << "there is no number to choose";
        const Reported view = reported();
        EXPECT_EQ(view.state, tab.state);
        EXPECT_EQ(view.source, tab.source);
    }
}

TEST_F(ListChange, ATabInItsOwnStateDoesNothingMore) {
    for (const TabCase& tab : TABS) {
        playOther(tab);
        press(tab.tab);
        tick();
        forget();
        press(tab.tab);
        EXPECT_THAT(unit.commands(), IsEmpty()) << tab.tab;
        EXPECT_EQ(list().rows.size(), 12u);
    }
}

/** What the worker still reads of the query before lands in the list that took its place. */
TEST_F(ListChange, ATabChosenWhileAnotherListFillsShowsTheRestOfThatListFirst) {
    playOther(TABS[0]);
    unit.holdCatalogue(5);
    press(ITEM_TAB_MUSIC);
    tick();
    ASSERT_EQ(list().rows.size(), 5u);
    press(ITEM_TAB_PHOTO);
    EXPECT_THAT(list().rows, IsEmpty());
    unit.releaseCatalogue();
    tick();
    tick();
    EXPECT_EQ(list().rows.size(), 7u + 12u);
    EXPECT_EQ(list().rows.front().text, "1  song 6");
    EXPECT_EQ(list().rows.at(7).text, "8  photo 1");
    EXPECT_EQ(list().rows.back().text, "19  photo 12");
}

TEST_F(ListChange, WithoutAControllerATabOfADiscWithFilesOnlyChangesTheBrowsedType) {
    for (const TabCase& tab : TABS) {
        playOther(tab);
        clickWithoutController(WND_MEDIA_LIST, tab.tab);
        EXPECT_EQ(unit.main.window(), tab.type == PLAY_TYPE_MUSIC ? WND_VIDEO : WND_AUDIO_PLAY);
        EXPECT_THAT(unit.commands(), IsEmpty());
        EXPECT_EQ(beeps(), 0);
        EXPECT_EQ(reported().browsed, tab.type);
    }
}

TEST_F(ListChange, MusicAndVideoAreLoggedButNotPhoto) {
    playOther(TABS[0]); // a film
    press(503);
    EXPECT_FALSE(unit.log("[OnHandleChangeToMusic]--m_uiCurState:6").empty());
    press(504);
    EXPECT_FALSE(unit.log("[OnHandleChangeToVideo]--m_uiCurState:2").empty());
    press(505);
    EXPECT_THAT(unit.log("[OnHandleChangeToPhoto]"), IsEmpty());
}

/** Back from a play page. */
class ListReturn : public ListView {
protected:
    /** A file of the type plays; the list button is touched. */
    void returnTo(int playType) {
        play(playType);
        unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
        forget();
        press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    }
    /** A file of folder 1 plays, touched there. */
    void playFromTheFolder(const TabCase& tab) {
        play(tab.type);
        unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
        press(tab.tab);
        tick();
        press(ITEM_FOLDER_MENU);
        tick();
        clickRow(0);
        tick();
        ASSERT_EQ(unit.main.window(), WND_FOLDER_LIST);
        clickRow(0, WND_FOLDER_LIST);
    }
};

TEST_F(ListReturn, ToAllFilesOfTheType) {
    for (const TabCase& tab : TABS) {
        SCOPED_TRACE(tab.tab);
        returnTo(tab.type);
        EXPECT_FALSE(
            unit.log("[OnHandleUIReturnList]--m_nPlayListFrom:" + std::to_string(tab.playList)).empty());
        EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(tab.type, 1)));
        tick();
        EXPECT_EQ(list().rows.size(), 12u);
        EXPECT_EQ(list().current, 0) << "what plays is selected";
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
        const Reported view = reported();
        EXPECT_EQ(view.source, tab.source);
        EXPECT_EQ(view.state, tab.state);
        EXPECT_EQ(view.browsed, tab.type);
    }
}

TEST_F(ListReturn, FromAListOfAnotherTypeToThatOfWhatPlays) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO);
    press(ITEM_TAB_VIDEO);
    tick();
    ASSERT_EQ(reported().browsed, PLAY_TYPE_VIDEO);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    EXPECT_EQ(reported().browsed, PLAY_TYPE_MUSIC);
}

TEST_F(ListReturn, ACompleteCatalogueIsNotAskedForAgain) {
    for (const TabCase& tab : TABS) {
        play(tab.type);
        unit.disc.updateDb(0x10000);
        returnTo(tab.type);
        EXPECT_THAT(unit.commands(), IsEmpty()) << tab.tab;
    }
}

TEST_F(ListReturn, ACompleteCatalogueOfAnotherTypeDoesNotCount) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.updateDb(0x10000);
    returnTo(PLAY_TYPE_VIDEO);
    EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(3, 1)));
}

TEST_F(ListReturn, ToTheFolderOfWhatPlays) {
    const int sources[] = {LIST_FROM_AUDIO_IN_FOLDER, LIST_FROM_VIDEO_IN_FOLDER, LIST_FROM_PHOTO_IN_FOLDER};
    for (size_t i = 0; i < std::size(TABS); ++i) {
        const TabCase& tab = TABS[i];
        SCOPED_TRACE(tab.tab);
        playFromTheFolder(tab);
        forget();
        press(ITEM_TO_LIST, WND_AUDIO_PLAY);
        EXPECT_THAT(unit.commands(), IsEmpty());
        tick();
        EXPECT_EQ(unit.main.window(), WND_FOLDER_LIST);
        EXPECT_EQ(list(WND_FOLDER_LIST).rows.size(), 12u);
        const Reported view = reported();
        EXPECT_EQ(view.source, sources[i]);
        EXPECT_EQ(view.state, tab.state);
        EXPECT_EQ(view.folder, 1);
    }
}

TEST_F(ListReturn, ToTheTracksOfACd) {
    play(PLAY_TYPE_CD);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    tick();
    EXPECT_EQ(unit.main.window(), WND_CD_LIST);
    EXPECT_EQ(state(), VIEW_STATE_MUSIC_LIST);
}

TEST_F(ListReturn, ToTheSearchResultWithoutANewQuery) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=\"song 1\"");
    loggedAgain("QueryPlayListCmd");
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    EXPECT_FALSE(loggedAgain("QueryPlayListCmd"));
    EXPECT_FALSE(unit.log("[OnHandleUIReturnList]--m_nPlayListFrom:7").empty());
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_THAT(list().rowTexts(), ElementsAre("1  song 1", "2  song 10", "3  song 11", "4  song 12"));
    EXPECT_EQ(list().rows.front().icon(ROW_SLOT_KIND), 140);
    EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_ALL_MUSIC).state, ITEM_STATE_NORMAL);
    const Reported view = reported();
    EXPECT_EQ(view.source, LIST_FROM_SEARCH);
    EXPECT_EQ(view.state, VIEW_STATE_MUSIC_LIST);
}

TEST_F(ListReturn, TheSearchResultIsTheListAgainAfterALookAtTheFolders) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=\"song 1\"");
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    press(ITEM_FOLDER_MENU);
    tick();
    press(ITEM_TYPE_ICON);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    EXPECT_EQ(reported().source, LIST_FROM_SEARCH);
    forget();
    clickRow(3);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayTrack(Folder{1}, File{12}, KIND_MUSIC)));
}

/** The disc service writes on in its catalogue. */
class ListUpdate : public ListView {
protected:
    /** The list of all files of the tab is on screen. */
    void listOf(const TabCase& tab) {
        play(tab.type == PLAY_TYPE_MUSIC ? PLAY_TYPE_VIDEO : PLAY_TYPE_MUSIC);
        unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
        press(tab.tab);
        tick();
        loggedAgain("QueryPlayListCmd");
    }
};

TEST_F(ListUpdate, TheListOfAllFilesIsReadAgainAndGrows) {
    for (const TabCase& tab : TABS) {
        SCOPED_TRACE(tab.tab);
        listOf(tab);
        catalogue.file(500, 9, static_cast<Catalogue::Type>(tab.type - 1), "new");
        unit.disc.updateDb(77);
        EXPECT_TRUE(loggedAgain("QueryPlayListCmd"));
        tick();
        EXPECT_EQ(list().rows.size(), 13u);
        EXPECT_EQ(list().rows.back().text, "13  new");
    }
    EXPECT_FALSE(
        unit.log("[DiscView::OnUserMsgUpdateDb] m_nClickFolderId=1,m_uiCurState=4,m_nCurListFrom=7").empty());
    EXPECT_FALSE(unit.log("[DiscView::OnUserMsgUpdateDb] m_nCurType=4").empty());
}

TEST_F(ListUpdate, TheCatalogueGetsEightyMillisecondsToSettle) {
    listOf(TABS[0]);
    const auto start = std::chrono::steady_clock::now();
    unit.disc.updateDb(1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 80ms);
}

TEST_F(ListUpdate, AnUpdateWhileTheListFillsStartsTheWaitAnew) {
    play(PLAY_TYPE_MUSIC);
    unit.holdCatalogue(5);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    for (int i = 0; i < 4; ++i) {
        tick();
    }
    ASSERT_TRUE(loggedAgain("not finish: m_nQueWaitTime=4"));
    unit.disc.updateDb(1);
    tick();
    EXPECT_EQ(unit.log("not finish: m_nQueWaitTime=1").size(), 2u);
    unit.releaseCatalogue();
    tick();
    // The rest of the query before, then all of the new one; the five rows on screen stay.
    EXPECT_EQ(list().rows.size(), 7u + 12u);
    EXPECT_EQ(list().rows.at(4).text, "5  song 5");
    EXPECT_EQ(list().rows.at(5).text, "6  song 11");
    EXPECT_EQ(list().rows.back().text, "19  song 12");
}

TEST_F(ListUpdate, RowsAlreadyShownAreNotRewritten) {
    listOf(TABS[0]);
    catalogue.sql("UPDATE files SET filename = 'renamed'");
    unit.disc.updateDb(1);
    tick();
    EXPECT_EQ(list().rows.front().text, "1  song 1");
}

TEST_F(ListUpdate, AListOfFoldersIsNotReadAgain) {
    for (const TabCase& tab : TABS) {
        listOf(tab);
        press(ITEM_FOLDER_MENU);
        tick();
        loggedAgain("QueryPlayListCmd");
        unit.disc.updateDb(0x10001);
        EXPECT_FALSE(loggedAgain("QueryPlayListCmd")) << tab.tab;
    }
}

TEST_F(ListUpdate, AFolderIsReadAgainWhenItWasUpdated) {
    for (const TabCase& tab : TABS) {
        SCOPED_TRACE(tab.tab);
        listOf(tab);
        press(ITEM_FOLDER_MENU);
        tick();
        clickRow(0);
        tick();
        ASSERT_EQ(unit.main.window(), WND_FOLDER_LIST);
        loggedAgain("[OnQueryAudiosInFolder]");
        unit.disc.updateDb(2);
        EXPECT_FALSE(loggedAgain("[OnQueryAudiosInFolder]"));
        unit.disc.updateDb(1);
        EXPECT_TRUE(loggedAgain("[OnQueryAudiosInFolder]"));
        unit.disc.updateDb(0x10001); // complete: the folder stands in the low half
        EXPECT_TRUE(loggedAgain("[OnQueryAudiosInFolder]"));
        unit.disc.updateDb(0x20001); // not complete: the whole value is the folder
        EXPECT_FALSE(loggedAgain("[OnQueryAudiosInFolder]"));
    }
}

TEST_F(ListUpdate, OnThePlayPageNothingIsReadAgain) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.updateDb(0x10000);
    EXPECT_THAT(unit.log("QueryPlayListCmd"), IsEmpty());
}

TEST_F(ListUpdate, OtherTypesReadNothing) {
    play(PLAY_TYPE_CD);
    openList();
    loggedAgain("QueryPlayListCmd");
    unit.disc.updateDb(0x10001);
    EXPECT_FALSE(loggedAgain("QueryPlayListCmd"));
}

} // namespace zm::test
