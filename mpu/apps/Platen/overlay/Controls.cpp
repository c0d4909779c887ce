#include "overlay/Controls.h"

#include "DiscViewController.h"
#include "FindRow.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "overlay/ChapterSteps.h"
#include "overlay/GotoPad.h"
#include "overlay/StateDisplay.h"
#include "parts/DiscTimers.h"
#include "parts/SourceGroup.h"

/** What a control of a bar does on a click, after the beep. */
struct Controls::ControlRow {
    long control;
    void (*act)(Controls& bar) = nullptr; ///< needs a controller; null: the beep is all
    int keyType = OSD_KEY_NONE;           ///< remembered unless OSD_KEY_NONE
};

namespace {

constexpr const char* HOME = "zmhome";
constexpr const char* EQUALISER = "zmeq";
constexpr char SPEECH_DATA[] = "null"; ///< the main view sends "--type=ui" instead
constexpr int NEXT_MODE = 0;           ///< the argument with which both mode commands are sent

void RequestApplication(const char* application) {
    constexpr int LAUNCH_TYPE = 0;
    DiscViewController::QueryLauncher(application, LAUNCH_TYPE, "null");
}

} // namespace

void Controls::SetDisplayOSDTimer() {
    StartDiscTimer(m_state.m_pController, ENUM_TIMER_DISPLAY_OSD);
}

void Controls::SetDisplaySrcTimer() {
    StartDiscTimer(m_state.m_pController, ENUM_TIMER_DISPLAY_SRC);
}

void Controls::OnClick(long wndId, long ctrlId, int btState) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnClick]--nWndId=%d,nCtrlId=%d,nBtState=%d\n",
            static_cast<int>(wndId), static_cast<int>(ctrlId), btState);
    SetDisplayOSDTimer();
    switch (wndId) {
    case OSD_WND_DVD:
    case OSD_WND_VCD:
        OnClickMainWnd(ctrlId, btState);
        break;
    case OSD_WND_VIDEO:
        OnClickVideoWnd(ctrlId, btState);
        break;
    case OSD_WND_PICTURE:
        OnClickPictureWnd(ctrlId, btState);
        break;
    case OSD_WND_GOTO:
        if (btState == BT_STATE_RELEASED) {
            m_pad.OnClickGotoWnd(ctrlId);
        }
        break;
    default:
        break;
    }
    m_nLastBtState = btState;
}

/*
 * The rows of the three bars differ on purpose: only the disc bar goes home, only the two others leave the
 * overlay, and the picture bar remembers no key. The progress bar has no row: like any unknown control it
 * ends in the source group, which ignores it without a beep.
 */
void Controls::OnClickMainWnd(long ctrlId, int btState) {
    static constexpr ControlRow ROWS[] = {
        {OSD_CTRL_NOP_6507},
        {OSD_CTRL_NOP_5007},
        {OSD_CTRL_NOP_5008},
        {OSD_CTRL_HOME, [](Controls&) { RequestApplication(HOME); }},
        {OSD_CTRL_AUDIO, [](Controls& bar) { bar.SelectAudio(); }},
        {OSD_CTRL_SUBTITLE, [](Controls& bar) { bar.Player().SelectSubtitle(); }, OSD_KEY_DVD_SUBTITLE},
        {OSD_CTRL_ANGLE, [](Controls& bar) { bar.Player().KeyAngle(); }, OSD_KEY_DVD_ANGLE},
        {OSD_CTRL_MENU, [](Controls& bar) { bar.Player().ReturnToMenu(); }, OSD_KEY_DVD_MENU},
        {OSD_CTRL_NOFUNC, [](Controls& bar) { bar.m_display.ShowNoFunction(); }},
        {OSD_CTRL_PBC, [](Controls& bar) { bar.Player().VCD_PBC(); }},
    };
    OnClickSeekBar(__FUNCTION__, ROWS, ctrlId, btState);
}

void Controls::OnClickVideoWnd(long ctrlId, int btState) {
    static constexpr ControlRow ROWS[] = {
        {OSD_CTRL_RETURN, [](Controls& bar) { bar.Player().OnMessageOSDReturn(); }},
        {OSD_CTRL_NOP_6603},
    };
    OnClickSeekBar(__FUNCTION__, ROWS, ctrlId, btState);
}

