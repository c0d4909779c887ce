#pragma once

class CDiscData;
class ControlLink;
class OverlayWindow;
struct PageState;
struct TouchPoints;

/** Touches over a film. OnClickPictureWnd belongs to the interface, but photos have the video page, too. */
class VideoTouch {
public:
    VideoTouch(CDiscData& data, const ControlLink& control, const PageState& state, const TouchPoints& points,
               OverlayWindow& overlay)
        : m_data(data), m_control(control), m_state(state), m_points(points), m_overlay(overlay) {}

    void OnClickVideoWnd(long nCtrlId);
    void OnClickPictureWnd(long nCtrlId);

private:
    void OnClickDiscMenu();

    CDiscData& m_data;
    const ControlLink& m_control;
    const PageState& m_state;
    const TouchPoints& m_points;
    OverlayWindow& m_overlay;
};
