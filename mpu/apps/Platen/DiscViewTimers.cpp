#include "DiscView.h"

#include "DiscOsdView.h"
#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/DiscTimers.h"
#include "parts/FindRow.h"
#include "parts/SourceGroup.h"

void DiscView::KillTimer(unsigned int id) {
    KillDiscTimer(m_pController, id);
}

void DiscView::SetDisplayOSDTimer() {
    StartDiscTimer(m_pController, ENUM_TIMER_DISPLAY_OSD);
}

void DiscView::SetDisplayPlayViewTimer() {
    StartDiscTimer(m_pController, ENUM_TIMER_DISPLAY_PLAYVIEW);
}

void DiscView::SetDisplayNoDiscTimer() {
    StartDiscTimer(m_pController, ENUM_TIMER_NO_DISC);
}

void DiscView::SetWaitDeviceStateTimer() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "**************[DiscView::SetWaitDeviceStateTimer]*******************\n");
    StartDiscTimer(m_pController, ENUM_TIMER_WAIT_DEVICESTATE);
}

void DiscView::SetLoadingTimer() {
    StartDiscTimer(m_pController, ENUM_TIMER_LOADING);
}

void DiscView::SetDisplaySrcTimer() {
    StartDiscTimer(m_pController, ENUM_TIMER_DISPLAY_SRC);
}

/** What the expiry of a timer does. All handlers but those of query wait and play view end their timer. */
struct DiscView::TimerRow {
    unsigned int id;
    const char* log;
    void (DiscView::*handler)();
};

void DiscView::OnTimer(unsigned int id) {
    static constexpr TimerRow ROWS[] = {
        {ENUM_TIMER_QUERY_WAIT, nullptr, &DiscView::FileQueryWait},
        {ENUM_TIMER_DISPLAY_STATE, nullptr, &DiscView::DisplayStateEnd},
        {ENUM_TIMER_DISPLAY_OSD, nullptr, &DiscView::DisplayOSDEnd},
        {ENUM_TIMER_DISPLAY_PLAYVIEW, nullptr, &DiscView::OnTimerPlayView},
        {ENUM_TIMER_NO_DISC, nullptr, &DiscView::OnTimerNoDisc},
        {ENUM_TIMER_WAIT_DEVICESTATE, "[DiscView::OnTimer] ENUM_TIMER_WAIT_DEVICESTATE\n",
         &DiscView::OnTimerWaitDeviceState},
        {ENUM_TIMER_LOADING, "[DiscView::OnTimer] ENUM_TIMER_LOADING\n", &DiscView::OnTimerLoading},
        {ENUM_TIMER_DISPLAY_SRC, nullptr, &DiscView::OnTimerSource},
    };
    if (const TimerRow* row = FindRow(ROWS, &TimerRow::id, id)) {
        if (row->log) {
            LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", row->log);
        }
        (this->*row->handler)();
    }
}

void DiscView::DisplayStateEnd() {
    KillTimer(ENUM_TIMER_DISPLAY_STATE);
    if (DiscOsdView* osd = Osd()) {
        osd->HideStateView();
    }
}

void DiscView::DisplayOSDEnd() {
    KillTimer(ENUM_TIMER_DISPLAY_OSD);
    HideOsdPad();
    SetVisibleOsd(false);
}

void DiscView::OnTimerPlayView() {
    if (!IsListState(m_uiCurState) || m_bNoFileOfType || m_nCurPlayType != m_nCurType) {
        return;
    }
    RememberTop(m_nCurWndId);
    if (IsAudioType(m_nCurPlayType)) {
        OnGotoAudioPlayPage();
        return;
    }
    if (IsRunning(CDiscData::GetInstance()->GetCurPlayStatus().discState) && m_bVideoAllowed) {
        GotoVideoPage(m_nCurPlayType);
    }
}

void DiscView::OnTimerNoDisc() {
    KillTimer(ENUM_TIMER_NO_DISC);
    if (!m_pController) {
        return;
    }
    switch (m_uiCurState) {
    case VIEW_STATE_NO_DISC:
    case VIEW_STATE_15:
        m_pController->QueryCloseApp(MAIN_VIEW_NAME, "null");
        break;
    case VIEW_STATE_DISC_ERROR:
    case VIEW_STATE_16:
    case VIEW_STATE_REGION_ERROR:
        m_pController->Eject();
        break;
    }
}

void DiscView::OnTimerWaitDeviceState() {
    KillTimer(ENUM_TIMER_WAIT_DEVICESTATE);
    if (m_uiCurState == VIEW_STATE_LOADING) {
        ShowMessage(Message::NoDisc);
    }
}

void DiscView::OnTimerLoading() {
    KillTimer(ENUM_TIMER_LOADING);
    if (m_uiCurState == VIEW_STATE_LOADING) {
        ShowErrorPage();
    }
}

void DiscView::OnTimerSource() {
    KillTimer(ENUM_TIMER_DISPLAY_SRC);
    Sources().ShowPopup(false);
    if (DiscOsdView* osd = Osd()) {
        osd->DrawAllItem();
    }
}
