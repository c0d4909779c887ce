#include "input/DirectionKeys.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "ListSources.h"
#include "input/ListClicks.h"
#include "lists/ListChange.h"
#include "lists/ListControls.h"
#include "lists/ListRows.h"
#include "lists/ListState.h"
#include "lists/ReturnToList.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"

int DirectionKeys::CurrentPage() const {
    const ListSource& source = ListSourceOf(m_lists.m_nCurListFrom);
    return source.takesKeys ? source.page : 0;
}

CUI_BtList* DirectionKeys::CurrentList() const {
    return m_controls.ListOf(CurrentPage());
}

void DirectionKeys::OnKey_K_Up() {
    if (IsListState(m_state.m_uiCurState)) {
        OnHandle_ListUp(CurrentList());
    } else if (m_state.m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        m_change.OnHandleUIReturnList();
    }
}

void DirectionKeys::OnKey_K_Down() {
    if (IsListState(m_state.m_uiCurState)) {
        OnHandle_ListDown(CurrentList());
    } else if (m_state.m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        m_control.Send(&DiscViewController::SetRepeatMode, 0);
    }
}

void DirectionKeys::OnKey_K_Left() {
    if (m_state.m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        m_control.Send(&DiscViewController::SetShuffleMode, 0);
    }
}

void DirectionKeys::OnKey_K_Right() {
    if (m_state.m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        m_control.QueryApplication("zmeq");
    }
}

void DirectionKeys::OnKey_K_Encoder_Inc() {
    if (IsListState(m_state.m_uiCurState)) {
        OnHandle_ListDown(CurrentList());
    } else if (IsPlayState(m_state.m_uiCurState)) {
        m_control.Send(&DiscViewController::NextClip);
    }
}

void DirectionKeys::OnKey_K_Encoder_Dec() {
    if (IsListState(m_state.m_uiCurState)) {
        OnHandle_ListUp(CurrentList());
    } else if (IsPlayState(m_state.m_uiCurState)) {
        m_control.Send(&DiscViewController::PreviousClip);
    }
}

void DirectionKeys::OnKey_K_Enter() {
    if (IsListState(m_state.m_uiCurState)) {
        switch (CurrentPage()) {
        case WND_MEDIA_LIST:
        case WND_CD_LIST: // the CD's list, too, is entered through the file list's page
            m_clicks.OnClickAudioListWnd(ITEM_LIST);
            break;
        case WND_FOLDER_LIST:
            m_clicks.OnClickFolderListWnd(ITEM_LIST);
            break;
        default:
            break;
        }
    } else if (IsPlayState(m_state.m_uiCurState)) {
        m_control.Send(&DiscViewController::PlayPause);
    }
}

void DirectionKeys::OnKey_K_Return() {
    switch (m_state.m_uiCurState) {
    case VIEW_STATE_MUSIC_LIST:
    case VIEW_STATE_VIDEO_LIST:
    case VIEW_STATE_PHOTO_LIST:
    case VIEW_STATE_AUDIO_PLAY:
    case VIEW_STATE_LOADING:
    case VIEW_STATE_EXIT:
    case VIEW_STATE_NO_DISC:
    case VIEW_STATE_DISC_ERROR:
        m_control.QueryHome();
        break;
    case VIEW_STATE_VIDEO_PLAY:
        if (m_state.m_nCurPlayType == PLAY_TYPE_VCD || m_state.m_nCurPlayType == PLAY_TYPE_DVD) {
            m_control.QueryHome();
        }
        break;
    case VIEW_STATE_PHOTO_PLAY:
        m_returnToList.LeavePhoto();
        break;
    case VIEW_STATE_GOTO:
        m_control.SetDisplayPlayViewTimer();
        m_change.OnHandleUIReturnList();
        break;
    default:
        break;
    }
}
