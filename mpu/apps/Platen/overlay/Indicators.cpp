#include "overlay/Indicators.h"

#include "DiscViewController.h"
#include "overlay/OverlayState.h"
#include "parts/StatusBar.h"

namespace {

/** What an indicator shows when its value cannot be read: nothing is guarded here,
 * unlike in the main view. */
constexpr int UNREAD = 0;
constexpr int BT_HIGHEST = 2;

} // namespace

void Indicators::UpdateDateTime(bool redraw) {
    T_ZMDatetime now{};
    if (m_state.m_pUIAnalysis && m_state.m_pController) {
        m_state.m_pController->GetCurrentDateTime(now);
        StatusBar(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, redraw).ShowClock(now);
    }
}

void Indicators::UpdateBTStatus(bool redraw) {
    if (!m_state.m_pUIAnalysis || !m_state.m_pController) {
        return;
    }
    const int state = ReadDeviceStatus(*m_state.m_pController, DEV_STATUS_BT, UNREAD);
    // The overlay has pictures for three states only; any other keeps the last one up.
    if (state >= 0 && state <= BT_HIGHEST) {
        StatusBar(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, redraw).ShowBluetooth(state);
    }
}

void Indicators::UpdateMuteStatus(bool redraw) {
    if (m_state.m_pUIAnalysis && m_state.m_pController) {
        const int status = ReadDeviceStatus(*m_state.m_pController, DEV_STATUS_MUTE, UNREAD);
        StatusBar(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, redraw).ShowMute(status);
    }
}

void Indicators::UpdateCarTemp(bool redraw) {
    if (m_state.m_pUIAnalysis && m_state.m_pController) {
        const int tenths = ReadDeviceStatus(*m_state.m_pController, DEV_STATUS_CAR_TEMP, UNREAD);
        StatusBar(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, redraw).ShowTemperature(tenths);
    }
}
