#include "DiscView.h"

#include "DiscViewItems.h"
#include "zmui/CUIAnalysis.h"

namespace {

struct TabRow {
    int type;
    int item;
};

constexpr TabRow TABS[] = {
    {PLAY_TYPE_MUSIC, ITEM_TAB_MUSIC}, {PLAY_TYPE_VIDEO, ITEM_TAB_VIDEO}, {PLAY_TYPE_PHOTO, ITEM_TAB_PHOTO}};

constexpr int MENU_ITEMS[] = {ITEM_ALL_MUSIC, ITEM_ALL_VIDEO, ITEM_ALL_PHOTO};

/** The left menu of a list source: the one entry that is shown, and which of it and the folder entry is
 * selected. */
struct MenuRow {
    int shown; ///< 0: the menu stays as it is
    int state;
    int folderState;
};

constexpr int NORMAL = ITEM_STATE_NORMAL;
constexpr int SELECTED = ITEM_STATE_SELECTED;

constexpr MenuRow MENUS[] = {
    /* LIST_FROM_AUDIO_FOLDERS   */ {ITEM_ALL_MUSIC, NORMAL, SELECTED},
    /* LIST_FROM_AUDIO_IN_FOLDER */ {ITEM_ALL_MUSIC, NORMAL, SELECTED},
    /* LIST_FROM_VIDEO_FOLDERS   */ {ITEM_ALL_VIDEO, NORMAL, SELECTED},
    /* LIST_FROM_VIDEO_IN_FOLDER */ {ITEM_ALL_VIDEO, NORMAL, SELECTED},
    /* LIST_FROM_PHOTO_FOLDERS   */ {ITEM_ALL_PHOTO, NORMAL, SELECTED},
    /* LIST_FROM_PHOTO_IN_FOLDER */ {ITEM_ALL_PHOTO, NORMAL, SELECTED},
    /* LIST_FROM_ALL_AUDIO       */ {ITEM_ALL_MUSIC, SELECTED, NORMAL},
    /* LIST_FROM_ALL_PHOTO       */ {ITEM_ALL_PHOTO, SELECTED, NORMAL},
    /* LIST_FROM_ALL_VIDEO       */ {ITEM_ALL_VIDEO, SELECTED, NORMAL},
    /* LIST_FROM_CUR_AUDIO       */ {0, 0, 0},
    /* LIST_FROM_SEARCH          */ {ITEM_ALL_MUSIC, NORMAL, NORMAL},
};

} // namespace

void DiscView::SetMediaTypeIcon(int nWndId) {
    const bool bKnown =
        m_nCurType == PLAY_TYPE_MUSIC || m_nCurType == PLAY_TYPE_VIDEO || m_nCurType == PLAY_TYPE_PHOTO;
    if (!m_pUIAnalysis || !bKnown) {
        return;
    }
    for (const TabRow& tab : TABS) {
        m_pUIAnalysis->SetItemState(nWndId, tab.item, tab.type == m_nCurType ? SELECTED : NORMAL);
        m_pUIAnalysis->drawItem(nWndId, tab.item);
    }
}

void DiscView::SetShowLeftState(int nWndId, int n) {
    if (!m_pUIAnalysis || n < 0 || n >= static_cast<int>(std::size(MENUS))) {
        return;
    }
    const MenuRow& menu = MENUS[n];
    if (menu.shown) {
        for (const int item : MENU_ITEMS) {
            m_pUIAnalysis->ShowItem(nWndId, item, item == menu.shown);
        }
        m_pUIAnalysis->SetItemState(nWndId, menu.shown, menu.state);
        m_pUIAnalysis->SetItemState(nWndId, ITEM_FOLDER_MENU, menu.folderState);
        m_pUIAnalysis->drawItem(nWndId, ITEM_FOLDER_MENU);
    }
    for (const int item : MENU_ITEMS) {
        m_pUIAnalysis->drawItem(nWndId, item);
    }
}
