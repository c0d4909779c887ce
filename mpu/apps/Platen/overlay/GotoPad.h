#pragma once

#include "DiscOsdIds.h"
#include "parts/NumberPad.h"

#include <cstdint>

class ChapterSteps;
struct OverlayState;

namespace Oro::ZMCAR {
class ViewUI;
}

/** The number pad over the video: plays a track, title or chapter by its number. */
class GotoPad {
public:
    /** `view` shows and hides the pad's window. */
    GotoPad(OverlayState& state, ChapterSteps& steps, Oro::ZMCAR::ViewUI& view)
        : m_state(state), m_steps(steps), m_view(view) {}

    /** Takes the widgets once the resource has been loaded. */
    void TakeWidgets();
    void ShowGotoView();
    /** Closes the pad if it is open. */
    void HideGotoView();
    /** Enables the keys that may be typed next. */
    void DealInputNum() { m_pad.DealInputNum(); }
    void OnClickGotoWnd(long ctrlId);

    /** The pad's window has been shown or hidden. */
    void OnShow(bool shown) { m_bGotoShown = shown; }

private:
    int GotoTotal() const;
    int GotoCaption() const;
    void SwitchGotoType();
    void SendGoto(int number);
    void SendGotoTrack(int number);
    void EndGoto();

    OverlayState& m_state;
    ChapterSteps& m_steps;
    Oro::ZMCAR::ViewUI& m_view;
    NumberPad m_pad;
    int32_t m_nGotoType = OSD_GOTO_TITLE;
    bool m_bGotoShown = false;
};
