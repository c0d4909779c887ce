#pragma once

class ControlLink;
class ParkingGate;
class ReturnToList;
class SourcePopup;
struct PageState;

/** Touches on the pages that cover what plays or say why nothing does: notices, error, parking. */
class NoticeTouch {
public:
    NoticeTouch(const ControlLink& control, const PageState& state, ParkingGate& films,
                ReturnToList& returnToList, SourcePopup& sources)
        : m_control(control), m_state(state), m_films(films), m_returnToList(returnToList),
          m_sources(sources) {}

    void OnClickLoadingWnd(long nCtrlId);
    void OnClickErrorWnd(long nCtrlId) { OnClickLoadingWnd(nCtrlId); }
    void OnClickParkingWnd(long ctrlId);

private:
    void LeaveParkingPage();

    const ControlLink& m_control;
    const PageState& m_state;
    ParkingGate& m_films;
    ReturnToList& m_returnToList;
    SourcePopup& m_sources;
};
