#include "launcher/VehicleStatus.h"

#include "DiscOsdView.h"
#include "FindRow.h"
#include "Log.h"
#include "pages/ParkingGate.h"
#include "pages/StatusIndicators.h"
#include "parts/StatusBar.h"
#include "video/OverlayWindow.h"

namespace {

/** A value that both views show: what is logged and which indicator is refreshed. */
struct IndicatorRow {
    int device;
    const char* log;
    void (StatusIndicators::*refresh)(bool);
    void (DiscOsdView::*refreshOsd)(bool);
};

constexpr IndicatorRow INDICATORS[] = {
    {DEV_STATUS_MUTE, "[OnAppsMessage] mute update:%d\n", &StatusIndicators::UpdateMuteStatus,
     &DiscOsdView::UpdateMuteStatus},
    {DEV_STATUS_CAR_TEMP, "[OnAppsMessage] car temp update:%d\n", &StatusIndicators::UpdateCarTemp,
     &DiscOsdView::UpdateCarTemp},
    {DEV_STATUS_BT, "[OnAppsMessage] BT update:%d\n", &StatusIndicators::UpdateBTStatus,
     &DiscOsdView::UpdateBTStatus},
};

} // namespace

void VehicleStatus::OnAppsMsgDevStatus(int devId, int value) {
    if (devId == DEV_STATUS_PARKING) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnAppsMessage] parking update:%d\n", value);
        m_films.OnParkingChanged(value != 0);
        return;
    }
    if (const IndicatorRow* row = FindRow(INDICATORS, &IndicatorRow::device, devId)) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, row->log, value);
        (m_indicators.*row->refresh)(true);
        if (DiscOsdView* osd = m_overlay.Osd()) {
            (osd->*row->refreshOsd)(true);
        }
    }
}
