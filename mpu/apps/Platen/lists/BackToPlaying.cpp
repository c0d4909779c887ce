#include "lists/BackToPlaying.h"

#include "DiscViewItems.h"
#include "ListSources.h"
#include "ZMModel/CDiscData.h"
#include "lists/ListControls.h"
#include "lists/ListState.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "pages/PlayPage.h"
#include "zmui/CUI_BtList.h"

bool BackToPlaying::IsRunning() const {
    return ::IsRunning(m_data.GetCurPlayStatus().discState);
}

void BackToPlaying::RememberTop(int nWndId) {
    if (CUI_BtList* list = m_controls.ListOf(nWndId)) {
        const bool bFolders =
            nWndId == WND_MEDIA_LIST && ListSourceOf(m_lists.m_nCurListFrom).mark == PlayingMark::Folder;
        (bFolders ? m_lists.m_nFolderTopIndex : m_lists.m_nListTopIndex) = list->GetTopIndex();
    }
}

void BackToPlaying::OnClickToPlaying(int nWndId) {
    const PlayType nType = m_state.m_nCurPlayType;
    if (m_state.m_bNoFileOfType || nType != m_state.m_nCurType || !m_controls.ListOf(nWndId)) {
        return;
    }
    RememberTop(nWndId);
    if (IsAudioType(nType)) {
        m_playPage.OnGotoAudioPlayPage();
    } else if ((nType == PLAY_TYPE_VIDEO || nType == PLAY_TYPE_PHOTO) && IsRunning()) {
        m_films.GotoVideoPage(nType);
    }
}

void BackToPlaying::OnClickCDToPlaying() {
    RememberTop(WND_CD_LIST);
    m_playPage.OnGotoAudioPlayPage();
}

void BackToPlaying::OnTimerPlayView() {
    const PlayType nType = m_state.m_nCurPlayType;
    if (!IsListState(m_state.m_uiCurState) || m_state.m_bNoFileOfType || nType != m_state.m_nCurType) {
        return;
    }
    RememberTop(m_state.m_nCurWndId);
    if (IsAudioType(nType)) {
        m_playPage.OnGotoAudioPlayPage();
    } else if (IsRunning() && m_films.IsVideoAllowed()) {
        m_films.GotoVideoPage(nType);
    }
}
