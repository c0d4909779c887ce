#include "DiscViewLists.h"

#include "DiscViewItems.h"
#include "Log.h"
#include "SqlText.h"
#include "parts/DiscTimers.h"
#include "parts/WideText.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUI_BtList.h"

#include <algorithm>

namespace {

constexpr int TICKS_TO_WAIT = 5;
constexpr int FTYPE_NONE = 0; ///< matches no row
constexpr int NO_ROW_DATA = -1;
constexpr int NAMES_AT_ONCE =
    16; ///< read under one lock, which the worker then waits for no longer than a moment

} // namespace

void DiscView::OnQueryAudioList() {
    m_nCurListFrom = LIST_FROM_ALL_AUDIO;
    SendQuery(__FUNCTION__, SqlText("SELECT fid,folderid,ftype,filename from files WHERE ftype = %d AND "
                                    "filename <> '' ORDER BY folderid, fid;",
                                    FTYPE_AUDIO));
}

void DiscView::OnQueryVideoList() {
    m_nCurListFrom = LIST_FROM_ALL_VIDEO;
    SendQuery(__FUNCTION__,
              "SELECT fid,folderid,ftype,filename from files WHERE ftype == 2 AND filename <> '' "
              "ORDER BY folderid, fid;");
}

void DiscView::OnQueryPictureList() {
    m_nCurListFrom = LIST_FROM_ALL_PHOTO;
    SendQuery(__FUNCTION__,
              "SELECT fid,folderid,ftype,filename from files WHERE ftype == 3 AND filename <> '' "
              "ORDER BY folderid, fid;");
}

void DiscView::OnQueryCurAudioList() {
    DeleteRows(m_pCDList);
    int nFileType = FTYPE_NONE;
    if (m_nCurPlayType == PLAY_TYPE_CD) {
        m_nCurListFrom = LIST_FROM_CUR_AUDIO;
        nFileType = FTYPE_AUDIO;
    }
    SendQuery(__FUNCTION__, SqlText("SELECT fid,folderid,ftype,filename from files WHERE ftype == %d AND "
                                    "filename <> '' ORDER BY fid;",
                                    nFileType));
}

void DiscView::SendQuery(const char* logName, const std::string& sql) {
    m_szListSql = sql;
    LOGBASE(LOG_LEV_TRACE, logName, "[%s]--m_szListSql:%s\n", logName, m_szListSql.c_str());
    m_discDb.QueryPlayListCmd(m_szListSql, m_nCurListFrom, "");
    SetQueryWaitTimer();
}

void DiscView::SetQueryWaitTimer() {
    m_nQueWaitTime = 0;
    m_bQueryWaiting = true;
    StartDiscTimer(m_pController, ENUM_TIMER_QUERY_WAIT);
}

void DiscView::FileQueryWait() {
    if (!m_bQueryWaiting) {
        return;
    }
    if (m_discDb.GetFinishFlag()) {
        m_nQueWaitTime = 0;
        m_bQueryWaiting = false;
        KillTimer(ENUM_TIMER_QUERY_WAIT);
        TakeFetchedRows();
    } else {
        TakeFetchedRows();
        ++m_nQueWaitTime;
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::FileQueryWait] not finish: m_nQueWaitTime=%d\n",
                m_nQueWaitTime);
        if (m_nQueWaitTime > TICKS_TO_WAIT) {
            // m_bQueryWaiting stays: what arrives later is shown by the next query or insertion.
            m_nQueWaitTime = 0;
            KillTimer(ENUM_TIMER_QUERY_WAIT);
            LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::FileQueryWait] KillTimer\n");
        }
    }
    if (const ListSource* source = FindListSource(m_nCurListFrom)) {
        ShowWnd(source->page, true, 0);
    }
}

void DiscView::TakeFetchedRows() {
    LOGBASE(LOG_LEV_TRACE, "FileQueryWait", "[DiscView::FileQueryWait] m_nCurListFrom=%d\n", m_nCurListFrom);
    int nCount = 0;
    m_discDb.GetVecListSize(m_nCurListFrom, nCount);
    if (nCount >= 1) {
        InsertUIListData(m_nCurListFrom);
    } else {
        LOGBASE(LOG_LEV_TRACE, "FileQueryWait", "[DiscView::FileQueryWait] nCount=%d\n", nCount);
    }
}

void DiscView::InsertUIListData(int nFrom) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::InsertUIListData]----UIListFrom=%d\n", nFrom);
    const ListSource* source = FindListSource(nFrom);
    CUI_BtList* list = source ? this->*source->control : nullptr;
    int nCount = 0;
    m_discDb.GetVecListSize(nFrom, nCount);
    if (nFrom == LIST_FROM_SEARCH) {
        DeleteRows(m_pAudioList);
    }
    if (list && nCount > list->GetItemCount()) {
        InsertRows(*source, *list, nCount);
        HideListTips();
        OnFunc_ListJmp_UiFrom(m_nCurListFrom, m_bSelPlayingRow);
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::InsertUIListData]----end\n");
}

void DiscView::InsertRows(const ListSource& source, CUI_BtList& list, int nCount) {
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

void DiscView::HideListTips() {
    if (m_pUIAnalysis) {
        m_pUIAnalysis->ShowItem(WND_MEDIA_LIST, ITEM_LIST_TIP, false);
        m_pUIAnalysis->ShowItem(WND_FOLDER_LIST, ITEM_LIST_TIP, false);
    }
}

void DiscView::SetListTip(int nWndId, int nTextId) {
    if (m_pUIAnalysis) {
        m_pUIAnalysis->SetItemText(nWndId, ITEM_LIST_TIP, nTextId);
        m_pUIAnalysis->ShowItem(nWndId, ITEM_LIST_TIP, true);
    }
}

void DiscView::DeleteRows(CUI_BtList* list) {
    if (list) {
        list->DeleteAllItems();
    }
}
