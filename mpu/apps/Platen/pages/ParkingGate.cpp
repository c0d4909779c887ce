#include "pages/ParkingGate.h"

#include "DiscViewItems.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "pages/PageState.h"
#include "parts/Widgets.h"
#include "video/OverlayWindow.h"
#include "video/VideoWindow.h"
#include "zmcar/ViewUI.h"
#include "zmui/CUIAnalysis.h"

void ParkingGate::GotoVideoPage(PlayType nType) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[GotoVideoPage]  nType=%d\n", nType);
    if (!m_state.m_bAppPaused && !m_data.GetVideoStatus()) {
        m_video.OperateCapture(true);
    }
    if (nType == PLAY_TYPE_PHOTO) {
        m_state.m_uiCurState = VIEW_STATE_PHOTO_PLAY;
    } else if (IsVideoType(nType)) {
        m_state.m_uiCurState = VIEW_STATE_VIDEO_PLAY;
    }
    if (m_bVideoAllowed) {
        m_video.SetVisibleVideo(true);
        m_view.ShowWnd(WND_VIDEO, true, 0);
    } else {
        OnGotoParkingView();
    }
}

void ParkingGate::OnParkingChanged(bool bParked) {
    if (bParked == m_bVideoAllowed) {
        return;
    }
    m_bVideoAllowed = bParked;
    if (m_state.IsVideoState()) {
        ApplyParking();
    }
}

void ParkingGate::ApplyParking() {
    if (m_bVideoAllowed) {
        OnHideParkingView();
    } else {
        OnGotoParkingView();
    }
}

void ParkingGate::OnGotoParkingView() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnGotoParkingView]\n");
    if (m_overlay.IsShown()) {
        m_overlay.SetVisibleOsd(false);
    }
    m_video.SetVisibleVideo(false);
    m_view.ShowWnd(WND_PARKING, true, 0);
}

void ParkingGate::OnHideParkingView() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnHideParkingView]\n");
    if (m_overlay.IsShown()) {
        m_overlay.SetVisibleOsd(false);
    }
    m_video.SetVisibleVideo(true);
    m_view.ShowWnd(WND_VIDEO, true, 0);
}

void ParkingGate::FillParkingPage() {
    const PlayType nType = m_state.m_nCurPlayType;
    const bool bPhoto = nType == PLAY_TYPE_PHOTO;
    if (bPhoto || nType == PLAY_TYPE_VCD || nType == PLAY_TYPE_DVD) {
        m_widgets.m_pUIAnalysis->ShowItem(WND_PARKING, ITEM_BACK, bPhoto);
        m_widgets.m_pUIAnalysis->ShowItem(WND_PARKING, ITEM_HOME, !bPhoto);
    }
}
