#include "lists/PlayingRow.h"

#include "DiscViewItems.h"
#include "ListSources.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "lists/ListControls.h"
#include "lists/ListRows.h"
#include "lists/ListState.h"
#include "parts/Widgets.h"
#include "zmui/CUIWndMng.h"
#include "zmui/CUI_BtList.h"

namespace {

constexpr int ROWS_ABOVE_PLAYING =
    4; ///< top row = position (from 1) - 4: the playing row is the fourth in view

int TopRowFor(int nRow, int nRemembered, int nMargin) {
    const bool bInView = nRemembered >= 0 && nRow >= nRemembered && nRow - nRemembered <= nMargin;
    return bInView ? nRemembered : nRow - nMargin;
}

} // namespace

void PlayingRow::OnFunc_ListJmp_UiFrom(int nFrom, bool bSel) {
    if (ListSourceOf(nFrom).mark == PlayingMark::Position) {
        OnFunc_ListJump_Index(nFrom, bSel);
    } else {
        OnFunc_FolderListJump_Index(nFrom, bSel);
    }
}

void PlayingRow::OnFunc_ListJump_Index(int nFrom, bool bSel) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnFunc_ListJump_Index]--nUiFrom:%d\n", nFrom);
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    CUI_BtList* list = m_controls.ListOf(ListSourceOf(nFrom).page);
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
    m_lists.m_bSelPlayingRow = false;
    const int nTop = m_lists.m_nListTopIndex;
    const bool bInView = nTop >= 0 && nPosition > nTop && nPosition - nTop < ROWS_IN_VIEW;
    SelectRow(*list, nRow, bInView ? nTop : nPosition - ROWS_ABOVE_PLAYING);
}

bool PlayingRow::OnFunc_FolderListJump_Index(int nFrom, bool bSel) {
    const ListSource& source = ListSourceOf(nFrom);
    CUI_BtList* list = m_controls.ListOf(source.page);
    const int nRow = list ? FindPlayingRow(source, *list) : -1;
    if (nRow < 0) {
        if (list) {
            UnmarkRows(*list);
        }
        if (bSel) {
            m_lists.m_bSelPlayingRow = false;
            if (list) {
                SelectWithoutPlaying(source, *list);
            }
        }
        RedrawAll();
        return false;
    }
    const bool bFolders = source.mark == PlayingMark::Folder;
    if (!bFolders) {
        MarkPlayingRow(*list, nRow);
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnFunc_FolderListJump_Index]--SetCurSel:%d\n", nRow);
    if (!bSel) {
        RedrawAll();
        return true;
    }
    m_lists.m_bSelPlayingRow = false;
    const int nRemembered = bFolders ? m_lists.m_nFolderTopIndex : m_lists.m_nListTopIndex;
    SelectRow(*list, nRow, TopRowFor(nRow, nRemembered, source.margin));
    return true;
}

int PlayingRow::FindPlayingRow(const ListSource& source, CUI_BtList& list) {
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    const bool bFolders = source.mark == PlayingMark::Folder;
    for (int i = 0; i < list.GetItemCount(); ++i) {
        int nFid = -1;
        int nType = -1;
        int nFolder = -1;
        m_discDb.GetVecList_Data_Fid(source.from, i, nFid);
        m_discDb.GetVecList_Data_Type(source.from, i, nType);
        m_discDb.GetVecList_Data_ListIndex(source.from, i, nFolder);
        const bool bPlaying = bFolders
                                  ? nFid == info.parentFolder && m_lists.m_nClickFolderId == info.parentFolder
                                  : nFid == info.curMediaId && nFolder == info.parentFolder;
        if (nType == source.rowType && bPlaying) {
            return i;
        }
    }
    return -1;
}

void PlayingRow::SelectWithoutPlaying(const ListSource& source, CUI_BtList& list) {
    if (source.mark == PlayingMark::Folder) {
        const int nRow = m_lists.m_nFolderCurSel;
        SelectRow(list, nRow, TopRowFor(nRow, m_lists.m_nFolderTopIndex, source.margin));
    } else {
        list.SetCurSel(0, 0);
    }
}

void PlayingRow::RedrawAll() {
    if (m_widgets.m_pWndMng) {
        m_widgets.m_pWndMng->drawAllItem();
    }
}
