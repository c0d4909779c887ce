#include "tests/views/main_view.h"

namespace zm::test {

using MainTabs = MainView;

TEST_F(MainTabs, MixedTypeIsTaken) {
    unit.disc.mixedType(MIXED_MUSIC | MIXED_PHOTO);
    EXPECT_EQ(inside.mixedType(), 10);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]-------DISC_VMSG_MIXEDTYPE").size(), 1u);
    EXPECT_EQ(unit.log("[DiscView::OnUserMessage]------m_nMixedType=0xa").size(), 1u);
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
        EXPECT_EQ(inside.playType(), type);
        EXPECT_EQ(inside.browsedType(), type);
        EXPECT_EQ(inside.playListFrom(), tab);
        EXPECT_EQ(
            unit.log("[DiscView::OnUserMessage]------set m_nCurPlayType=" + std::to_string(type)).size(), 1u);
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

TEST_F(MainTabs, LeftMenuFollowsTheListSource) {
    struct Case {
        int source;
        int shown;
        int state;
        int folderState;
    };
    constexpr Case ROWS[] = {
        {0, ITEM_ALL_MUSIC, 2, 3},  {1, ITEM_ALL_MUSIC, 2, 3}, {2, ITEM_ALL_VIDEO, 2, 3},
        {3, ITEM_ALL_VIDEO, 2, 3},  {4, ITEM_ALL_PHOTO, 2, 3}, {5, ITEM_ALL_PHOTO, 2, 3},
        {6, ITEM_ALL_MUSIC, 3, 2},  {7, ITEM_ALL_PHOTO, 3, 2}, {8, ITEM_ALL_VIDEO, 3, 2},
        {10, ITEM_ALL_MUSIC, 2, 2},
    };
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
        for (const Case& row : ROWS) {
            SCOPED_TRACE(row.source);
            inside.showLeftState(page, row.source);
            for (const int item : {ITEM_ALL_MUSIC, ITEM_ALL_VIDEO, ITEM_ALL_PHOTO}) {
                EXPECT_EQ(unit.main.item(page, item).visible, item == row.shown) << item;
            }
            EXPECT_EQ(unit.main.item(page, row.shown).state, row.state);
            EXPECT_EQ(unit.main.item(page, ITEM_FOLDER_MENU).state, row.folderState);
        }
    }
}

TEST_F(MainTabs, LeftMenuKeepsItsLookForTheCdListAndUnknownSources) {
    inside.showLeftState(WND_MEDIA_LIST, LIST_FROM_ALL_VIDEO);
    for (const int source : {9, 11, 12, -1}) {
        inside.showLeftState(WND_MEDIA_LIST, source);
        EXPECT_TRUE(unit.main.item(WND_MEDIA_LIST, ITEM_ALL_VIDEO).visible) << source;
        EXPECT_FALSE(unit.main.item(WND_MEDIA_LIST, ITEM_ALL_MUSIC).visible) << source;
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_ALL_VIDEO).state, 3) << source;
        EXPECT_EQ(unit.main.item(WND_MEDIA_LIST, ITEM_FOLDER_MENU).state, 2) << source;
    }
}

} // namespace zm::test
