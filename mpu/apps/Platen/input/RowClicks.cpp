#include "input/RowClicks.h"

#include "DiscViewItems.h"
#include "Log.h"
#include "lists/Folders.h"
#include "lists/ListControls.h"
#include "lists/ListRows.h"
#include "lists/ListState.h"
#include "lists/MediaTypes.h"
#include "lists/RowPlay.h"
#include "pages/PageState.h"
#include "zmui/CUI_BtList.h"

int RowClicks::TakeRow(int nWndId) {
    CUI_BtList* list = m_controls.ListOf(nWndId);
    int nRow = -1;
    SelectedRow(list, nRow);
    m_lists.m_nListTopIndex = list->GetTopIndex();
    return nRow;
}

void RowClicks::OnClickMediaRow() {
    CUI_BtList* list = m_controls.ListOf(WND_MEDIA_LIST);
    if (!list) {
        return;
    }
    const int nRow = TakeRow(WND_MEDIA_LIST);
    if (m_state.m_nCurType == PLAY_TYPE_CD) {
        m_rowPlay.OnHandleUIListClick(ROW_MUSIC, LIST_FROM_CUR_AUDIO, nRow);
        return;
    }
    const MediaType* type = FindMediaType(m_state.m_nCurType);
    if (!type) {
        return;
    }
    if (m_lists.m_nCurListFrom == type->allFrom) {
        m_rowPlay.OnHandleUIListClick(type->rowKind, type->allFrom, nRow);
        m_state.m_nPlayListFrom = type->playList;
    } else if (m_lists.m_nCurListFrom == type->foldersFrom) {
        m_lists.m_nClickFolderId = ROOT_FOLDER;
        m_folders.OnOpenFolder(type->foldersFrom, nRow);
        m_lists.m_nFolderCurSel = nRow;
        m_lists.m_nFolderTopIndex = list->GetTopIndex();
    } else if (m_lists.m_nCurListFrom == LIST_FROM_SEARCH && m_state.m_nCurType == PLAY_TYPE_MUSIC) {
        m_rowPlay.OnHandleUIListClick(ROW_MUSIC, LIST_FROM_SEARCH, nRow);
        m_state.m_nPlayListFrom = PLAY_LIST_SEARCH;
    }
}

void RowClicks::OnClickFolderRow() {
    LOGBASE(LOG_LEV_TRACE, "OnClickFolderListWnd",
            "[DiscView::OnClickFolderListWnd] m_nCurType=%d,m_nCurListFrom=%d\n", m_state.m_nCurType,
            m_lists.m_nCurListFrom);
    if (!m_controls.ListOf(WND_FOLDER_LIST)) {
        LOGBASE(LOG_LEV_TRACE, "OnClickFolderListWnd",
                "[DiscView::OnClickFolderListWnd] m_pFolderAudioList null\n");
        return;
    }
    const int nRow = TakeRow(WND_FOLDER_LIST);
    const MediaType* type = FindMediaType(m_state.m_nCurType);
    if (type && m_lists.m_nCurListFrom == type->inFolderFrom) {
        m_folders.OnOpenFolder(type->inFolderFrom, nRow);
    }
}

void RowClicks::OnClickCDRow() {
    if (m_controls.ListOf(WND_CD_LIST) && m_state.m_nCurPlayType == PLAY_TYPE_CD) {
        m_rowPlay.OnHandleUIListClick(ROW_MUSIC, LIST_FROM_CUR_AUDIO, TakeRow(WND_CD_LIST));
    }
}
