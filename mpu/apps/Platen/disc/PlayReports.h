#pragma once

class CDiscData;
class ControlLink;
class Notices;
class OverlayWindow;
class ParkingGate;
class PlayPage;
class ReturnToList;
class VideoWindow;
class VoiceSearch;
struct PageState;
struct Widgets;

/** The player's state, its video mode and the disc's own menu, as they choose the page. */
class PlayReports {
public:
    PlayReports(CDiscData& data, const Widgets& widgets, const ControlLink& control, PageState& state,
                OverlayWindow& overlay, VideoWindow& video, Notices& notices, PlayPage& playPage,
                ParkingGate& films, ReturnToList& returnToList, VoiceSearch& search)
        : m_data(data), m_widgets(widgets), m_control(control), m_state(state), m_overlay(overlay),
          m_video(video), m_notices(notices), m_playPage(playPage), m_films(films),
          m_returnToList(returnToList), m_search(search) {}

    void OnUserMsgDiscState();
    void OnUserMsgVideoMode();
    void OnUserMsgRootMenu();
    /** The view does not react to the capture's state. */
    void OnCaptureStateChanged();

private:
    void ChoosePage(int nPlayStatus);
    /** The first playing state after loading: to the page of the type. */
    void EnterPlayPage();
    void EnterVideoPage();

    CDiscData& m_data;
    const Widgets& m_widgets;
    const ControlLink& m_control;
    PageState& m_state;
    OverlayWindow& m_overlay;
    VideoWindow& m_video;
    Notices& m_notices;
    PlayPage& m_playPage;
    ParkingGate& m_films;
    ReturnToList& m_returnToList;
    VoiceSearch& m_search;
};
