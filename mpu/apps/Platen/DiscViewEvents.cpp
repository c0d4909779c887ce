#include "DiscView.h"
#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "DiscViewParts.h"
#include "FindRow.h"
#include "Log.h"
#include "parts/DiscTimers.h"
#include "zmui/CUI_BtList.h"

/* Who takes what the framework tells: a row each. */

namespace {

constexpr int APPS_MESSAGE = 3; ///< class of the launcher's, the timers' and the vehicle's messages

enum : int { APPSMSG_APPSTATUS, APPSMSG_APPDATA, APPSMSG_TIMER, APPSMSG_TIME, APPSMSG_DEVSTATUS };

constexpr int NOTIFY_SCROLL = 3;
enum : int { SCROLL_START = 3, SCROLL_END = 5 };

/** Something that happens, what is logged of it (null: nothing), and who takes it. */
struct EventRow {
    unsigned int code;
    const char* log;
    void (*take)(DiscViewParts& parts);
};

/** A page, whether a touch on it restarts the timer back to the play page, and who takes the touch. */
struct PageRow {
    long page;
    bool restartsTimer;
    void (*take)(DiscViewParts& parts, long ctrlId);
};

} // namespace

int DiscView::OnUserMessage(APP_MSG_S* msg) {
    using Parts = DiscViewParts&;
    static constexpr EventRow ROWS[] = {
        {DISC_VMSG_PLAYSTATE, nullptr, [](Parts parts) { parts.playPage.OnUserMsgPlayState(); }},
        {DISC_VMSG_ROOTMENU, nullptr, [](Parts parts) { parts.playReports.OnUserMsgRootMenu(); }},
        {DISC_VMSG_UPDATEDB, "[DiscView::OnUserMessage]-------DISC_VMSG_UPDATEDB\n",
         [](Parts parts) { parts.listChange.OnUserMsgUpdateDb(); }},
        {DISC_VMSG_CLIPSTYPE, "[DiscView::OnUserMessage]-------DISC_VMSG_CLIPSTYPE\n",
         [](Parts parts) { parts.typeReports.OnUserMsgClipsType(); }},
        {DISC_VMSG_MIXEDTYPE, "[DiscView::OnUserMessage]-------DISC_VMSG_MIXEDTYPE\n",
         [](Parts parts) { parts.typeReports.OnUserMsgMixedType(); }},
        {DISC_VMSG_DEVICE, "[DiscView::OnUserMessage]-------DISC_VMSG_DEVICE\n",
         [](Parts parts) { parts.sourceRequest.OnUserMsgDeviceState(); }},
        {DISC_VMSG_CONNECTED, "[DiscView::OnUserMessage]-------DISC_VMSG_CONNECTED\n", [](Parts) {}},
        {DISC_VMSG_TRACKINFO, nullptr, [](Parts parts) { parts.trackReports.OnUserMsgTrackInfo(); }},
        {DISC_VMSG_PLAYTIME, nullptr, [](Parts parts) { parts.playPage.OnUserMsgPlayTime(); }},
        {DISC_VMSG_ID3, nullptr, [](Parts parts) { parts.playPage.OnUserMsgID3(); }},
        {DISC_VMSG_VIDEOSTATUS, nullptr, [](Parts parts) { parts.playReports.OnCaptureStateChanged(); }},
        {DISC_VMSG_OSDRETURN, nullptr, [](Parts parts) { parts.returnToList.OnUserMsgOsdReturn(); }},
        {DISC_VMSG_DISCSTATE, nullptr, [](Parts parts) { parts.playReports.OnUserMsgDiscState(); }},
        {DISC_VMSG_MIXEDSWITCHING, "[DiscView::OnUserMessage]-------DISC_VMSG_MIXEDSWITCHING\n",
         [](Parts) {}},
        {DISC_VMSG_ERRORSTATUS, nullptr, [](Parts parts) { parts.errorReports.OnUserMsgErrorStatus(); }},
        {DISC_VMSG_VIDEOMODE, nullptr, [](Parts parts) { parts.playReports.OnUserMsgVideoMode(); }},
    };
    const auto* row = msg ? FindRow(ROWS, &EventRow::code, static_cast<unsigned int>(msg->word[0])) : nullptr;
    if (row) {
        if (row->log) {
            LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", row->log);
        }
        row->take(*m_pParts);
    }
    return 0;
}

