#pragma once

#include "DiscOsdIds.h"
#include "DiscQDB.h"
#include "DiscViewIds.h"
#include "parts/NumberPad.h"
#include "zmcar/ViewOsd.h"

#include <pthread.h>

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>

class CDiscData;
class DiscViewController;
class CUIAnalysis;
class CUIWndMng;

/**
 * The on-screen display over the decoder's picture: one control bar for the kind of clip that plays (DVD,
 * VCD, video file, pictures), the state picture that answers a key, and the number pad. The main view shows
 * and hides it. Everything but the key type is touched on the event thread only.
 */
class DiscOsdView : public Oro::ZMCAR::ViewOsd {
public:
    /** What it shows stands in `data`. */
    explicit DiscOsdView(CDiscData& data) : m_data(data) {}

    /** Gives the overlay its commands and timers; null is ignored. */
    void AttachControl(DiscViewController* controller);
    /** Sets the start values of the bars; once, after the resource has been loaded. */
    void ViewInit();

    int OnUserMessage(APP_MSG_S* msg) override;
    void OnClick(CUIWndMng* wndMng, long wndId, long ctrlId, int btState) override;
    void OnShow(int wndId, bool show, int flag) override;
    void OnClose() override {}

    /** Guard the key type; any thread. */
    void Lock();
    void UnLock();
    /** Key click. */
    void ToBeep();

    /** The state picture goes 3 s from now. */
    void SetDisplayStateTimer();
    /** The overlay goes 10 s from now. */
    void SetDisplayOSDTimer();
    /** The source group closes 5 s from now. */
    void SetDisplaySrcTimer();

    /** Shows or hides the bar of the clip type. */
    void ShowCurWnd(bool show);
    /** Closes the source group and redraws everything. */
    void DrawAllItem();
    /** Shows picture `picId` with a plain or a resource text; starts no timer. */
    void ShowStateView(long picId, const wchar_t* text);
    void ShowStateView2(long picId, long textId);
    /** Takes the state picture away and forgets the key. */
    void HideStateView();
    /** Takes the state picture away and remembers the control pressed (OSD_KEY_...). */
    void SetCurKeyType(int keyType);
    int GetCurKeyType();

    /** Shows the state that answers the key pressed last. */
    void ShowPlayState();
    /** Shows `index` as the current track. */
    void ShowCurTrack(int index);

    /** Refresh one status-bar indicator of the current bar; `redraw` also draws it. */
    void UpdateDateTime(bool redraw);
    void UpdateBTStatus(bool redraw);
    void UpdateMuteStatus(bool redraw);
    void UpdateCarTemp(bool redraw);

    void OnUserMsgPlayTime();
    void OnUserMsgTrackInfo();
    void OnUserMsgKeyInvalid() {}
    void OnUserMsgMsgTip();
    void OnUserMsgPlayState();
    void OnUserMsgPlaySpeed();
    void OnUserMsgAudioChannel();
    void OnUserMsgDvdState();

    /** Opens the number pad, closes it if it is open, enables its keys. */
    void ShowGotoView();
    void HideGotoView();
    void DealInputNum();

private:
    friend struct DiscOsdViewTest;

    struct ControlRow;

    /** Outlives the members behind it. */
    struct KeyMutex {
        KeyMutex() { pthread_mutex_init(&handle, nullptr); }
        ~KeyMutex() { pthread_mutex_destroy(&handle); }
        KeyMutex(const KeyMutex&) = delete;
        KeyMutex& operator=(const KeyMutex&) = delete;
        pthread_mutex_t handle;
    };

    void OnClickMainWnd(long ctrlId, int btState);
    void OnClickVideoWnd(long ctrlId, int btState);
    void OnClickPictureWnd(long ctrlId, int btState);
    void OnClickGotoWnd(long ctrlId);
    void OnClickSrcGroup(long ctrlId);

    /** The bars that can seek: what they have in common and, in `rows`, what they have not. */
    void OnClickSeekBar(const char* logName, std::span<const ControlRow> rows, long ctrlId, int btState);
    void OnClickSeek(const char* logName, long ctrlId, int btState);
    /** Without a row the source group gets the control. */
    void PressControl(const ControlRow* row, long ctrlId);
    void SelectAudio();
    void ShowNoFunction();
    void RequestApplication(const char* application);

    void OnClipsType();
    int OnTrackInfo();
    void OnErrorStatus();

    void ShowStatePicture(int picture, bool shown);
    void ShowDiscPlayState();
    void ShowDvdAudio();
    void ShowDvdAngle();
    void ShowDvdSubtitle();
    void ShowVcdAudio();
    void ShowFileCounter();
    void ShowPlayButton(int state);
    void SwapButtons(int shown, int hidden);
    void ResumeAfterError();
    void FollowChapter();

    bool IsClip(std::initializer_list<int> types) const;
    int GotoTotal() const;
    int GotoCaption() const;
    void SwitchGotoType();
    void SendGoto(int number);
    void SendGotoTrack(int number);
    void EndGoto();

    KeyMutex m_mutex; ///< guards m_nCurKeyType
    CDiscData& m_data;
    DiscViewController* m_pController = nullptr;
    CUIAnalysis* m_pUIAnalysis = nullptr;
    CUIWndMng* m_pWndMng = nullptr;
    DiscQDB m_discDb; ///< never opened
    uint32_t m_nCurPlayType = PLAY_TYPE_UNKNOWN;
    int32_t m_nCurKeyType = OSD_KEY_NONE;
    int32_t m_nCurWndId = OSD_WND_DVD; ///< the bar of the clip type
    NumberPad m_pad;
    int32_t m_nGotoType = OSD_GOTO_TITLE;
    bool m_bGotoShown = false;
    int32_t m_nLastBtState = 0;
    int32_t m_nNextChapter = 0; ///< steps past unreadable chapters
    bool m_bPauseShown = false;
    bool m_bReadError = false;
    bool m_bTrackChanged = false;
};
