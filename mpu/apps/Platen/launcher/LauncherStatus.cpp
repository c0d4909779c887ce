#include "launcher/LauncherStatus.h"

#include "DiscQDB.h"
#include "DiscViewController.h"
#include "FindRow.h"
#include "Log.h"
#include "disc/PlayReports.h"
#include "launcher/SourceRequest.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "pages/SourcePopup.h"
#include "parts/ControlLink.h"
#include "parts/Widgets.h"
#include "video/OverlayWindow.h"
#include "video/VideoWindow.h"

#include <csignal>
#include <unistd.h>

namespace {

/** The launcher's statuses, as it numbers them. */
enum : int {
    APPS_STATUS_RESUME,
    APPS_STATUS_PAUSE,
    APPS_STATUS_SHOWONLY,
    APPS_STATUS_HIDEONLY,
    APPS_STATUS_QUIT
};

/** A pause by the launcher so soon after another does not replace the play status that one saved. */
constexpr long PAUSE_INTERVAL_MS = 1200;

/** The function that log lines about the launcher's statuses name. */
constexpr const char* FUNC = "OnAppsMsgAppStatus";

constexpr int LAST_IDLE_STATE = 1; ///< disc states above it have something to show

long MillisecondsSince(const timeval& last, const timeval& now) {
    return now.tv_usec / 1000 - 1000 * last.tv_sec + 1000 * now.tv_sec - last.tv_usec / 1000;
}

} // namespace

struct LauncherStatus::StatusRow {
    int status;
    const char* log;
    void (LauncherStatus::*handler)(const T_PLAY_STATUS&);
};

void LauncherStatus::OnAppsMsgAppStatus(int status) {
    static constexpr StatusRow ROWS[] = {
        {APPS_STATUS_RESUME,
         "[OnAppsMessage] =====================APPS_STATUS_RESUME========================\n",
         &LauncherStatus::OnResume},
        {APPS_STATUS_PAUSE,
         "[OnAppsMessage] =====================APPS_STATUS_PAUSE========================\n",
         &LauncherStatus::OnPause},
        {APPS_STATUS_SHOWONLY,
         "[OnAppsMessage] =====================APPS_STATUS_SHOWONLY========================\n",
         &LauncherStatus::OnPause},
        {APPS_STATUS_HIDEONLY,
         "[OnAppsMessage] =====================APPS_STATUS_HIDEONLY========================\n",
         &LauncherStatus::OnHideOnly},
        {APPS_STATUS_QUIT, "[OnAppsMessage] =====================APPS_STATUS_QUIT========================\n",
         &LauncherStatus::OnQuit},
    };
    const StatusRow* row = FindRow(ROWS, &StatusRow::status, status);
    if (!m_control.Controller() || !m_widgets.m_pWndMng || !row) {
        return;
    }
    const T_PLAY_STATUS playStatus = m_data.GetCurPlayStatus();
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", row->log);
    (this->*row->handler)(playStatus);
}

void LauncherStatus::OnResume(const T_PLAY_STATUS& playStatus) {
    if (m_state.m_bAppPaused) {
        m_state.m_bAppPaused = false;
        PlayAgain(playStatus);
    }
    m_bAppHidden = false;
    ResumePage();
    m_request.RequestForDisc(FUNC);
    if (!m_bShown) {
        m_bShown = true;
        if (playStatus.discState > LAST_IDLE_STATE) {
            m_reports.OnUserMsgDiscState();
        }
    }
    m_control.Send(&DiscViewController::PublishMediaInfo);
    m_control.Send(&DiscViewController::PublishPlayID3);
}

void LauncherStatus::PlayAgain(const T_PLAY_STATUS& playStatus) {
    const int nBefore = m_nPlayStatusBeforePause;
    const bool bPlayed = nBefore == DISC_STATE_PLAYING || nBefore == DISC_STATE_FAST_FORWARD ||
                         nBefore == DISC_STATE_FAST_BACKWARD;
    if (bPlayed && playStatus.discState != DISC_STATE_PLAYING) {
        m_control.Send(&DiscViewController::PlayPause);
        LOGBASE(LOG_LEV_TRACE, FUNC, "[OnAppsMessage] -------------------- Play() -------------\n");
    }
}

void LauncherStatus::ResumePage() {
    switch (m_state.m_nCurPlayType) {
    case PLAY_TYPE_DVD:
    case PLAY_TYPE_VCD:
        RedrawOsd();
        if (m_state.m_uiCurState == VIEW_STATE_VIDEO_PLAY) {
            m_video.OperateCapture(true);
            m_films.ApplyParking();
        }
        break;
    case PLAY_TYPE_VIDEO:
    case PLAY_TYPE_PHOTO:
        if (m_state.IsVideoState()) {
            RedrawOsd();
            m_films.ApplyParking();
            m_video.OperateCapture(true);
            break;
        }
        [[fallthrough]];
    case PLAY_TYPE_CD:
    case PLAY_TYPE_MUSIC:
        if (m_bShown) {
            m_sources.Close();
        }
        break;
    default:
        break;
    }
}

void LauncherStatus::RedrawOsd() {
    if (m_bShown) {
        m_overlay.DrawAllItem();
    }
}

void LauncherStatus::OnPause(const T_PLAY_STATUS& playStatus) {
    if (m_state.m_bAppPaused) {
        return;
    }
    m_state.m_bAppPaused = true;
    if (m_state.m_uiCurState == VIEW_STATE_LOADING) {
        return;
    }
    timeval now;
    gettimeofday(&now, nullptr);
    const long itv = MillisecondsSince(m_tvLastPause, now);
    LOGBASE(LOG_LEV_TRACE, FUNC, "************* itv=%ld *************\n", itv);
    if (itv > PAUSE_INTERVAL_MS) {
        m_nPlayStatusBeforePause = playStatus.discState;
    }
    m_tvLastPause = now;
    m_bAppHidden = false;
    if (playStatus.discState == DISC_STATE_PLAYING) {
        m_control.Send(&DiscViewController::PlayPause);
        LOGBASE(LOG_LEV_TRACE, FUNC, "[OnAppsMessage] -------------------- pause() -------------\n");
    }
    m_overlay.SetVisibleOsd(false);
    m_video.OperateCapture(false);
}

void LauncherStatus::OnHideOnly(const T_PLAY_STATUS& playStatus) {
    if (m_bAppHidden) {
        return;
    }
    m_bAppHidden = true;
    if (m_state.m_bAppPaused) {
        m_state.m_bAppPaused = false;
        if (m_nPlayStatusBeforePause == DISC_STATE_PLAYING && playStatus.discState != DISC_STATE_PLAYING) {
            m_control.Send(&DiscViewController::Play);
        }
    }
    m_overlay.SetVisibleOsd(false);
}

void LauncherStatus::OnQuit(const T_PLAY_STATUS&) {
    m_discDb.ThreadControl::Close();
    m_request.Release();
    m_video.OperateCapture(false);
    kill(getpid(), SIGTERM);
}
