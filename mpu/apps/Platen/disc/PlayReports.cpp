#include "disc/PlayReports.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "lists/ReturnToList.h"
#include "pages/Notices.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "pages/PlayPage.h"
#include "parts/ControlLink.h"
#include "parts/DiscTimers.h"
#include "parts/Widgets.h"
#include "search/VoiceSearch.h"
#include "video/OverlayWindow.h"
#include "video/VideoWindow.h"

void PlayReports::OnUserMsgDiscState() {
    if (!m_widgets.m_pUIAnalysis) {
        return;
    }
    const int nPlayStatus = m_data.GetCurPlayStatus().discState;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnUserMsgDiscState]  playStatus.nPlayStatus=%d\n", nPlayStatus);
    ChoosePage(nPlayStatus);
    switch (nPlayStatus) {
    case DISC_STATE_STOPPED:
    case DISC_STATE_PAUSED:
    case DISC_STATE_FAST_FORWARD:
    case DISC_STATE_FAST_BACKWARD:
        m_playPage.ShowPlayButton(false);
        break;
    case DISC_STATE_LOADING:
        m_control.KillTimer(ENUM_TIMER_NO_DISC);
        m_notices.ShowMessage(Notice::Loading);
        break;
    case DISC_STATE_PLAYING:
        m_search.PlayPending();
        m_playPage.ShowPlayButton(true);
        break;
    case DISC_STATE_ERROR:
        m_notices.DiscError();
        break;
    case DISC_STATE_EJECTING:
        m_notices.DiscExit();
        break;
    default:
        break;
    }
}

void PlayReports::ChoosePage(int nPlayStatus) {
    if (IsVideoType(m_state.m_nCurPlayType) && nPlayStatus == DISC_STATE_STOPPED) {
        if (m_state.m_nCurWndId != WND_PARKING && m_state.m_uiCurState == VIEW_STATE_VIDEO_PLAY) {
            m_overlay.SetVisibleOsd(true);
        }
    } else if (IsRunning(nPlayStatus) && m_state.m_uiCurState == VIEW_STATE_LOADING) {
        if (nPlayStatus == DISC_STATE_PAUSED) {
            m_control.Send(&DiscViewController::Play);
        }
        EnterPlayPage();
    }
}

void PlayReports::EnterPlayPage() {
    switch (m_state.m_nCurPlayType) {
    case PLAY_TYPE_CD:
    case PLAY_TYPE_MUSIC:
        m_control.KillTimer(ENUM_TIMER_LOADING);
        m_playPage.OnGotoAudioPlayPage();
        m_state.m_nPlayListFrom = m_state.m_nCurPlayType == PLAY_TYPE_CD ? PLAY_LIST_CD : PLAY_LIST_MUSIC;
        break;
    case PLAY_TYPE_PHOTO:
        m_state.m_nPlayListFrom = PLAY_LIST_PHOTO;
        m_control.KillTimer(ENUM_TIMER_LOADING);
        m_films.GotoVideoPage(PLAY_TYPE_PHOTO);
        break;
    case PLAY_TYPE_DVD:
    case PLAY_TYPE_VIDEO:
    case PLAY_TYPE_VCD:
        if (m_data.GetDeviceStatus().nVideoMode == VIDEO_MODE_ON) {
            EnterVideoPage();
        }
        break;
    default:
        break;
    }
}

void PlayReports::EnterVideoPage() {
    m_state.m_nPlayListFrom = PLAY_LIST_VIDEO;
    m_control.KillTimer(ENUM_TIMER_LOADING);
    m_films.GotoVideoPage(m_state.m_nCurPlayType);
}

void PlayReports::OnUserMsgVideoMode() {
    const int nVideoMode = m_data.GetDeviceStatus().nVideoMode;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgVideoMode]-------videomode=%d\n", nVideoMode);
    switch (nVideoMode) {
    case VIDEO_MODE_ON:
        if (IsVideoType(m_state.m_nCurPlayType) && IsRunning(m_data.GetCurPlayStatus().discState)) {
            EnterVideoPage();
        }
        break;
    case VIDEO_MODE_OFF:
        m_video.SetVisibleVideo(false);
        m_video.OperateCapture(false);
        break;
    case VIDEO_MODE_TO_LIST:
        if (m_state.m_nCurPlayType == PLAY_TYPE_VIDEO && m_state.m_uiCurState == VIEW_STATE_VIDEO_PLAY) {
            m_returnToList.LeaveFilm();
        }
        break;
    default:
        break;
    }
}

void PlayReports::OnUserMsgRootMenu() {
    if (m_data.GetDVDRootMenuFlag()) {
        m_overlay.SetVisibleOsd(false);
    }
}

void PlayReports::OnCaptureStateChanged() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnCaptureStateChanged]state=%d\n",
            m_data.GetVideoStatus());
}
