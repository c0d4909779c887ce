#include "DiscView.h"

#include "DiscOsdView.h"
#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"

namespace {

constexpr int VIDEO_WINDOW_ORDER = 2; ///< wherever it lies, WND_VIDEO and the overlay are seen over it

}

int DiscView::OnChildPost(const char* strChild) {
    const std::string child = strChild ? strChild : "";
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnChildPost] strChild=%s\n", child.c_str());
    if (child == m_strVideoWin) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
                "[DiscView::OnChildPost] ================== video view ======\n");
        SetZOrder(child, VIDEO_WINDOW_ORDER);
        ManipulateVideoWin(true, 0, 0, SCREEN_WIDTH, SCREEN_HEIGHT);
        SetVisibleVideo(m_bVideoIsVisible);
        return 1;
    }
    if (child == OSD_VIEW_NAME) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnChildPost] ================== osd view ======\n");
        SetVisibleOsd(false);
        return 1;
    }
    return 0;
}

void DiscView::ManipulateVideoWin(bool bShow, int x, int y, int w, int h) {
    screen_window_t window = nullptr;
    if (!bShow || !GetPostScreenWin(m_strVideoWin, window)) {
        return;
    }
    const int position[] = {x, y};
    const int size[] = {w, h};
    screen_set_window_property_iv(window, SCREEN_PROPERTY_POSITION, position);
    screen_set_window_property_iv(window, SCREEN_PROPERTY_SIZE, size);
}

void DiscView::SetVisibleVideo(bool bShow) {
    m_bVideoIsVisible = bShow;
    SetVisible(m_strVideoWin, bShow);
    FlushContext();
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "[DiscView::SetVisibleVideo] ===============m_bVideoIsVisible=%d===========\n",
            m_bVideoIsVisible);
}

void DiscView::SetVisibleOsd(bool bShow) {
    DiscOsdView* osd = Osd();
    if (bShow) {
        SetDisplayOSDTimer();
        m_bVideoOsd = true;
        SetVisible(OSD_VIEW_NAME, true);
        if (osd) {
            osd->ShowCurWnd(true);
        }
        FlushContext();
    } else {
        WithdrawOsd();
        if (osd) {
            osd->ShowCurWnd(false);
        }
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "[DiscView::SetVisibleOsd] ===============m_bVideoOsd=%d===========\n", m_bVideoOsd);
}

void DiscView::WithdrawOsd() {
    m_bVideoOsd = false;
    SetVisible(OSD_VIEW_NAME, false);
    FlushContext();
}

void DiscView::HideOsdPad() {
    if (DiscOsdView* osd = Osd()) {
        osd->HideGotoView();
    }
}

void DiscView::HideOsdAndPad() {
    SetVisibleOsd(false);
    HideOsdPad();
}

void DiscView::OperateCapture(bool bStart) {
    Send(&DiscViewController::OperateVideoCapture, bStart, GetWinGroupName(), m_strVideoWin, m_strViewName);
}

void DiscView::GotoVideoPage(int nType) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[GotoVideoPage]  nType=%d\n", nType);
    if (!m_bAppPaused && !CDiscData::GetInstance()->GetVideoStatus()) {
        OperateCapture(true);
    }
    if (nType == PLAY_TYPE_PHOTO) {
        m_uiCurState = VIEW_STATE_PHOTO_PLAY;
    } else if (IsVideoType(nType)) {
        m_uiCurState = VIEW_STATE_VIDEO_PLAY;
    }
    if (m_bVideoAllowed) {
        SetVisibleVideo(true);
        ShowWnd(WND_VIDEO, true, 0);
    } else {
        OnGotoParkingView();
    }
}