void Controls::OnClickPictureWnd(long ctrlId, int btState) {
    static constexpr ControlRow ROWS[] = {
        {OSD_CTRL_PLAY, [](Controls& bar) { bar.Player().PlayPause(); }},
        {OSD_CTRL_PAUSE, [](Controls& bar) { bar.Player().PlayPause(); }},
        {OSD_CTRL_PREV, [](Controls& bar) { bar.Player().PreviousClip(); }},
        {OSD_CTRL_NEXT, [](Controls& bar) { bar.Player().NextClip(); }},
        {OSD_CTRL_ZOOM, [](Controls& bar) { bar.Player().Zoom(); }},
        {OSD_CTRL_ROTATE, [](Controls& bar) { bar.Player().KeyRotation(); }},
        {OSD_CTRL_RETURN, [](Controls& bar) { bar.Player().OnMessageOSDReturn(); }},
    };
    if (btState == BT_STATE_RELEASED) {
        PressControl(FindRow(ROWS, &ControlRow::control, ctrlId), ctrlId);
    }
}

void Controls::OnClickSeekBar(const char* logName, std::span<const ControlRow> rows, long ctrlId,
                              int btState) {
    static constexpr ControlRow SHARED_ROWS[] = {
        {OSD_CTRL_PLAY, [](Controls& bar) { bar.Player().PlayPause(); }, OSD_KEY_PLAY_PAUSE},
        {OSD_CTRL_PAUSE, [](Controls& bar) { bar.Player().PlayPause(); }, OSD_KEY_PLAY_PAUSE},
        {OSD_CTRL_SHUFFLE, [](Controls& bar) { bar.Player().SetShuffleMode(NEXT_MODE); }, OSD_KEY_SHUFFLE},
        {OSD_CTRL_REPEAT, [](Controls& bar) { bar.Player().SetRepeatMode(NEXT_MODE); }, OSD_KEY_REPEAT},
        {OSD_CTRL_GOTO, [](Controls& bar) { bar.m_pad.ShowGotoView(); }},
        {OSD_CTRL_NOP_6506},
        {OSD_CTRL_EQ, [](Controls&) { RequestApplication(EQUALISER); }},
        {OSD_CTRL_STOP, [](Controls& bar) { bar.Player().StopPlayBack(); }, OSD_KEY_STOP},
    };
    if (!m_state.m_pController) {
        return;
    }
    if (ctrlId == OSD_CTRL_PREV || ctrlId == OSD_CTRL_NEXT) {
        OnClickSeek(logName, ctrlId, btState);
    } else if (btState == BT_STATE_RELEASED) {
        const ControlRow* shared = FindRow(SHARED_ROWS, &ControlRow::control, ctrlId);
        PressControl(shared ? shared : FindRow(rows, &ControlRow::control, ctrlId), ctrlId);
    }
}

void Controls::OnClickSeek(const char* logName, long ctrlId, int btState) {
    struct SeekRow {
        long control;
        bool (DiscViewController::*seek)();
        bool (DiscViewController::*skip)();
        int chapterStep;
    };
    static constexpr SeekRow PREVIOUS = {OSD_CTRL_PREV, &DiscViewController::FastBackward,
                                         &DiscViewController::PreviousClip, -1};
    static constexpr SeekRow NEXT = {OSD_CTRL_NEXT, &DiscViewController::FastForward,
                                     &DiscViewController::NextClip, +1};
    const SeekRow& row = ctrlId == PREVIOUS.control ? PREVIOUS : NEXT;
    if (btState == BT_STATE_HELD) {
        m_state.ToBeep();
        LOGBASE(LOG_LEV_TRACE, logName, "long touch");
        (m_state.m_pController->*row.seek)();
    } else if (btState == BT_STATE_RELEASED && m_nLastBtState != BT_STATE_HELD) {
        m_state.ToBeep();
        LOGBASE(LOG_LEV_TRACE, logName, "touch");
        m_steps.SetNext(m_state.m_data.GetCurPlayInfo().chapter + row.chapterStep);
        (m_state.m_pController->*row.skip)();
    }
}

void Controls::PressControl(const ControlRow* row, long ctrlId) {
    if (!row) {
        OnClickSrcGroup(ctrlId);
        return;
    }
    m_state.ToBeep();
    if (row->act && m_state.m_pController) {
        row->act(*this);
    }
    if (row->keyType != OSD_KEY_NONE) {
        m_display.SetCurKeyType(row->keyType);
    }
}

void Controls::SelectAudio() {
    if (m_state.IsClip({PLAY_TYPE_VCD})) {
        m_state.m_pController->SelectMainSubAudio();
        m_display.SetCurKeyType(OSD_KEY_VCD_AUDIO);
    } else if (m_state.IsClip({PLAY_TYPE_DVD})) {
        m_state.m_pController->SelectAudioChannel();
        m_display.SetCurKeyType(OSD_KEY_DVD_AUDIO);
    }
}

void Controls::OnClickSrcGroup(long ctrlId) {
    SourceGroup group(m_state.m_pUIAnalysis, m_state.m_pWndMng, m_state.m_pController, m_state.m_nCurWndId,
                      SPEECH_DATA);
    if (group.Click(ctrlId) == SourceGroupClick::Opened) {
        SetDisplaySrcTimer();
    }
}
