#pragma once

class ControlLink;
class ListChange;
class OverlayWindow;
class VideoWindow;
struct ListState;
struct PageState;

/** From a film or photo to its list. */
class ReturnToList {
public:
    ReturnToList(const ControlLink& control, const PageState& state, const ListState& lists,
                 OverlayWindow& overlay, VideoWindow& video, ListChange& change)
        : m_control(control), m_state(state), m_lists(lists), m_overlay(overlay), m_video(video),
          m_change(change) {}

    /** The overlay's button. */
    void OnUserMsgOsdReturn();
    /** The return key on a photo. */
    void LeavePhoto();
    /** The disc service ended a video file. */
    void LeaveFilm();
    /** A photo that the parking page covers. */
    void LeaveParkedPhoto();

private:
    /** The overlay has been hidden. */
    void ReturnFromVideo(bool bDbDone);

    const ControlLink& m_control;
    const PageState& m_state;
    const ListState& m_lists;
    OverlayWindow& m_overlay;
    VideoWindow& m_video;
    ListChange& m_change;
};
