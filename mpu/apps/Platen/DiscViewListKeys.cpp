#include "DiscView.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"

namespace {

/** The page whose list is moved by the keys, for each list source up to the CD's. */
constexpr int PAGES[] = {
    /* LIST_FROM_AUDIO_FOLDERS   */ WND_MEDIA_LIST,
    /* LIST_FROM_AUDIO_IN_FOLDER */ WND_FOLDER_LIST,
    /* LIST_FROM_VIDEO_FOLDERS   */ WND_MEDIA_LIST,
    /* LIST_FROM_VIDEO_IN_FOLDER */ WND_FOLDER_LIST,
    /* LIST_FROM_PHOTO_FOLDERS   */ WND_MEDIA_LIST,
    /* LIST_FROM_PHOTO_IN_FOLDER */ WND_FOLDER_LIST,
    /* LIST_FROM_ALL_AUDIO       */ WND_MEDIA_LIST,
    /* LIST_FROM_ALL_PHOTO       */ WND_MEDIA_LIST,
    /* LIST_FROM_ALL_VIDEO       */ WND_MEDIA_LIST,
    /* LIST_FROM_CUR_AUDIO       */ WND_CD_LIST,
};

constexpr int PageOf(int nListFrom) {
    const bool bHasPage = nListFrom >= 0 && nListFrom < static_cast<int>(std::size(PAGES));
    return bHasPage ? PAGES[nListFrom] : 0;
}

constexpr bool IsPicture(int state) {
    return state == VIEW_STATE_VIDEO_PLAY || state == VIEW_STATE_PHOTO_PLAY;
}

} // namespace

CUI_BtList* DiscView::CurrentList() {
    return ListOf(PageOf(m_nCurListFrom));
}

CUI_BtList* DiscView::ListOf(int nWndId) {
    switch (nWndId) {
    case WND_MEDIA_LIST:
        return m_pAudioList;
    case WND_FOLDER_LIST:
        return m_pFolderAudioList;
    case WND_CD_LIST:
        return m_pCDList;
    default:
        return nullptr;
    }
}

void DiscView::OnKey_K_Up() {
    if (IsListState(m_uiCurState)) {
        OnHandle_ListUp(CurrentList());
    } else if (m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        OnHandleUIReturnList();
    }
}

void DiscView::OnKey_K_Down() {
    if (IsListState(m_uiCurState)) {
        OnHandle_ListDown(CurrentList());
    } else if (m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        Send(&DiscViewController::SetRepeatMode, 0);
    }
}

void DiscView::OnKey_K_Left() {
    if (m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        Send(&DiscViewController::SetShuffleMode, 0);
    }
}

void DiscView::OnKey_K_Right() {
    if (m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        QueryApplication("zmeq");
    }
}

void DiscView::OnKey_K_Encoder_Inc() {
    if (IsListState(m_uiCurState)) {
        OnHandle_ListDown(CurrentList());
    } else if (m_uiCurState == VIEW_STATE_AUDIO_PLAY || IsPicture(m_uiCurState)) {
        Send(&DiscViewController::NextClip);
    }
}

void DiscView::OnKey_K_Encoder_Dec() {
    if (IsListState(m_uiCurState)) {
        OnHandle_ListUp(CurrentList());
    } else if (m_uiCurState == VIEW_STATE_AUDIO_PLAY || IsPicture(m_uiCurState)) {
        Send(&DiscViewController::PreviousClip);
    }
}

void DiscView::OnKey_K_Enter() {
    if (IsListState(m_uiCurState)) {
        switch (PageOf(m_nCurListFrom)) {
        case WND_MEDIA_LIST:
        case WND_CD_LIST: // the CD's list, too, is entered through the file list's page
            OnClickAudioListWnd(ITEM_LIST);
            break;
        case WND_FOLDER_LIST:
            OnClickFolderListWnd(ITEM_LIST);
            break;
        }
    } else if (m_uiCurState == VIEW_STATE_AUDIO_PLAY || IsPicture(m_uiCurState)) {
        Send(&DiscViewController::PlayPause);
    }
}

void DiscView::OnKey_K_Return() {
    switch (m_uiCurState) {
    case VIEW_STATE_MUSIC_LIST:
    case VIEW_STATE_VIDEO_LIST:
    case VIEW_STATE_PHOTO_LIST:
    case VIEW_STATE_AUDIO_PLAY:
    case VIEW_STATE_LOADING:
    case VIEW_STATE_EXIT:
    case VIEW_STATE_NO_DISC:
    case VIEW_STATE_DISC_ERROR:
        QueryHome();
        break;
    case VIEW_STATE_VIDEO_PLAY:
        if (m_nCurPlayType == PLAY_TYPE_VCD || m_nCurPlayType == PLAY_TYPE_DVD) {
            QueryHome();
        }
        break;
    case VIEW_STATE_PHOTO_PLAY:
        SetDisplayPlayViewTimer();
        SetVisibleOsd(false);
        ReturnFromVideo(m_bPhotoDbDone);
        break;
    case VIEW_STATE_GOTO:
        SetDisplayPlayViewTimer();
        OnHandleUIReturnList();
        break;
    }
}
