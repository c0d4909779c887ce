#pragma once

struct OverlayState;

/** Track, title and chapter counters and the play time of the current bar. */
class Counters {
public:
    explicit Counters(OverlayState& state) : m_state(state) {}

    /** Shows what is counted for the clip type. */
    void OnUserMsgTrackInfo();
    /** Shows elapsed and total time and the progress, for clips that have them. */
    void OnUserMsgPlayTime();
    /** Shows the file's number in its folder as the track. */
    void ShowFileCounter();
    /** Shows `index` as the current track. */
    void ShowCurTrack(int index);

private:
    OverlayState& m_state;
};
