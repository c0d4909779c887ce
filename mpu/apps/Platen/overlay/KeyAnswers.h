#pragma once

class StateDisplay;
struct OverlayState;

/** What the state display answers to the control pressed last: streams, angle, channel. */
class KeyAnswers {
public:
    KeyAnswers(OverlayState& state, StateDisplay& display) : m_state(state), m_display(display) {}

    /** Shows the state that answers the key pressed last. */
    void ShowPlayState();
    void OnUserMsgPlaySpeed();
    void OnUserMsgAudioChannel();
    void OnUserMsgDvdState();

private:
    void ShowDiscPlayState();
    void ShowDvdAudio();
    void ShowDvdAngle();
    void ShowDvdSubtitle();
    void ShowVcdAudio();

    OverlayState& m_state;
    StateDisplay& m_display;
};
