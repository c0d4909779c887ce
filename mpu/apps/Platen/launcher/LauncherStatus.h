#pragma once

#include <sys/time.h>

class CDiscData;
class ControlLink;
class DiscQDB;
class OverlayWindow;
class ParkingGate;
class PlayReports;
class SourcePopup;
class SourceRequest;
class VideoWindow;
struct PageState;
struct T_PLAY_STATUS;
struct Widgets;

/** The launcher shows, covers and hides the application, and ends it. */
class LauncherStatus {
public:
    LauncherStatus(CDiscData& data, DiscQDB& catalogue, const Widgets& widgets, const ControlLink& control,
                   PageState& state, OverlayWindow& overlay, VideoWindow& video, ParkingGate& films,
                   SourcePopup& sources, SourceRequest& request, PlayReports& reports)
        : m_data(data), m_discDb(catalogue), m_widgets(widgets), m_control(control), m_state(state),
          m_overlay(overlay), m_video(video), m_films(films), m_sources(sources), m_request(request),
          m_reports(reports) {}

    /** Measures the time to the first pause from now. */
    void Begin() { gettimeofday(&m_tvLastPause, nullptr); }
    void OnAppsMsgAppStatus(int status);

private:
    struct StatusRow;

    void OnResume(const T_PLAY_STATUS& playStatus);
    void OnPause(const T_PLAY_STATUS& playStatus);
    void OnHideOnly(const T_PLAY_STATUS& playStatus);
    void OnQuit(const T_PLAY_STATUS& playStatus);
    void PlayAgain(const T_PLAY_STATUS& playStatus);
    void ResumePage();
    void RedrawOsd();

    CDiscData& m_data;
    DiscQDB& m_discDb;
    const Widgets& m_widgets;
    const ControlLink& m_control;
    PageState& m_state;
    OverlayWindow& m_overlay;
    VideoWindow& m_video;
    ParkingGate& m_films;
    SourcePopup& m_sources;
    SourceRequest& m_request;
    PlayReports& m_reports;
    bool m_bAppHidden = false;
    bool m_bShown = false; ///< resumed at least once
    int m_nPlayStatusBeforePause = 0;
    timeval m_tvLastPause = {};
};
