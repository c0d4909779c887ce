// What changes on a list page that is shown stands on the screen at once.

#include "parts/DiscTimers.h"
#include "tests/views/Draws.h"
#include "tests/views/FolderView.h"

#include <gmock/gmock.h>

namespace zm::test {

using testing::IsSupersetOf;

namespace {

constexpr int MENU = 5002;
constexpr int MENU_OPEN = 501;
constexpr int MENU_CLOSE = 500;

} // namespace

class ShownList : public FolderView {
protected:
    /** After `action` that item of the page, which is shown before and after, looks otherwise. */
    void expectChange(int page, int id, const std::function<void()>& action) {
        ASSERT_EQ(unit.main.window(), page);
        MainView::expectChange(unit.main, page, {id}, action);
        ASSERT_EQ(unit.main.window(), page);
    }
    /** What is drawn by itself on the page: "24/506". The page is drawn whole afterwards, so that the picture does
     * not tell. */
    std::vector<std::string> drawnBy(const std::function<void()>& action) {
        takeDraws();
        action();
        return takeDraws();
    }
    static std::vector<std::string> menuOf(int page) {
        std::vector<std::string> items;
        for (const int id : {ITEM_FOLDER_MENU, ITEM_ALL_MUSIC, ITEM_ALL_VIDEO, ITEM_ALL_PHOTO}) {
            items.push_back(std::to_string(page) + "/" + std::to_string(id));
        }
        return items;
    }
    void tracks(int file, int folder = 5) {
        unit.disc.track({.curMediaId = file, .curMediaIds = 8, .mediaId = file, .parentFolder = folder});
    }
};

TEST_F(ShownList, DrawsTheEntriesOfItsMenu) {
    for (const FolderKind& kind : FOLDER_KINDS) {
        SCOPED_TRACE(kind.type);
        playIn(kind, 5);
        EXPECT_THAT(drawnBy([&] { press(kind.tab); }), IsSupersetOf(menuOf(WND_MEDIA_LIST)));
        tick();
        EXPECT_THAT(drawnBy([&] {
                        press(ITEM_FOLDER_MENU);
                        tick();
                    }),
                    IsSupersetOf(menuOf(WND_MEDIA_LIST)));
        EXPECT_THAT(drawnBy([&] {
                        clickRow(4);
                        tick();
                    }),
                    IsSupersetOf(menuOf(WND_FOLDER_LIST)));
    }
}

TEST_F(ShownList, DrawsItsMenuOpenAndClosed) {
    listMusic();
    expectChange(WND_MEDIA_LIST, MENU_OPEN, [&] { press(MENU_CLOSE); });
    EXPECT_FALSE(unit.main.item(WND_MEDIA_LIST, MENU_CLOSE).visible);
    expectChange(WND_MEDIA_LIST, MENU_CLOSE, [&] { press(MENU); });
}

TEST_F(ShownList, DrawsTheTitleOfWhatPlays) {
    openFolder(FOLDER_KINDS[0], 5);
    expectChange(WND_FOLDER_LIST, ITEM_TO_PLAYING, [&] { tracks(4); });
    expectChange(WND_FOLDER_LIST, ITEM_TO_PLAYING, [&] { tracks(5); });
}

TEST_F(ShownList, DrawsTheTagsOfWhatPlays) {
    play(PLAY_TYPE_CD);
    for (const int page : {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST}) {
        unit.onViewThread([&] {
            unit.view().ShowWnd(page, true, 0);
            unit.view().GetUIWndMgrWrapper()->GetUIAnalysisObj()->ShowItem(page, ITEM_TO_PLAYING, true);
            unit.view().GetUIWndMgrWrapper()->drawAllItem();
        });
        expectChange(page, ITEM_TO_PLAYING,
                     [&] { unit.disc.id3("Title of " + std::to_string(page), "Artist", "Album"); });
    }
}

TEST_F(ShownList, DrawsWhichRowPlays) {
    playIn(FOLDER_KINDS[0], 5, 3);
    press(ITEM_TAB_MUSIC); // all music
    tick();
    expectChange(WND_MEDIA_LIST, ITEM_LIST, [&] { tracks(4); });
    openFolder(FOLDER_KINDS[0], 5);
    expectChange(WND_FOLDER_LIST, ITEM_LIST, [&] { tracks(5); });
    expectChange(WND_FOLDER_LIST, ITEM_LIST, [&] { tracks(5, 6); });
    EXPECT_THAT(marked(WND_FOLDER_LIST), IsEmpty());
}

TEST_F(ShownList, LosesTheSourcePopupByTimeAndByAResume) {
    listMusic();
    for (const auto& [name, action] :
         {std::pair<const char*, std::function<void()>>{"time", [this] { expire(ENUM_TIMER_DISPLAY_SRC); }},
          {"resume", [this] { unit.app("resume"); }}}) {
        SCOPED_TRACE(name);
        action();
        const Rect popup = unit.main.item(WND_MEDIA_LIST, OSD_ITEM_SRC_GROUP).rect;
        const auto without = cut(popup);
        press(OSD_CTRL_SRC_OPEN);
        ASSERT_TRUE(cut(popup) != without);
        action();
        EXPECT_EQ(cut(popup), without);
    }
}

} // namespace zm::test
