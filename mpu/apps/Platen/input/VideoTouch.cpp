#include "input/VideoTouch.h"

#include "DiscViewController.h"
#include "Log.h"
#include "input/TouchPoints.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "video/OverlayWindow.h"

namespace {

constexpr int CORNER_WIDTH = 200; ///< in this corner a touch on a disc menu toggles the overlay
constexpr int CORNER_HEIGHT = 80;
constexpr int MENU_WIDTH = 720; ///< of a disc menu; its height is not scaled

} // namespace

void VideoTouch::OnClickVideoWnd(long) {
    m_control.ToBeep();
    if (m_state.m_nCurPlayType == PLAY_TYPE_DVD && m_data.GetDVDRootMenuFlag()) {
        OnClickDiscMenu();
    } else if (m_overlay.IsShown()) {
        m_overlay.HideOsdAndPad();
    } else {
        m_overlay.SetVisibleOsd(true);
    }
}

void VideoTouch::OnClickDiscMenu() {
    const auto [x, y] = m_points.m_ptLButtonUp;
    LOGBASE(LOG_LEV_TRACE, "OnClickVideoWnd", "[DiscView::OnLButtonUp]--X=%ld,Y=%ld\n", static_cast<long>(x),
            static_cast<long>(y));
    const bool bCorner = x < CORNER_WIDTH && y < CORNER_HEIGHT;
    if (bCorner && !m_overlay.IsShown()) {
        m_overlay.SetVisibleOsd(true);
    } else {
        m_overlay.HideOsdAndPad();
    }
    m_control.Send(&DiscViewController::SendTsPos, x * MENU_WIDTH / SCREEN_WIDTH, y);
}

void VideoTouch::OnClickPictureWnd(long) {
    m_overlay.SetVisibleOsd(!m_overlay.IsShown());
}
