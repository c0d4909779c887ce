#pragma once

class ControlLink;
class ListChange;
class SourcePopup;
struct TouchPoints;

/** Touches on the music play page: its controls, held buttons, swipes. */
class PlayPageTouch {
public:
    PlayPageTouch(const ControlLink& control, const TouchPoints& points, ListChange& change,
                  SourcePopup& sources)
        : m_control(control), m_points(points), m_change(change), m_sources(sources) {}

    /** A control in any button state. */
    void OnClickAudioPlay(long nCtrlId, int nBtState);

private:
    struct ControlRow;

    void OnReleased(long nCtrlId);
    void OnClickAudioPlayWnd(long nCtrlId);
    void OnSwipe();

    const ControlLink& m_control;
    const TouchPoints& m_points;
    ListChange& m_change;
    SourcePopup& m_sources;
    int m_nLastBtState = 0; ///< of the last click
};
