#pragma once

struct OverlayState;
class ChapterSteps;
class Counters;
class StateDisplay;

/** What follows the play state: play or pause button, the pause picture, steps past bad chapters. */
class PlayButton {
public:
    PlayButton(OverlayState& state, StateDisplay& display, Counters& counters, ChapterSteps& steps)
        : m_state(state), m_display(display), m_counters(counters), m_steps(steps) {}

    void OnUserMsgPlayState();

private:
    void ShowPlayButton(int discState);
    void SwapButtons(int shown, int hidden);

    OverlayState& m_state;
    StateDisplay& m_display;
    Counters& m_counters;
    ChapterSteps& m_steps;
    bool m_bPauseShown = false;
};
