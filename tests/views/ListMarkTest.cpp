#include "tests/views/ListView.h"

namespace zm::test {

class ListMark : public ListView {
protected:
    static constexpr int NOTHING_REMEMBERED = -1;

    /** The music list is filled anew while file `position` plays, with `top` as remembered top row. */
    void listWith(int position, int top) {
        play(PLAY_TYPE_MUSIC);
        unit.disc.track({.curMediaId = position, .curMediaIds = 12, .mediaIds = 12, .parentFolder = 1});
        if (top != NOTHING_REMEMBERED) {
            openList();
            onList(WND_MEDIA_LIST, [&](CUI_BtList& control) { control.SetTopIndex(top, 1, 0, 0, 0); });
            press(ITEM_TYPE_ICON);
        }
        openList();
    }
};

TEST_F(ListMark, ThePlayingRowIsMarkedAndSelected) {
    listWith(3, NOTHING_REMEMBERED);
    EXPECT_THAT(marked(), ElementsAre(3));
    EXPECT_EQ(list().current, 2);
    EXPECT_FALSE(unit.log("[OnFunc_ListJump_Index]--nUiFrom:6").empty());
    EXPECT_FALSE(unit.log("[OnFunc_ListJump_Index]--SetCurSel:2").empty());
    EXPECT_FALSE(follows(7)) << "only once";
}

TEST_F(ListMark, WhenItIsNotInTheListNothingIsMarked) {
    listWith(99, NOTHING_REMEMBERED);
    EXPECT_THAT(marked(), IsEmpty());
    EXPECT_EQ(list().current, -1);
    EXPECT_TRUE(follows(7)) << "once it plays something of the list";
}

TEST_F(ListMark, TheFolderCountsToo) {
    play(PLAY_TYPE_MUSIC);
    unit.disc.track({.curMediaId = 3, .curMediaIds = 12, .parentFolder = 2});
    openList();
    EXPECT_THAT(marked(), IsEmpty());
}

struct TopCase {
    int position;
    int remembered;
    int top;
};

TEST_F(ListMark, TheTopRowKeepsThePlayingRowAmongTheFiveInView) {
    const TopCase rows[] = {
        {3, 0, 0},                                  // in view: kept
        {6, 0, 2},                                  // below
        {5, 0, 1},                                  // the fifth row is not among the rows below the top
        {4, 0, 0}, {8, 4, 4}, {9, 4, 5}, {4, 4, 0}, // the row of the remembered top itself, counted from 1
        {2, 6, 0},                                  // above: p - 4 is limited to the first row
    };
    for (const TopCase& row : rows) {
        listWith(row.position, row.remembered);
        EXPECT_EQ(list().top, row.top) << "position " << row.position << ", remembered " << row.remembered;
        EXPECT_EQ(list().current, row.position - 1);
    }
}

TEST_F(ListMark, WithoutARememberedTopRowThePlayingRowComesFourth) {
    listWith(10, NOTHING_REMEMBERED);
    EXPECT_EQ(list().top, 6);
    EXPECT_EQ(list().current, 9);
}

TEST_F(ListMark, WithoutARememberedTopRowTheListBeginsAtItsFirstRow) {
    listWith(3, NOTHING_REMEMBERED);
    EXPECT_EQ(list().top, 0);
    EXPECT_EQ(list().current, 2);
}

TEST_F(ListMark, TheMarkFollowsTheTrackWithoutSelecting) {
    listWith(3, 0);
    unit.disc.track({.curMediaId = 9, .curMediaIds = 12, .parentFolder = 1});
    EXPECT_THAT(marked(), ElementsAre(9));
    EXPECT_EQ(list().current, 2);
    EXPECT_EQ(list().top, 0);
}

TEST_F(ListMark, ANextKeyLetsTheSelectionFollowOnce) {
    listWith(3, 0);
    unit.key(K_NEXT);
    unit.disc.track({.curMediaId = 4, .curMediaIds = 12, .parentFolder = 1});
    EXPECT_EQ(list().current, 3);
    unit.disc.track({.curMediaId = 5, .curMediaIds = 12, .parentFolder = 1});
    EXPECT_EQ(list().current, 3);
}

TEST_F(ListMark, ATrackThatIsNotInTheListLeavesTheOldMark) {
    listWith(3, 0);
    unit.disc.track({.curMediaId = 99, .curMediaIds = 12, .parentFolder = 1});
    EXPECT_THAT(marked(), ElementsAre(3));
}

TEST_F(ListMark, TheTrackOfACdIsMarkedByItsFile) {
    play(PLAY_TYPE_CD);
    unit.disc.track({.curMediaId = 5, .curMediaIds = 12, .mediaId = 5, .mediaIds = 12, .parentFolder = 1});
    openList();
    EXPECT_THAT(marked(WND_CD_LIST), ElementsAre(5));
}

using ListKeys = ListMark;

TEST_F(ListKeys, DownScrollsFromTheSixthRowOn) {
    listWith(1, 0);
    const int tops[] = {0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7};
    for (int row = 1; row <= 11; ++row) {
        unit.key(K_Down);
        EXPECT_EQ(list().current, row);
        EXPECT_EQ(list().top, tops[row - 1]) << row;
    }
    unit.key(K_Down); // the last row stays
    EXPECT_EQ(list().current, 11);
    EXPECT_EQ(list().top, 7);
}

TEST_F(ListKeys, UpScrollsAtTheTopRow) {
    listWith(6, NOTHING_REMEMBERED);
    ASSERT_EQ(list().top, 2);
    const int tops[] = {2, 2, 2, 1, 0};
    for (int i = 0; i < 5; ++i) {
        unit.key(K_Up);
        EXPECT_EQ(list().current, 4 - i);
        EXPECT_EQ(list().top, tops[i]) << i;
    }
    unit.key(K_Up);
    EXPECT_EQ(list().current, 0);
}

TEST_F(ListKeys, UpFromTheFirstRowLeavesAListThatWasDraggedOn) {
    listWith(1, 0);
    onList(WND_MEDIA_LIST, [](CUI_BtList& control) { control.SetTopIndex(3, 1, 0, 0, 0); });
    ASSERT_EQ(list().top, 3);
    unit.key(K_Up);
    EXPECT_EQ(list().current, 0);
    EXPECT_EQ(list().top, 3);
}

TEST_F(ListKeys, WithoutASelectionNothingMoves) {
    listWith(99, NOTHING_REMEMBERED);
    unit.key(K_Down);
    unit.key(K_Up);
    EXPECT_EQ(list().current, -1);
    EXPECT_EQ(list().top, 0);
}

using ListNotify = ListMark;

TEST_F(ListNotify, ScrollingIsLogged) {
    listWith(1, 0);
    const auto notify = [&](int page, int kind, int state) {
        unit.onViewThread([&] {
            _tagList_Info info{ITEM_LIST, state, 0};
            unit.view().OnListInfoMessage(unit.view().GetUIWndMgrWrapper(), page, kind, &info);
        });
        unit.settle();
    };
    notify(WND_MEDIA_LIST, 3, 3);
    EXPECT_EQ(unit.log("------OnListInfoMessage: SCROLL_START").size(), 1u);
    notify(WND_MEDIA_LIST, 3, 5);
    EXPECT_EQ(unit.log("------OnListInfoMessage: SCROLL_END").size(), 1u);
    notify(WND_MEDIA_LIST, 3, 4);
    notify(WND_MEDIA_LIST, 2, 3);
    notify(WND_FOLDER_LIST, 3, 3);
    EXPECT_EQ(unit.log("OnListInfoMessage").size(), 2u);
}

TEST_F(ListNotify, AMissingPointerIsLogged) {
    listWith(1, 0);
    unit.onViewThread([&] {
        _tagList_Info info{ITEM_LIST, 3, 0};
        unit.view().OnListInfoMessage(nullptr, WND_MEDIA_LIST, 3, &info);
        unit.view().OnListInfoMessage(unit.view().GetUIWndMgrWrapper(), WND_MEDIA_LIST, 3, nullptr);
    });
    unit.settle();
    withoutController([](DiscView& view) {
        _tagList_Info info{ITEM_LIST, 3, 0};
        view.OnListInfoMessage(view.GetUIWndMgrWrapper(), WND_MEDIA_LIST, 3, &info);
    });
    EXPECT_EQ(unit.log("[DiscView::OnListInfoMessage] invalid parameters.").size(), 3u);
}

} // namespace zm::test
