#include "DiscViewLists.h"

#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "zmui/CUIWndMng.h"
#include "zmui/CUI_BtList.h"

namespace {

constexpr int ROWS_IN_VIEW = 5;
constexpr int ROWS_ABOVE_PLAYING = 4; ///< before position p (from 1): the playing row comes fourth in view

constexpr int NOTIFY_SCROLL = 3;
enum : int { SCROLL_START = 3, SCROLL_END = 5 };

} // namespace

void DiscView::OnFunc_ListJmp_UiFrom(int nFrom, bool bSel) {
    if ((nFrom >= LIST_FROM_AUDIO_FOLDERS && nFrom <= LIST_FROM_PHOTO_IN_FOLDER) ||
        nFrom == LIST_FROM_SEARCH) {
        OnFunc_FolderListJump_Index(nFrom, bSel);
    } else if (nFrom >= LIST_FROM_ALL_AUDIO && nFrom <= LIST_FROM_CUR_AUDIO) {
        OnFunc_ListJump_Index(nFrom, bSel);
    }
}

void DiscView::OnFunc_ListJump_Index(int nFrom, bool bSel) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnFunc_ListJump_Index]--nUiFrom:%d\n", nFrom);
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    CUI_BtList* list = nFrom == LIST_FROM_CUR_AUDIO ? m_pCDList : m_pAudioList;
    int nPosition = 0;
    const bool bFound = m_discDb.GetVecList_Data_Index(nFrom, info.curMediaId, info.parentFolder, nPosition);
    if (!list || !bFound || nPosition < 1 || nPosition > list->GetItemCount()) {
        return;
    }
    const int nRow = nPosition - 1;
    MarkPlayingRow(*list, nRow);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnFunc_ListJump_Index]--SetCurSel:%d\n", nRow);
    if (!bSel) {
        RedrawAll();
        return;
    }
    m_bSelPlayingRow = false;
    const bool bInView =
        m_nListTopIndex >= 0 && nPosition > m_nListTopIndex && nPosition - m_nListTopIndex < ROWS_IN_VIEW;
    SelectRow(*list, nRow, bInView ? m_nListTopIndex : nPosition - ROWS_ABOVE_PLAYING);
}

void DiscView::MarkPlayingRow(CUI_BtList& list, int nRow) {
    UnmarkRows(list);
    list.SetItemICon(nRow, ICON_ROW_PLAYING, ITEM_STATE_ALL, ROW_SLOT_PLAYING, 1);
}

void DiscView::UnmarkRows(CUI_BtList& list) {
    for (int i = 0; i < list.GetItemCount(); ++i) {
        list.SetItemICon(i, ICON_NONE, ITEM_STATE_ALL, ROW_SLOT_PLAYING, 1);
    }
}

void DiscView::SelectRow(CUI_BtList& list, int nRow, int nTopIndex) {
    list.SetCurSel(nRow, 0);
    list.SetTopIndex(nTopIndex, 1, 0, 0, 0);
}

void DiscView::RedrawAll() {
    if (m_pWndMng) {
        m_pWndMng->drawAllItem();
    }
}

void DiscView::OnHandle_ListDown(CUI_BtList* list) {
    int nRow = 0;
    if (!SelectedRow(list, nRow) || nRow + 1 >= list->GetItemCount()) {
        return;
    }
    const int nTop = list->GetTopIndex();
    const bool bBelowView = nRow + 1 - nTop >= ROWS_IN_VIEW;
    SelectRow(*list, nRow + 1, bBelowView ? nTop + 1 : nTop);
}

void DiscView::OnHandle_ListUp(CUI_BtList* list) {
    int nRow = 0;
    if (!SelectedRow(list, nRow) || nRow - 1 < 0) {
        return;
    }
    const int nTop = list->GetTopIndex();
    const bool bAboveView = nRow - 1 < nTop;
    SelectRow(*list, nRow - 1, bAboveView ? nTop - 1 : nTop);
}

bool DiscView::SelectedRow(CUI_BtList* list, int& nRow) {
    int a = 0;
    int b = 0;
    return list && list->GetCurSel(&nRow, &a, &b);
}

void DiscView::OnListInfoMessage(CUIWndMng* wndMng, int nWndId, int kind, _tagList_Info* info) {
    if (!wndMng || !m_pController || !info) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnListInfoMessage] invalid parameters.\n");
        return;
    }
    if (nWndId != WND_MEDIA_LIST || kind != NOTIFY_SCROLL) {
        return;
    }
    if (info->nState == SCROLL_START) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "------OnListInfoMessage: SCROLL_START\n");
    } else if (info->nState == SCROLL_END) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "------OnListInfoMessage: SCROLL_END\n");
    }
}
