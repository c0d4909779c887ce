#pragma once

#include "DiscViewIds.h"

class CDiscData;
class OverlayWindow;
class VideoWindow;
struct PageState;
struct Widgets;

namespace Oro::ZMCAR {
class ViewUI;
}

/** The only way to films and photos: while the car moves it shows the parking page instead. */
class ParkingGate {
public:
    ParkingGate(Oro::ZMCAR::ViewUI& view, CDiscData& data, const Widgets& widgets, PageState& state,
                OverlayWindow& overlay, VideoWindow& video)
        : m_view(view), m_data(data), m_widgets(widgets), m_state(state), m_overlay(overlay), m_video(video) {
    }

    bool IsVideoAllowed() const { return m_bVideoAllowed; }
    /** To the video page, or to the parking page; starts the capture unless it is on. */
    void GotoVideoPage(PlayType nType);
    void OnParkingChanged(bool bParked);
    /** Shows whichever of the two pages belongs to the car's state. */
    void ApplyParking();
    void OnGotoParkingView();
    void OnHideParkingView();
    /** The wording for photos or for video. */
    void FillParkingPage();

private:
    Oro::ZMCAR::ViewUI& m_view;
    CDiscData& m_data;
    const Widgets& m_widgets;
    PageState& m_state;
    OverlayWindow& m_overlay;
    VideoWindow& m_video;
    bool m_bVideoAllowed = true; ///< false while the car moves
};
