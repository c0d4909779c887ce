#include "DiscViewLists.h"

#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/FindRow.h"
#include "zmui/CUI_BtList.h"

/** How the playing row is found in a list of folders or of a folder's contents. */
struct DiscView::FolderMark {
    int from;
    CUI_BtList* DiscView::*list;
    int rowType; ///< FTYPE_FOLDER: the row of the playing file's folder
    int margin;  ///< rows that may stand above the selected one in view
};

bool DiscView::OnFunc_FolderListJump_Index(int nFrom, bool bSel) {
    static constexpr FolderMark ROWS[] = {
        {LIST_FROM_AUDIO_FOLDERS, &DiscView::m_pAudioList, FTYPE_FOLDER, 3},
        {LIST_FROM_VIDEO_FOLDERS, &DiscView::m_pAudioList, FTYPE_FOLDER, 3},
        {LIST_FROM_PHOTO_FOLDERS, &DiscView::m_pAudioList, FTYPE_FOLDER, 3},
        {LIST_FROM_AUDIO_IN_FOLDER, &DiscView::m_pFolderAudioList, FTYPE_AUDIO, 2},
        {LIST_FROM_VIDEO_IN_FOLDER, &DiscView::m_pFolderAudioList, FTYPE_VIDEO, 2},
        {LIST_FROM_PHOTO_IN_FOLDER, &DiscView::m_pFolderAudioList, FTYPE_PICTURE, 2},
        {LIST_FROM_SEARCH, &DiscView::m_pAudioList, FTYPE_AUDIO, 3},
    };
    const FolderMark* mark = FindRow(ROWS, &FolderMark::from, nFrom);
    CUI_BtList* list = mark ? this->*mark->list : nullptr;
    const int nRow = list ? FindPlayingRow(*mark, *list) : -1;
    if (nRow < 0) {
        if (list) {
            UnmarkRows(*list);
        }
        if (bSel) {
            m_bSelPlayingRow = false;
            if (list) {
                SelectWithoutPlaying(*mark, *list);
            }
        }
        RedrawAll();
        return false;
    }
    const bool bFolders = mark->rowType == FTYPE_FOLDER;
    if (!bFolders) {
        MarkPlayingRow(*list, nRow);
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnFunc_FolderListJump_Index]--SetCurSel:%d\n", nRow);
    if (!bSel) {
        RedrawAll();
        return true;
    }
    m_bSelPlayingRow = false;
    const int nRemembered = bFolders ? m_nFolderTopIndex : m_nListTopIndex;
    SelectRow(*list, nRow, TopRowFor(nRow, nRemembered, mark->margin));
    return true;
}

int DiscView::FindPlayingRow(const FolderMark& mark, CUI_BtList& list) {
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    const bool bFolders = mark.rowType == FTYPE_FOLDER;
    for (int i = 0; i < list.GetItemCount(); ++i) {
        int nFid = -1;
        int nType = -1;
        int nFolder = -1;
        m_discDb.GetVecList_Data_Fid(mark.from, i, nFid);
        m_discDb.GetVecList_Data_Type(mark.from, i, nType);
        m_discDb.GetVecList_Data_ListIndex(mark.from, i, nFolder);
        const bool bPlaying = bFolders ? nFid == info.parentFolder && m_nClickFolderId == info.parentFolder
                                       : nFid == info.curMediaId && nFolder == info.parentFolder;
        if (nType == mark.rowType && bPlaying) {
            return i;
        }
    }
    return -1;
}

void DiscView::SelectWithoutPlaying(const FolderMark& mark, CUI_BtList& list) {
    if (mark.rowType == FTYPE_FOLDER) {
        SelectRow(list, m_nFolderCurSel, TopRowFor(m_nFolderCurSel, m_nFolderTopIndex, mark.margin));
    } else {
        list.SetCurSel(0, 0);
    }
}

int DiscView::TopRowFor(int nRow, int nRemembered, int nMargin) {
    const bool bInView = nRemembered >= 0 && nRow >= nRemembered && nRow - nRemembered <= nMargin;
    return bInView ? nRemembered : nRow - nMargin;
}
