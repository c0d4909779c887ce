#pragma once

#include <string>

class ControlLink;

namespace Oro::ZMCAR {
class ViewBase;
}

/** The child window into which the video service captures the decoder's picture. */
class VideoWindow {
public:
    /** `viewName` is the name of the capture's source, too. */
    VideoWindow(Oro::ZMCAR::ViewBase& view, const ControlLink& control, const std::string& viewName);

    /** The window as the framework names it when it has been posted. */
    const std::string& Name() const { return m_strVideoWin; }
    /** Places the window once it has been posted; shows it if SetVisibleVideo asked for that meanwhile. */
    void OnPosted();
    void ManipulateVideoWin(bool bShow, int x, int y, int w, int h);
    void SetVisibleVideo(bool bShow);
    bool IsVisible() const { return m_bVideoIsVisible; }
    /** Asks the video service to start or stop the capture. */
    void OperateCapture(bool bStart);

private:
    Oro::ZMCAR::ViewBase& m_view;
    const ControlLink& m_control;
    std::string m_strViewName;
    std::string m_strVideoWin;
    bool m_bVideoIsVisible = false;
};
