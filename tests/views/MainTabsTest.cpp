#include "tests/views/FolderView.h"

namespace zm::test {

using MainTabs = MainView;

TEST_F(MainTabs, MixedTypeIsTaken) {
    unit.disc.mixedType(MIXED_MUSIC | MIXED_PHOTO);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------DISC_VMSG_MIXEDTYPE").size(), 1u);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]------m_nMixedType=0xa").size(), 1u);
    unit.click(WND_MEDIA_LIST, ITEM_TAB_VIDEO, BT_STATE_RELEASED);
    EXPECT_THAT(unit.commands(), IsEmpty()) << "no film is on the disc";
    unit.click(WND_MEDIA_LIST, ITEM_TAB_MUSIC, BT_STATE_RELEASED);
    unit.click(WND_MEDIA_LIST, ITEM_TAB_PHOTO, BT_STATE_RELEASED);
    EXPECT_THAT(unit.commands(), ElementsAre(GotoSubList(2, 1), ChangeFormat(4)));
}

TEST_F(MainTabs, MediaTypeSetsPlayTypeBrowsedTypeAndTab) {
    struct Case {
        int type;
        int tab;
    };
    // Types without a list leave the tab of the one before.
    for (const auto& [type, tab] :
         {Case{PLAY_TYPE_VIDEO, 1}, Case{PLAY_TYPE_DVD, 1}, Case{PLAY_TYPE_PHOTO, 2}, Case{PLAY_TYPE_VCD, 2},
          Case{PLAY_TYPE_CD, 2}, Case{PLAY_TYPE_MUSIC, 0}}) {
        SCOPED_TRACE(type);
        unit.disc.mediaType(type);
        EXPECT_EQ(
            unit.log("[DiscView::OnUserMessage]------set m_nCurPlayType=" + std::to_string(type)).size(), 1u);
        EXPECT_EQ(reported().browsed, type);
        unit.clearCommands();
        EXPECT_EQ(returnTarget(), tab);
        const bool asks = tab == PLAY_LIST_MUSIC || tab == PLAY_LIST_VIDEO || tab == PLAY_LIST_PHOTO;
        EXPECT_EQ(unit.commands(),
                  asks ? std::vector<std::string>{GotoSubList(type, 1)} : std::vector<std::string>{})
            << "the list is asked for in the name of the playing type";
    }
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------DISC_VMSG_CLIPSTYPE").size(), 6u);
}

TEST_F(MainTabs, MediaTypeSelectsItsTabOnBothListPages) {
    struct Case {
        int type;
        int music, video, photo;
    };
    for (const auto& [type, music, video, photo] :
         {Case{PLAY_TYPE_MUSIC, 3, 2, 2}, Case{PLAY_TYPE_VIDEO, 2, 3, 2}, Case{PLAY_TYPE_PHOTO, 2, 2, 3},
          Case{PLAY_TYPE_DVD, 2, 2, 3}}) { // a type without a tab changes nothing
        SCOPED_TRACE(type);
        unit.disc.mediaType(type);
        for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
            EXPECT_EQ(unit.main.item(page, ITEM_TAB_MUSIC).state, music);
            EXPECT_EQ(unit.main.item(page, ITEM_TAB_VIDEO).state, video);
            EXPECT_EQ(unit.main.item(page, ITEM_TAB_PHOTO).state, photo);
        }
    }
}

/** The menu at the left of the list pages: all files of the type, or its folders. */
class LeftMenu : public FolderView {
protected:
    struct Look {
        int shown;
        int state;
        int folderState;
    };
    void expectMenu(int page, const Look& look) {
        for (const int item : {ITEM_ALL_MUSIC, ITEM_ALL_VIDEO, ITEM_ALL_PHOTO}) {
            EXPECT_EQ(unit.main.item(page, item).visible, item == look.shown) << item;
        }
        EXPECT_EQ(unit.main.item(page, look.shown).state, look.state);
        EXPECT_EQ(unit.main.item(page, ITEM_FOLDER_MENU).state, look.folderState);
    }
    static constexpr int MENU_ITEMS[] = {ITEM_ALL_MUSIC, ITEM_ALL_VIDEO, ITEM_ALL_PHOTO}; // as FOLDER_KINDS
};

TEST_F(LeftMenu, FollowsTheListSource) {
    for (size_t i = 0; i < std::size(FOLDER_KINDS); ++i) {
        const FolderKind& kind = FOLDER_KINDS[i];
        const Look allFiles = {MENU_ITEMS[i], ITEM_STATE_SELECTED, ITEM_STATE_NORMAL};
        const Look folders = {MENU_ITEMS[i], ITEM_STATE_NORMAL, ITEM_STATE_SELECTED};
        SCOPED_TRACE(kind.type);
        playIn(kind, 5);
        press(kind.tab);
        expectMenu(WND_MEDIA_LIST, allFiles);
        press(ITEM_FOLDER_MENU);
        expectMenu(WND_MEDIA_LIST, folders);
        tick();
        clickRow(4);
        expectMenu(WND_FOLDER_LIST, folders);
        tick();
        press(MENU_ITEMS[i], WND_FOLDER_LIST);
        expectMenu(WND_MEDIA_LIST, allFiles);
    }
}

TEST_F(LeftMenu, OffersBothOverASearchResult) {
    play(PLAY_TYPE_MUSIC);
    unit.appData("--song=file");
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    expectMenu(WND_MEDIA_LIST, {ITEM_ALL_MUSIC, ITEM_STATE_NORMAL, ITEM_STATE_NORMAL});
}

TEST_F(LeftMenu, KeepsItsLookForTheListOfFoldersOfACd) {
    playIn(FOLDER_KINDS[1], 5);
    press(ITEM_TAB_VIDEO);
    tick();
    play(PLAY_TYPE_CD);
    openList();
    ASSERT_EQ(reported().source, LIST_FROM_CUR_AUDIO);
    press(ITEM_FOLDER_MENU); // on the page of files, which is not shown: the source stays that of the CD
    expectMenu(WND_MEDIA_LIST, {ITEM_ALL_VIDEO, ITEM_STATE_SELECTED, ITEM_STATE_NORMAL});
}

} // namespace zm::test
