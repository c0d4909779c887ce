#include "lists/ListChange.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "lists/Folders.h"
#include "lists/ListControls.h"
#include "lists/ListFill.h"
#include "lists/ListMenu.h"
#include "lists/ListQuery.h"
#include "lists/ListState.h"
#include "lists/MediaTypes.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "zmcar/ViewUI.h"

#include "sys/delay.h"

namespace {

/** The update state: the bit says that the type's catalogue is complete;
 * the folder id is in the bits below. */
constexpr int UPDATE_COMPLETE = 0x10000;
constexpr int UPDATE_FOLDER_MASK = 0xFFFF;
constexpr unsigned int UPDATE_SETTLE_MS = 80; ///< the disc service may still be writing

} // namespace

void ListChange::ChangeToType(PlayType nType) {
    const MediaType& type = *FindMediaType(nType);
    if (type.changeLog) {
        LOGBASE(LOG_LEV_TRACE, type.changeLog, "[%s]--m_uiCurState:%d\n", type.changeLog,
                m_state.m_uiCurState);
    }
    m_state.m_nCurType = type.type;
    if (!(m_state.m_nMixedType & type.mixedBit)) {
        ShowNoFiles(type);
    } else if (m_control.Controller() && m_state.m_uiCurState != type.state) {
        m_state.m_bNoFileOfType = false;
        m_menu.SetListTip(WND_MEDIA_LIST, TXT_LIST_WAIT);
        type.announce(*m_control.Controller());
        ShowAllFiles(type);
        m_state.m_nPlayListFrom = type.playList;
        m_view.ShowWnd(WND_MEDIA_LIST, true, 0);
        m_lists.m_bSelPlayingRow = true;
    }
}

void ListChange::ShowNoFiles(const MediaType& type) {
    m_state.m_bNoFileOfType = true;
    m_controls.DeleteRows(WND_MEDIA_LIST);
    m_state.m_uiCurState = type.state;
    m_lists.m_nCurListFrom = type.allFrom;
    m_menu.SetShowLeftState(WND_MEDIA_LIST, type.allFrom);
    m_menu.SetListTip(WND_MEDIA_LIST, type.noFileText);
    m_view.ShowWnd(WND_MEDIA_LIST, true, 0);
}

void ListChange::ShowAllFiles(const MediaType& type) {
    m_controls.DeleteRows(WND_MEDIA_LIST);
    m_query.OnQueryList(type.type);
    m_state.m_uiCurState = type.state;
    m_menu.SetShowLeftState(WND_MEDIA_LIST, m_lists.m_nCurListFrom);
}

void ListChange::OnHandleUIReturnList() {
    const PlayList nPlayListFrom = m_state.m_nPlayListFrom;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnHandleUIReturnList]--m_nPlayListFrom:%d\n", nPlayListFrom);
    m_lists.m_bSelPlayingRow = true;
    m_state.m_nCurType = m_state.m_nCurPlayType;
    for (const MediaType& type : MediaTypes()) {
        if (type.playList == nPlayListFrom) {
            if (!(m_lists.*type.dbDone)) {
                m_control.Send(&DiscViewController::GotoSubList, m_state.m_nCurPlayType, ROOT_FOLDER);
            }
            ShowAllFiles(type);
        } else if (type.playListFolder == nPlayListFrom) {
            m_folders.OnGotoFolderListPage(m_data.GetCurPlayInfo().parentFolder);
            m_state.m_uiCurState = type.state;
        }
    }
    if (nPlayListFrom == PLAY_LIST_CD) {
        m_query.OnQueryCurAudioList();
        m_state.m_uiCurState = VIEW_STATE_MUSIC_LIST;
    } else if (nPlayListFrom == PLAY_LIST_SEARCH) {
        ReturnToSearch();
    }
}

void ListChange::ReturnToSearch() {
    m_controls.DeleteRows(WND_MEDIA_LIST);
    m_lists.m_nCurListFrom = LIST_FROM_SEARCH;
    m_fill.InsertUIListData(LIST_FROM_SEARCH);
    m_state.m_uiCurState = VIEW_STATE_MUSIC_LIST;
    m_menu.SetShowLeftState(WND_MEDIA_LIST, m_lists.m_nCurListFrom);
    m_view.ShowWnd(WND_MEDIA_LIST, true, 0);
}

void ListChange::OnUserMsgUpdateDb() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "[DiscView::OnUserMsgUpdateDb] m_nClickFolderId=%d,m_uiCurState=%d,m_nCurListFrom=%d\n",
            m_lists.m_nClickFolderId, m_state.m_uiCurState, m_lists.m_nCurListFrom);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgUpdateDb] m_nCurType=%d\n", m_state.m_nCurType);
    delay(UPDATE_SETTLE_MS);
    const int nUpdate = m_data.GetUpdateDbState();
    const bool bComplete = (nUpdate & UPDATE_COMPLETE) != 0;
    const int nFolder = bComplete ? nUpdate & UPDATE_FOLDER_MASK : nUpdate;
    const MediaType* type = FindMediaType(m_state.m_nCurType);
    if (!type) {
        return;
    }
    if (bComplete) {
        m_lists.*type->dbDone = true;
    }
    if (m_state.m_uiCurState != type->state) {
        return;
    }
    // A list of folders is not read again.
    if (m_lists.m_nCurListFrom == type->allFrom) {
        m_query.OnQueryList(type->type);
    } else if (m_lists.m_nCurListFrom == type->inFolderFrom && nFolder == m_lists.m_nClickFolderId) {
        m_folders.OnQueryAudiosInFolder(nFolder);
    }
}
