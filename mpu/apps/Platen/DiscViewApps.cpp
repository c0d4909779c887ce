#include "DiscView.h"

#include "DiscOsdView.h"
#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/SourceGroup.h"

#include <csignal>
#include <unistd.h>

namespace {

constexpr int APPS_MESSAGE = 3; ///< class of the launcher's, the timers' and the vehicle's messages

enum : int { APPSMSG_APPSTATUS, APPSMSG_APPDATA, APPSMSG_TIMER, APPSMSG_TIME, APPSMSG_DEVSTATUS };

/** Within this time a further pause by the launcher does not count as the user's wish to stop playing. */
constexpr long PAUSE_INTERVAL_MS = 1200;

/** The function that log lines about the launcher's statuses name. */
constexpr const char* APP_STATUS_FUNC = "OnAppsMsgAppStatus";

constexpr int LAST_IDLE_STATE = 1; ///< disc states above it have something to show

long MillisecondsSince(const timeval& last, const timeval& now) {
    return now.tv_usec / 1000 - 1000 * last.tv_sec + 1000 * now.tv_sec - last.tv_usec / 1000;
}

} // namespace

void DiscView::OnAppsMessage(APP_MSG_S* msg) {
    if (!msg || msg->word[0] != APPS_MESSAGE) {
        return;
    }
    switch (msg->word[1]) {
    case APPSMSG_APPSTATUS:
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnAppsMessage] APPSMSG_APPSTATUS Param1=%d\n", msg->word[2]);
        OnAppsMsgAppStatus(msg->word[2]);
        break;
    case APPSMSG_APPDATA:
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnAppsMessage] APPSMSG_APPDATA\n");
        if (m_pController) {
            std::string data = m_pController->GetAppdata(msg->word[2]);
            if (!data.empty()) {
                OnAppsMsgAppData(data);
            }
        }
        break;
    case APPSMSG_TIMER:
        OnTimer(static_cast<unsigned int>(msg->word[2]));
        break;
    case APPSMSG_TIME:
        UpdateDateTime(true);
        if (m_pController) {
            m_pController->OnMessageUpdateTime();
        }
        break;
    case APPSMSG_DEVSTATUS:
        OnAppsMsgDevStatus(msg->word[2], msg->word[3]);
        break;
    }
}

struct DiscView::AppStatusRow {
    const char* log;
    void (DiscView::*handler)(const T_PLAY_STATUS&);
};

void DiscView::OnAppsMsgAppStatus(int status) {
    // In the launcher's numbering, from 0.
    static constexpr AppStatusRow ROWS[] = {
        {"[OnAppsMessage] =====================APPS_STATUS_RESUME========================\n",
         &DiscView::OnResume},
        {"[OnAppsMessage] =====================APPS_STATUS_PAUSE========================\n",
         &DiscView::OnPause},
        {"[OnAppsMessage] =====================APPS_STATUS_SHOWONLY========================\n",
         &DiscView::OnPause},
        {"[OnAppsMessage] =====================APPS_STATUS_HIDEONLY========================\n",
         &DiscView::OnHideOnly},
        {"[OnAppsMessage] =====================APPS_STATUS_QUIT========================\n",
         &DiscView::OnQuit},
    };
    if (!m_pController || !m_pWndMng || status < 0 || status >= static_cast<int>(std::size(ROWS))) {
        return;
    }
    const T_PLAY_STATUS playStatus = CDiscData::GetInstance()->GetCurPlayStatus();
    const AppStatusRow& row = ROWS[status];
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", row.log);
    (this->*row.handler)(playStatus);
}

