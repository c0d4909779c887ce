#include "video/OverlayWindow.h"

#include "DiscOsdView.h"
#include "Log.h"
#include "parts/ControlLink.h"
#include "parts/DiscTimers.h"
#include "zmcar/ViewBase.h"

DiscOsdView* OverlayWindow::Osd() {
    return dynamic_cast<DiscOsdView*>(m_view.GetViewUI(OSD_VIEW_NAME));
}

void OverlayWindow::SetVisibleOsd(bool bShow) {
    DiscOsdView* osd = Osd();
    if (bShow) {
        m_control.SetDisplayOSDTimer();
        m_bVideoOsd = true;
        m_view.SetVisible(OSD_VIEW_NAME, true);
        if (osd) {
            osd->ShowCurWnd(true);
        }
        m_view.FlushContext();
    } else {
        WithdrawOsd();
        if (osd) {
            osd->ShowCurWnd(false);
        }
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "[DiscView::SetVisibleOsd] ===============m_bVideoOsd=%d===========\n", m_bVideoOsd);
}

void OverlayWindow::WithdrawOsd() {
    m_bVideoOsd = false;
    m_view.SetVisible(OSD_VIEW_NAME, false);
    m_view.FlushContext();
}

void OverlayWindow::HideOsdPad() {
    if (DiscOsdView* osd = Osd()) {
        osd->HideGotoView();
    }
}

void OverlayWindow::HideOsdAndPad() {
    SetVisibleOsd(false);
    HideOsdPad();
}

void OverlayWindow::SetOsdKeyType(int keyType) {
    if (DiscOsdView* osd = Osd()) {
        osd->SetCurKeyType(keyType);
    }
}

void OverlayWindow::DrawAllItem() {
    if (DiscOsdView* osd = Osd()) {
        osd->DrawAllItem();
    }
}

void OverlayWindow::DisplayStateEnd() {
    m_control.KillTimer(ENUM_TIMER_DISPLAY_STATE);
    if (DiscOsdView* osd = Osd()) {
        osd->HideStateView();
    }
}

void OverlayWindow::DisplayOSDEnd() {
    m_control.KillTimer(ENUM_TIMER_DISPLAY_OSD);
    HideOsdPad();
    SetVisibleOsd(false);
}
