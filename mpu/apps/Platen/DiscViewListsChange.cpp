#include "DiscViewLists.h"

#include "Log.h"
#include "ZMModel/CDiscData.h"

#include "sys/delay.h"

namespace {

/** The update state: with the bit the catalogue of the type is complete, and the folder id stands below it.
 */
constexpr int UPDATE_COMPLETE = 0x10000;
constexpr int UPDATE_FOLDER_MASK = 0xFFFF;
constexpr unsigned int UPDATE_SETTLE_MS = 80; ///< the disc service may still be writing

} // namespace

void DiscView::OnHandleChangeToMusic() {
    ChangeToType(PLAY_TYPE_MUSIC);
}

void DiscView::OnHandleChangeToVideo() {
    ChangeToType(PLAY_TYPE_VIDEO);
}

void DiscView::OnHandleChangeToPhoto() {
    ChangeToType(PLAY_TYPE_PHOTO);
}

void DiscView::ChangeToType(int nType) {
    const MediaType& type = *FindMediaType(nType);
    if (type.changeLog) {
        LOGBASE(LOG_LEV_TRACE, type.changeLog, "[%s]--m_uiCurState:%d\n", type.changeLog, m_uiCurState);
    }
    m_nCurType = type.type;
    if (!(m_nMixedType & type.mixedBit)) {
        ShowNoFiles(type);
    } else if (m_pController && m_uiCurState != type.state) {
        m_bNoFileOfType = false;
        SetListTip(WND_MEDIA_LIST, TXT_LIST_WAIT);
        type.announce(*m_pController);
        ShowAllFiles(type);
        m_nPlayListFrom = type.playList;
        ShowWnd(WND_MEDIA_LIST, true, 0);
        m_bSelPlayingRow = true;
    }
}

void DiscView::ShowNoFiles(const MediaType& type) {
    m_bNoFileOfType = true;
    DeleteRows(m_pAudioList);
    m_uiCurState = type.state;
    m_nCurListFrom = type.allFrom;
    SetShowLeftState(WND_MEDIA_LIST, type.allFrom);
    SetListTip(WND_MEDIA_LIST, type.noFileText);
    ShowWnd(WND_MEDIA_LIST, true, 0);
}

void DiscView::ShowAllFiles(const MediaType& type) {
    DeleteRows(m_pAudioList);
    (this->*type.queryAll)();
    m_uiCurState = type.state;
    SetShowLeftState(WND_MEDIA_LIST, m_nCurListFrom);
}

void DiscView::OnHandleUIReturnList() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnHandleUIReturnList]--m_nPlayListFrom:%d\n", m_nPlayListFrom);
    m_bSelPlayingRow = true;
    m_nCurType = m_nCurPlayType;
    for (const MediaType& type : MediaTypes()) {
        if (type.playList == m_nPlayListFrom) {
            if (!(this->*type.dbDone)) {
                Send(&DiscViewController::GotoSubList, m_nCurPlayType, ROOT_FOLDER);
            }
            ShowAllFiles(type);
        } else if (type.playListFolder == m_nPlayListFrom) {
            OnGotoFolderListPage(CDiscData::GetInstance()->GetCurPlayInfo().parentFolder);
            m_uiCurState = type.state;
        }
    }
    if (m_nPlayListFrom == PLAY_LIST_CD) {
        OnQueryCurAudioList();
        m_uiCurState = VIEW_STATE_MUSIC_LIST;
    } else if (m_nPlayListFrom == PLAY_LIST_SEARCH) {
        ReturnToSearch();
    }
}

void DiscView::ReturnToSearch() {
    DeleteRows(m_pAudioList);
    m_nCurListFrom = LIST_FROM_SEARCH;
    InsertUIListData(LIST_FROM_SEARCH);
    m_uiCurState = VIEW_STATE_MUSIC_LIST;
    SetShowLeftState(WND_MEDIA_LIST, m_nCurListFrom);
    ShowWnd(WND_MEDIA_LIST, true, 0);
}

void DiscView::OnUserMsgUpdateDb() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "[DiscView::OnUserMsgUpdateDb] m_nClickFolderId=%d,m_uiCurState=%d,m_nCurListFrom=%d\n",
            m_nClickFolderId, m_uiCurState, m_nCurListFrom);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgUpdateDb] m_nCurType=%d\n", m_nCurType);
    delay(UPDATE_SETTLE_MS);
    const int nUpdate = CDiscData::GetInstance()->GetUpdateDbState();
    const bool bComplete = (nUpdate & UPDATE_COMPLETE) != 0;
    const int nFolder = bComplete ? nUpdate & UPDATE_FOLDER_MASK : nUpdate;
    const MediaType* type = FindMediaType(m_nCurType);
    if (!type) {
        return;
    }
    if (bComplete) {
        this->*type->dbDone = true;
    }
    if (m_uiCurState != type->state) {
        return;
    }
    // A list of folders is not read again.
    if (m_nCurListFrom == type->allFrom) {
        (this->*type->queryAll)();
    } else if (m_nCurListFrom == type->inFolderFrom && nFolder == m_nClickFolderId) {
        OnQueryAudiosInFolder(nFolder);
    }
}
