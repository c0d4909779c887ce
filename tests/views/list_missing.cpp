#include "tests/views/folder_view.h"

namespace zm::test {

/** The pages of a resource that has no list controls. */
class ListMissing : public FolderView {
protected:
    void playWithoutLists(int type) {
        play(type);
        unit.disc.mixedType(14);
        inside.dropLists();
        forget();
    }
};

TEST_F(ListMissing, TabsFoldersAndReturnStillChangeThePage) {
    playWithoutLists(PLAY_TYPE_MUSIC);
    press(ITEM_TO_LIST, WND_AUDIO_PLAY);
    tick();
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    for (const FolderKind& kind : FOLDER_KINDS) {
        press(kind.tab);
        tick();
        EXPECT_EQ(inside.state(), kind.state);
        press(ITEM_FOLDER_MENU);
        tick();
        EXPECT_EQ(inside.listFrom(), kind.folders);
        inside.gotoFolder(5);
        tick();
        EXPECT_EQ(unit.main.window(), WND_FOLDER_LIST);
    }
    EXPECT_THAT(list().rows, IsEmpty());
    EXPECT_THAT(contents().rows, IsEmpty());
}

TEST_F(ListMissing, RowsAndKeysDoNothing) {
    playWithoutLists(PLAY_TYPE_CD);
    inside.setState(VIEW_STATE_MUSIC_LIST);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        press(ITEM_LIST, page);
    }
    for (const int source : {LIST_FROM_ALL_AUDIO, LIST_FROM_AUDIO_IN_FOLDER, LIST_FROM_CUR_AUDIO}) {
        inside.setListFrom(source);
        for (const int key : {K_Up, K_Down, K_ENCODER_INC, K_ENCODER_DEC, K_Enter}) {
            unit.key(key);
        }
        unit.disc.track({.curMediaId = source, .mediaId = source, .parentFolder = 5});
    }
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(inside.listTopIndex(), -1);
}

TEST_F(ListMissing, ThePlayPageComesBackWithoutARememberedRow) {
    playWithoutLists(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        inside.setState(VIEW_STATE_MUSIC_LIST);
        unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
        expire(5);
        EXPECT_EQ(unit.main.window(), WND_AUDIO_PLAY) << page;
        EXPECT_EQ(inside.listTopIndex(), -1);
    }
}

TEST_F(ListMissing, OnlyTheTrackListsButtonLeadsBackToThePlayPage) {
    playWithoutLists(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
        press(ITEM_TYPE_ICON, page);
        EXPECT_EQ(unit.main.window(), page == WND_CD_LIST ? WND_AUDIO_PLAY : page);
    }
}

TEST_F(ListMissing, TheNumberPadOpensAllTheSame) {
    playWithoutLists(PLAY_TYPE_MUSIC);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST}) {
        unit.onViewThread([&] { unit.view().ShowWnd(page, true, 0); });
        press(6505, page);
        EXPECT_EQ(unit.main.window(), WND_GOTO) << page;
    }
}

} // namespace zm::test
