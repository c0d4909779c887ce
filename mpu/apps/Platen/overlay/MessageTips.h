#pragma once

class StateDisplay;
struct OverlayState;

/** Shows the player's message tips on the state display. */
class MessageTips {
public:
    MessageTips(OverlayState& state, StateDisplay& display) : m_state(state), m_display(display) {}

    /** The latest tip; tips without a picture and clips without a state display show nothing. */
    void OnUserMsgMsgTip();

private:
    OverlayState& m_state;
    StateDisplay& m_display;
};
