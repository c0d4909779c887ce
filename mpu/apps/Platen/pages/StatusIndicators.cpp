#include "pages/StatusIndicators.h"

#include "DiscViewController.h"
#include "Log.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "parts/StatusBar.h"
#include "parts/Widgets.h"

bool StatusIndicators::CanShow() const {
    return m_widgets.m_pUIAnalysis && m_control.Controller();
}

void StatusIndicators::UpdateDateTime(bool bRedraw) {
    if (CanShow()) {
        T_ZMDatetime time = {};
        m_control.Controller()->GetCurrentDateTime(time);
        StatusBar(*m_widgets.m_pUIAnalysis, m_state.m_nCurWndId, bRedraw).ShowClock(time);
    }
}

void StatusIndicators::UpdateBTStatus(bool bRedraw) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::UpdateBTStatus]\n");
    if (CanShow()) {
        const int nStatus = ReadDeviceStatus(*m_control.Controller(), DEV_STATUS_BT, 0);
        StatusBar(*m_widgets.m_pUIAnalysis, m_state.m_nCurWndId, bRedraw).ShowBluetooth(nStatus);
    }
}

void StatusIndicators::UpdateMuteStatus(bool bRedraw) {
    if (CanShow()) {
        const int nStatus = ReadDeviceStatus(*m_control.Controller(), DEV_STATUS_MUTE, 0);
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::UpdateMuteStatus]-----status:%d\n", nStatus);
        StatusBar(*m_widgets.m_pUIAnalysis, m_state.m_nCurWndId, bRedraw).ShowMute(nStatus);
    }
}

void StatusIndicators::UpdateCarTemp(bool bRedraw) {
    if (CanShow()) {
        const int nStatus = ReadDeviceStatus(*m_control.Controller(), DEV_STATUS_CAR_TEMP, CAR_TEMP_UNKNOWN);
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::UpdateCarTemp]-----status:%d\n", nStatus);
        StatusBar(*m_widgets.m_pUIAnalysis, m_state.m_nCurWndId, bRedraw).ShowTemperature(nStatus);
    }
}

void StatusIndicators::FillPage() {
    UpdateMuteStatus(false);
    UpdateBTStatus(false);
    UpdateCarTemp(false);
    UpdateDateTime(false);
}