void DiscView::OnResume(const T_PLAY_STATUS& playStatus) {
    if (m_bAppPaused) {
        m_bAppPaused = false;
        const int nBefore = m_nPlayStatusBeforePause;
        const bool bPlayed = nBefore == DISC_STATE_PLAYING || nBefore == DISC_STATE_FAST_FORWARD ||
                             nBefore == DISC_STATE_FAST_BACKWARD;
        if (bPlayed && playStatus.discState != DISC_STATE_PLAYING) {
            Send(&DiscViewController::PlayPause);
            LOGBASE(LOG_LEV_TRACE, APP_STATUS_FUNC,
                    "[OnAppsMessage] -------------------- Play() -------------\n");
        }
    }
    m_bAppHidden = false;
    ResumePage();
    if (!m_bSourceRequested && CDiscData::GetInstance()->GetDeviceStatus().bExisting) {
        RequestDiscSource(APP_STATUS_FUNC);
    }
    if (!m_bShown) {
        m_bShown = true;
        if (playStatus.discState > LAST_IDLE_STATE) {
            OnUserMsgDiscState();
        }
    }
    m_pController->PublishMediaInfo();
    m_pController->PublishPlayID3();
}

void DiscView::ResumePage() {
    switch (m_nCurPlayType) {
    case PLAY_TYPE_DVD:
    case PLAY_TYPE_VCD:
        RedrawOsd();
        if (m_uiCurState == VIEW_STATE_VIDEO_PLAY) {
            OperateCapture(true);
            ApplyParking();
        }
        break;
    case PLAY_TYPE_VIDEO:
    case PLAY_TYPE_PHOTO:
        if (IsVideoState()) {
            RedrawOsd();
            ApplyParking();
            OperateCapture(true);
            break;
        }
        [[fallthrough]];
    case PLAY_TYPE_CD:
    case PLAY_TYPE_MUSIC:
        if (m_bShown) {
            Sources().ShowPopup(false);
        }
        break;
    }
}

void DiscView::RedrawOsd() {
    DiscOsdView* osd = Osd();
    if (m_bShown && osd) {
        osd->DrawAllItem();
    }
}

void DiscView::RequestDiscSource(const char* logName) {
    LOGBASE(LOG_LEV_TRACE, logName, "************* RequestSource on *************\n");
    m_bSourceRequested = true;
    Send(&DiscViewController::RequestSource, 1, 0);
}

void DiscView::OnPause(const T_PLAY_STATUS& playStatus) {
    if (m_bAppPaused) {
        return;
    }
    m_bAppPaused = true;
    if (m_uiCurState == VIEW_STATE_LOADING) {
        return;
    }
    timeval now;
    gettimeofday(&now, nullptr);
    const long itv = MillisecondsSince(m_tvLastPause, now);
    LOGBASE(LOG_LEV_TRACE, APP_STATUS_FUNC, "************* itv=%ld *************\n", itv);
    if (itv > PAUSE_INTERVAL_MS) {
        m_nPlayStatusBeforePause = playStatus.discState;
    }
    m_tvLastPause = now;
    m_bAppHidden = false;
    if (playStatus.discState == DISC_STATE_PLAYING) {
        Send(&DiscViewController::PlayPause);
        LOGBASE(LOG_LEV_TRACE, APP_STATUS_FUNC,
                "[OnAppsMessage] -------------------- pause() -------------\n");
    }
    SetVisibleOsd(false);
    OperateCapture(false);
}

void DiscView::OnHideOnly(const T_PLAY_STATUS& playStatus) {
    if (m_bAppHidden) {
        return;
    }
    m_bAppHidden = true;
    if (m_bAppPaused) {
        m_bAppPaused = false;
        if (m_nPlayStatusBeforePause == DISC_STATE_PLAYING && playStatus.discState != DISC_STATE_PLAYING) {
            Send(&DiscViewController::Play);
        }
    }
    SetVisibleOsd(false);
}

void DiscView::OnQuit(const T_PLAY_STATUS&) {
    m_discDb.ThreadControl::Close();
    Send(&DiscViewController::RequestSource, 0, 0);
    m_bSourceRequested = false;
    OperateCapture(false);
    kill(getpid(), SIGTERM);
}
