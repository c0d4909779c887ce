#include "lists/ListFill.h"

#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "ListSources.h"
#include "Log.h"
#include "lists/ListControls.h"
#include "lists/ListMenu.h"
#include "lists/ListState.h"
#include "lists/PlayingRow.h"
#include "parts/WideText.h"
#include "zmui/CUI_BtList.h"

#include <algorithm>

namespace {

constexpr int NO_ROW_DATA = -1;
constexpr int NAMES_AT_ONCE =
    16; ///< read under one lock, which the worker then waits for no longer than a moment

} // namespace

void ListFill::InsertUIListData(int nFrom) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::InsertUIListData]----UIListFrom=%d\n", nFrom);
    const ListSource& source = ListSourceOf(nFrom);
    CUI_BtList* list = m_controls.ListOf(source.page);
    int nCount = 0;
    m_discDb.GetVecListSize(nFrom, nCount);
    if (nFrom == LIST_FROM_SEARCH) {
        m_controls.DeleteRows(WND_MEDIA_LIST);
    }
    if (list && nCount > list->GetItemCount()) {
        InsertRows(source, *list, nCount);
        m_menu.HideListTips();
        m_playingRow.OnFunc_ListJmp_UiFrom(m_lists.m_nCurListFrom, m_lists.m_bSelPlayingRow);
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::InsertUIListData]----end\n");
}

void ListFill::InsertRows(const ListSource& source, CUI_BtList& list, int nCount) {
    const int nStart = list.GetItemCount();
    LOGBASE(LOG_LEV_TRACE, "InsertUIListData",
            "[DiscView::InsertUIListData]----nCount=%d, nStartIndex=%d,nInsertCount=%d\n", nCount, nStart,
            nCount - nStart);
    for (int i = nStart; i < nCount; i += NAMES_AT_ONCE) {
        DiscName names[NAMES_AT_ONCE] = {};
        m_discDb.GetVecList_Names(source.from, i, names);
        for (int nRow = i; nRow < std::min(i + NAMES_AT_ONCE, nCount); ++nRow) {
            wchar_t text[WIDE_TEXT_SIZE];
            FormatWide(text, L"%d  %s", nRow + 1, names[nRow - i].data());
            list.InsertItem(nRow, NO_ROW_DATA);
            list.SetItemICon(nRow, source.rowIcon, ITEM_STATE_ALL, ROW_SLOT_KIND, 1);
            list.SetItemString(nRow, text, 1);
        }
    }
}