void DiscView::OnTimer(unsigned int id) {
    using Parts = DiscViewParts&;
    // All rows but those of query wait and play view kill their timer.
    static constexpr EventRow ROWS[] = {
        {ENUM_TIMER_QUERY_WAIT, nullptr, [](Parts parts) { parts.listQuery.FileQueryWait(); }},
        {ENUM_TIMER_DISPLAY_STATE, nullptr, [](Parts parts) { parts.overlay.DisplayStateEnd(); }},
        {ENUM_TIMER_DISPLAY_OSD, nullptr, [](Parts parts) { parts.overlay.DisplayOSDEnd(); }},
        {ENUM_TIMER_DISPLAY_PLAYVIEW, nullptr, [](Parts parts) { parts.backToPlaying.OnTimerPlayView(); }},
        {ENUM_TIMER_NO_DISC, nullptr, [](Parts parts) { parts.notices.OnTimerNoDisc(); }},
        {ENUM_TIMER_WAIT_DEVICESTATE, "[DiscView::OnTimer] ENUM_TIMER_WAIT_DEVICESTATE\n",
         [](Parts parts) { parts.notices.OnTimerWaitDeviceState(); }},
        {ENUM_TIMER_LOADING, "[DiscView::OnTimer] ENUM_TIMER_LOADING\n",
         [](Parts parts) { parts.notices.OnTimerLoading(); }},
        {ENUM_TIMER_DISPLAY_SRC, nullptr,
         [](Parts parts) {
             parts.sources.OnTimerSource();
             parts.overlay.DrawAllItem();
         }},
    };
    if (const auto* row = FindRow(ROWS, &EventRow::code, id)) {
        if (row->log) {
            LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", row->log);
        }
        row->take(*m_pParts);
    }
}

void DiscView::OnAppsMessage(APP_MSG_S* msg) {
    if (!msg || msg->word[0] != APPS_MESSAGE) {
        return;
    }
    switch (msg->word[1]) {
    case APPSMSG_APPSTATUS:
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnAppsMessage] APPSMSG_APPSTATUS Param1=%d\n", msg->word[2]);
        m_pParts->launcher.OnAppsMsgAppStatus(msg->word[2]);
        break;
    case APPSMSG_APPDATA:
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnAppsMessage] APPSMSG_APPDATA\n");
        if (DiscViewController* controller = m_pParts->control.Controller()) {
            std::string data = controller->GetAppdata(msg->word[2]);
            m_pParts->search.OnAppsMsgAppData(data);
        }
        break;
    case APPSMSG_TIMER:
        OnTimer(static_cast<unsigned int>(msg->word[2]));
        break;
    case APPSMSG_TIME:
        m_pParts->indicators.UpdateDateTime(true);
        m_pParts->control.Send(&DiscViewController::OnMessageUpdateTime);
        break;
    case APPSMSG_DEVSTATUS:
        m_pParts->vehicle.OnAppsMsgDevStatus(msg->word[2], msg->word[3]);
        break;
    default:
        break;
    }
}

void DiscView::OnClick(CUIWndMng*, long nWndId, long nCtrlId, int nBtState) {
    using Parts = DiscViewParts&;
    static constexpr PageRow ROWS[] = {
        {WND_DISC_LOADING, false,
         [](Parts parts, long control) { parts.noticeTouch.OnClickLoadingWnd(control); }},
        {WND_PARKING, false, [](Parts parts, long control) { parts.noticeTouch.OnClickParkingWnd(control); }},
        {WND_VIDEO, false, [](Parts parts, long control) { parts.videoTouch.OnClickVideoWnd(control); }},
        {WND_GOTO, false, [](Parts parts, long control) { parts.gotoPage.OnClickGotoWnd(control); }},
        {WND_DISC_ERROR, false,
         [](Parts parts, long control) { parts.noticeTouch.OnClickErrorWnd(control); }},
        {WND_MEDIA_LIST, true,
         [](Parts parts, long control) { parts.listClicks.OnClickAudioListWnd(control); }},
        {WND_FOLDER_LIST, true,
         [](Parts parts, long control) { parts.listClicks.OnClickFolderListWnd(control); }},
        {WND_CD_LIST, true, [](Parts parts, long control) { parts.listClicks.OnClickCDListWnd(control); }},
    };
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnClick]--nWndId=%d,nCtrlId=%d,nBtState=%d\n",
            static_cast<int>(nWndId), static_cast<int>(nCtrlId), nBtState);
    if (nWndId == WND_AUDIO_PLAY) {
        m_pParts->playPageTouch.OnClickAudioPlay(nCtrlId, nBtState);
        return;
    }
    if (nBtState != BT_STATE_RELEASED) {
        return;
    }
    if (const auto* row = FindRow(ROWS, &PageRow::page, nWndId)) {
        if (row->restartsTimer) {
            m_pParts->control.SetDisplayPlayViewTimer();
        }
        row->take(*m_pParts, nCtrlId);
    }
}

bool DiscView::OnLButtonDown(int x, int y) {
    m_pParts->points.m_ptLButtonDown = {x, y};
    return true;
}

bool DiscView::OnLButtonUp(int x, int y) {
    m_pParts->points.m_ptLButtonUp = {x, y};
    return true;
}

bool DiscView::OnKey(int, int, int) {
    return true;
}

bool DiscView::OnKeyboard(int nKey) {
    return m_pParts->hardKeys.OnKeyboard(nKey);
}

void DiscView::OnListInfoMessage(CUIWndMng* wndMng, int nWndId, int kind, _tagList_Info* info) {
    if (!wndMng || !m_pParts->control.Controller() || !info) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnListInfoMessage] invalid parameters.\n");
        return;
    }
    if (nWndId != WND_MEDIA_LIST || kind != NOTIFY_SCROLL) {
        return;
    }
    if (info->nState == SCROLL_START) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "------OnListInfoMessage: SCROLL_START\n");
    } else if (info->nState == SCROLL_END) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "------OnListInfoMessage: SCROLL_END\n");
    }
}
