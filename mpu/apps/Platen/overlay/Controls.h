#pragma once

#include "overlay/OverlayState.h"

#include <cstdint>
#include <span>

class ChapterSteps;
class GotoPad;
class StateDisplay;

/** What a touch on a bar does. */
class Controls {
public:
    Controls(OverlayState& state, StateDisplay& display, GotoPad& pad, ChapterSteps& steps)
        : m_state(state), m_display(display), m_pad(pad), m_steps(steps) {}

    void OnClick(long wndId, long ctrlId, int btState);

    /** The overlay goes 10 s from now, its source group closes 5 s from now. */
    void SetDisplayOSDTimer();
    void SetDisplaySrcTimer();

private:
    struct ControlRow;

    void OnClickMainWnd(long ctrlId, int btState);
    void OnClickVideoWnd(long ctrlId, int btState);
    void OnClickPictureWnd(long ctrlId, int btState);
    void OnClickSrcGroup(long ctrlId);

    /** The bars that can seek: the controls that they share and, in `rows`, those of one bar. */
    void OnClickSeekBar(const char* logName, std::span<const ControlRow> rows, long ctrlId, int btState);
    void OnClickSeek(const char* logName, long ctrlId, int btState);
    /** Without a row the source group gets the control. */
    void PressControl(const ControlRow* row, long ctrlId);
    void SelectAudio();
    DiscViewController& Player() { return *m_state.m_pController; }

    OverlayState& m_state;
    StateDisplay& m_display;
    GotoPad& m_pad;
    ChapterSteps& m_steps;
    int32_t m_nLastBtState = 0;
};
