#include "video/VideoWindow.h"

#include "DiscViewController.h"
#include "DiscViewIds.h"
#include "Log.h"
#include "parts/ControlLink.h"
#include "zmcar/ViewBase.h"

namespace {

constexpr int VIDEO_WINDOW_ORDER = 2; ///< WND_VIDEO and the overlay are seen over it, whatever their order

}

VideoWindow::VideoWindow(Oro::ZMCAR::ViewBase& view, const ControlLink& control, const std::string& viewName)
    : m_view(view), m_control(control), m_strViewName(viewName), m_strVideoWin(viewName + "_video_win") {}

void VideoWindow::OnPosted() {
    m_view.SetZOrder(m_strVideoWin, VIDEO_WINDOW_ORDER);
    ManipulateVideoWin(true, 0, 0, SCREEN_WIDTH, SCREEN_HEIGHT);
    SetVisibleVideo(m_bVideoIsVisible);
}

void VideoWindow::ManipulateVideoWin(bool bShow, int x, int y, int w, int h) {
    screen_window_t window = nullptr;
    if (!bShow || !m_view.GetPostScreenWin(m_strVideoWin, window)) {
        return;
    }
    const int position[] = {x, y};
    const int size[] = {w, h};
    screen_set_window_property_iv(window, SCREEN_PROPERTY_POSITION, position);
    screen_set_window_property_iv(window, SCREEN_PROPERTY_SIZE, size);
}

void VideoWindow::SetVisibleVideo(bool bShow) {
    m_bVideoIsVisible = bShow;
    m_view.SetVisible(m_strVideoWin, bShow);
    m_view.FlushContext();
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "[DiscView::SetVisibleVideo] ===============m_bVideoIsVisible=%d===========\n",
            m_bVideoIsVisible);
}

void VideoWindow::OperateCapture(bool bStart) {
    m_control.Send(&DiscViewController::OperateVideoCapture, bStart, m_view.GetWinGroupName(), m_strVideoWin,
                   m_strViewName);
}
