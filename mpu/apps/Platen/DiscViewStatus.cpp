#include "DiscView.h"

#include "DiscOsdView.h"
#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "parts/FindRow.h"
#include "parts/StatusBar.h"

void DiscView::UpdateDateTime(bool bRedraw) {
    if (m_pUIAnalysis && m_pController) {
        T_ZMDatetime time = {};
        m_pController->GetCurrentDateTime(time);
        StatusBar(*m_pUIAnalysis, m_nCurWndId, bRedraw).ShowClock(time);
    }
}

void DiscView::UpdateBTStatus(bool bRedraw) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::UpdateBTStatus]\n");
    if (m_pUIAnalysis && m_pController) {
        const int nStatus = ReadDeviceStatus(*m_pController, DEV_STATUS_BT, 0);
        StatusBar(*m_pUIAnalysis, m_nCurWndId, bRedraw).ShowBluetooth(nStatus);
    }
}

void DiscView::UpdateMuteStatus(bool bRedraw) {
    if (m_pUIAnalysis && m_pController) {
        const int nStatus = ReadDeviceStatus(*m_pController, DEV_STATUS_MUTE, 0);
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::UpdateMuteStatus]-----status:%d\n", nStatus);
        StatusBar(*m_pUIAnalysis, m_nCurWndId, bRedraw).ShowMute(nStatus);
    }
}

void DiscView::UpdateCarTemp(bool bRedraw) {
    if (m_pUIAnalysis && m_pController) {
        const int nStatus = ReadDeviceStatus(*m_pController, DEV_STATUS_CAR_TEMP, CAR_TEMP_UNKNOWN);
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::UpdateCarTemp]-----status:%d\n", nStatus);
        StatusBar(*m_pUIAnalysis, m_nCurWndId, bRedraw).ShowTemperature(nStatus);
    }
}

/** A vehicle value that both views show: what is logged and which indicator is refreshed. */
struct DiscView::IndicatorRow {
    int device;
    const char* log;
    void (DiscView::*refresh)(bool);
    void (DiscOsdView::*refreshOsd)(bool);
};

void DiscView::OnAppsMsgDevStatus(int devId, int value) {
    static constexpr IndicatorRow ROWS[] = {
        {DEV_STATUS_MUTE, "[OnAppsMessage] mute update:%d\n", &DiscView::UpdateMuteStatus,
         &DiscOsdView::UpdateMuteStatus},
        {DEV_STATUS_CAR_TEMP, "[OnAppsMessage] car temp update:%d\n", &DiscView::UpdateCarTemp,
         &DiscOsdView::UpdateCarTemp},
        {DEV_STATUS_BT, "[OnAppsMessage] BT update:%d\n", &DiscView::UpdateBTStatus,
         &DiscOsdView::UpdateBTStatus},
    };
    if (devId == DEV_STATUS_PARKING) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnAppsMessage] parking update:%d\n", value);
        OnParkingChanged(value != 0);
        return;
    }
    if (const IndicatorRow* row = FindRow(ROWS, &IndicatorRow::device, devId)) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, row->log, value);
        (this->*row->refresh)(true);
        if (DiscOsdView* osd = Osd()) {
            (osd->*row->refreshOsd)(true);
        }
    }
}

void DiscView::OnParkingChanged(bool bParked) {
    if (bParked == m_bVideoAllowed) {
        return;
    }
    m_bVideoAllowed = bParked;
    if (IsVideoState()) {
        ApplyParking();
    }
}

void DiscView::ApplyParking() {
    if (m_bVideoAllowed) {
        OnHideParkingView();
    } else {
        OnGotoParkingView();
    }
}

void DiscView::OnGotoParkingView() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnGotoParkingView]\n");
    if (m_bVideoOsd) {
        SetVisibleOsd(false);
    }
    SetVisibleVideo(false);
    ShowWnd(WND_PARKING, true, 0);
}

void DiscView::OnHideParkingView() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnHideParkingView]\n");
    if (m_bVideoOsd) {
        SetVisibleOsd(false);
    }
    SetVisibleVideo(true);
    ShowWnd(WND_VIDEO, true, 0);
}

void DiscView::OnClickParkingWnd(long ctrlId) {
    switch (ctrlId) {
    case PARK_CTRL_HOME:
    case PARK_CTRL_BACK:
        ToBeep();
        LeaveParkingPage();
        break;
    case PARK_CTRL_CONTINUE:
        ToBeep();
        OnHideParkingView();
        break;
    default:
        OnClickSrcGroup(ctrlId);
    }
}

void DiscView::LeaveParkingPage() {
    if (m_nCurPlayType != PLAY_TYPE_PHOTO) {
        QueryHome();
        return;
    }
    SetVisibleOsd(false);
    SetVisibleVideo(false);
    Send(&DiscViewController::GotoSubList, PLAY_TYPE_PHOTO, 1);
    OnHandleUIReturnList();
    SetDisplayPlayViewTimer();
}
