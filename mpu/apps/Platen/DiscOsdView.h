#pragma once

#include "DiscQDB.h"
#include "overlay/Bars.h"
#include "overlay/ChapterSteps.h"
#include "overlay/Controls.h"
#include "overlay/Counters.h"
#include "overlay/GotoPad.h"
#include "overlay/Indicators.h"
#include "overlay/KeyAnswers.h"
#include "overlay/MessageTips.h"
#include "overlay/OverlayState.h"
#include "overlay/PlayButton.h"
#include "overlay/StateDisplay.h"
#include "zmcar/ViewOsd.h"

/**
 * The on-screen display over the decoder's picture: one control bar for the kind of clip that plays (DVD,
 * VCD, video file, pictures), the state picture that answers a key, and the number pad. The main view shows
 * and hides it. This class receives the framework's calls and the main view's and hands them to the objects
 * that own what they concern. Everything but the key type is touched on the event thread only. Operations
 * that nothing calls are part of its interface.
 */
class DiscOsdView : public Oro::ZMCAR::ViewOsd {
public:
    /** What it shows stands in `data`. */
    explicit DiscOsdView(CDiscData& data) : m_state(data), m_discDb(data) {}

    /** Gives the overlay its commands and timers; null is ignored. */
    void AttachControl(DiscViewController* controller);
    /** Sets the start values of the bars; once, after the resource has been loaded. */
    void ViewInit();

    int OnUserMessage(APP_MSG_S* msg) override;
    void OnClick(CUIWndMng* wndMng, long wndId, long ctrlId, int btState) override;
    void OnShow(int wndId, bool show, int flag) override;
    void OnClose() override {}

    /** Guard the key type; any thread. */
    void Lock() { m_display.Lock(); }
    void UnLock() { m_display.UnLock(); }
    /** Key click. */
    void ToBeep() { m_state.ToBeep(); }

    /** The state picture goes 3 s from now. */
    void SetDisplayStateTimer() { m_display.SetDisplayStateTimer(); }
    /** The overlay goes 10 s from now. */
    void SetDisplayOSDTimer() { m_controls.SetDisplayOSDTimer(); }
    /** The source group closes 5 s from now. */
    void SetDisplaySrcTimer() { m_controls.SetDisplaySrcTimer(); }

    /** Shows or hides the bar of the clip type. */
    void ShowCurWnd(bool show);
    /** Closes the source group and redraws everything. */
    void DrawAllItem() { m_bars.DrawAllItem(); }
    /** Shows picture `picId` with a plain or a resource text; starts no timer. */
    void ShowStateView(long picId, const wchar_t* text) { m_display.ShowStateView(picId, text); }
    void ShowStateView2(long picId, long textId) { m_display.ShowStateView2(picId, textId); }
    /** Takes the state picture away and forgets the key. */
    void HideStateView() { m_display.HideStateView(); }
    /** Takes the state picture away and remembers the control pressed (OSD_KEY_...). */
    void SetCurKeyType(int keyType) { m_display.SetCurKeyType(keyType); }
    int GetCurKeyType() { return m_display.GetCurKeyType(); }
    /** Shows the state that answers the key pressed last. */
    void ShowPlayState() { m_answers.ShowPlayState(); }
    /** Shows `index` as the current track. */
    void ShowCurTrack(int index) { m_counters.ShowCurTrack(index); }

    /** Refresh one status-bar indicator of the current bar; `redraw` also draws it. */
    void UpdateDateTime(bool redraw) { m_indicators.UpdateDateTime(redraw); }
    void UpdateBTStatus(bool redraw) { m_indicators.UpdateBTStatus(redraw); }
    void UpdateMuteStatus(bool redraw) { m_indicators.UpdateMuteStatus(redraw); }
    void UpdateCarTemp(bool redraw) { m_indicators.UpdateCarTemp(redraw); }

    void OnUserMsgKeyInvalid() {}

    /** Opens the number pad, closes it if it is open, enables its keys. */
    void ShowGotoView() { m_goto.ShowGotoView(); }
    void HideGotoView() { m_goto.HideGotoView(); }
    void DealInputNum() { m_goto.DealInputNum(); }

private:
    struct MessageRow;

    void OnClipsType();
    void OnTrackInfo();
    void OnMsgTip();
    /** Whether a track of the clip shows the answer to the key pressed last. */
    bool HasAnswers() const;

    OverlayState m_state;
    DiscQDB m_discDb; ///< each view has one; nobody opens this one or gives it work
    StateDisplay m_display{m_state};
    KeyAnswers m_answers{m_state, m_display};
    MessageTips m_tips{m_state, m_display};
    Bars m_bars{m_state};
    Counters m_counters{m_state};
    Indicators m_indicators{m_state};
    ChapterSteps m_steps{m_state};
    PlayButton m_playButton{m_state, m_display, m_counters, m_steps};
    GotoPad m_goto{m_state, m_steps, *this};
    Controls m_controls{m_state, m_display, m_goto, m_steps};
};
