#pragma once

class ControlLink;
class OverlayWindow;
class VideoWindow;
struct PageState;
struct Widgets;

namespace Oro::ZMCAR {
class ViewUI;
}

enum class Notice { Loading, NoDisc, Ejecting, RegionError };

/** The pages that say why nothing plays, each with the state that it stands for and the timer that ends it. */
class Notices {
public:
    Notices(Oro::ZMCAR::ViewUI& view, const Widgets& widgets, const ControlLink& control, PageState& state,
            OverlayWindow& overlay, VideoWindow& video)
        : m_view(view), m_widgets(widgets), m_control(control), m_state(state), m_overlay(overlay),
          m_video(video) {}

    /** Shows a notice on WND_DISC_LOADING, enters its state and starts its timer. */
    void ShowMessage(Notice notice);
    void RegionError();
    /** The disc cannot be read: it is ejected 3 s later. */
    void DiscError();
    /** The disc is leaving. */
    void DiscExit();
    /** The text of WND_DISC_ERROR. */
    void FillErrorPage();

    void OnTimerNoDisc();
    void OnTimerWaitDeviceState();
    void OnTimerLoading();

private:
    void ShowErrorPage();

    Oro::ZMCAR::ViewUI& m_view;
    const Widgets& m_widgets;
    const ControlLink& m_control;
    PageState& m_state;
    OverlayWindow& m_overlay;
    VideoWindow& m_video;
};
