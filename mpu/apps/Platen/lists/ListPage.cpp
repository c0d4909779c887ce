#include "lists/ListPage.h"

#include "DiscViewItems.h"
#include "ListSources.h"
#include "lists/ListMenu.h"
#include "lists/ListState.h"
#include "lists/MediaTypes.h"
#include "lists/PlayingRow.h"
#include "pages/PageState.h"
#include "pages/PlayingTitle.h"
#include "parts/Widgets.h"
#include "zmui/CUIAnalysis.h"

void ListPage::FillListPage(int nWndId) {
    CUIAnalysis& ui = *m_widgets.m_pUIAnalysis;
    ui.ShowItem(nWndId, ITEM_TO_PLAYING,
                !m_state.m_bNoFileOfType && m_state.m_nCurPlayType == m_state.m_nCurType);
    m_title.UpdateTitleRight(nWndId);
    if (const MediaType* type = FindMediaType(m_state.m_nCurType)) {
        ui.SetItemIcon(nWndId, ITEM_TYPE_ICON, type->icon, ITEM_STATE_ALL);
    }
    m_menu.SetMediaTypeIcon(nWndId);
}

void ListPage::FillCDPage() {
    m_widgets.m_pUIAnalysis->ShowItem(WND_CD_LIST, ITEM_TO_PLAYING, true);
    m_playingRow.OnFunc_ListJmp_UiFrom(m_lists.m_nCurListFrom, m_lists.m_bSelPlayingRow);
}

void ListPage::FollowTrack() {
    m_playingRow.OnFunc_ListJmp_UiFrom(m_lists.m_nCurListFrom, m_lists.m_bSelPlayingRow);
    const ListSource& source = ListSourceOf(m_lists.m_nCurListFrom);
    if (source.followsTitle) {
        m_title.UpdateTitleRight(source.page);
    }
}
