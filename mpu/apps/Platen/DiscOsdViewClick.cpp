#include "DiscOsdView.h"

#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/FindRow.h"
#include "parts/SourceGroup.h"

/** What a control of a bar does on a click, after the beep. */
struct DiscOsdView::ControlRow {
    long control;
    void (*act)(DiscOsdView& view) = nullptr; ///< needs a controller; null: the beep is all
    int keyType = OSD_KEY_NONE;               ///< remembered unless OSD_KEY_NONE
};

namespace {

constexpr char SPEECH_DATA[] =
    "null";                  ///< the main view starts the recogniser with its own page, the overlay does not
constexpr int NEXT_MODE = 0; ///< the argument with which both mode commands are sent

} // namespace

void DiscOsdView::OnClick(CUIWndMng*, long wndId, long ctrlId, int btState) {
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
            OnClickGotoWnd(ctrlId);
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
void DiscOsdView::OnClickMainWnd(long ctrlId, int btState) {
    static constexpr ControlRow ROWS[] = {
        {OSD_CTRL_NOP_6507},
        {OSD_CTRL_NOP_5007},
        {OSD_CTRL_NOP_5008},
        {OSD_CTRL_HOME, [](DiscOsdView& view) { view.RequestApplication("zmhome"); }},
        {OSD_CTRL_AUDIO, [](DiscOsdView& view) { view.SelectAudio(); }},
        {OSD_CTRL_SUBTITLE, [](DiscOsdView& view) { view.m_pController->SelectSubtitle(); },
         OSD_KEY_DVD_SUBTITLE},
        {OSD_CTRL_ANGLE, [](DiscOsdView& view) { view.m_pController->KeyAngle(); }, OSD_KEY_DVD_ANGLE},
        {OSD_CTRL_MENU, [](DiscOsdView& view) { view.m_pController->ReturnToMenu(); }, OSD_KEY_DVD_MENU},
        {OSD_CTRL_NOFUNC, [](DiscOsdView& view) { view.ShowNoFunction(); }},
        {OSD_CTRL_PBC, [](DiscOsdView& view) { view.m_pController->VCD_PBC(); }},
    };
    OnClickSeekBar(__FUNCTION__, ROWS, ctrlId, btState);
}

void DiscOsdView::OnClickVideoWnd(long ctrlId, int btState) {
    static constexpr ControlRow ROWS[] = {
        {OSD_CTRL_RETURN, [](DiscOsdView& view) { view.m_pController->OnMessageOSDReturn(); }},
        {OSD_CTRL_NOP_6603},
    };
    OnClickSeekBar(__FUNCTION__, ROWS, ctrlId, btState);
}

void DiscOsdView::OnClickPictureWnd(long ctrlId, int btState) {
    static constexpr ControlRow ROWS[] = {
        {OSD_CTRL_PLAY, [](DiscOsdView& view) { view.m_pController->PlayPause(); }},
        {OSD_CTRL_PAUSE, [](DiscOsdView& view) { view.m_pController->PlayPause(); }},
        {OSD_CTRL_PREV, [](DiscOsdView& view) { view.m_pController->PreviousClip(); }},
        {OSD_CTRL_NEXT, [](DiscOsdView& view) { view.m_pController->NextClip(); }},
        {OSD_CTRL_ZOOM, [](DiscOsdView& view) { view.m_pController->Zoom(); }},
        {OSD_CTRL_ROTATE, [](DiscOsdView& view) { view.m_pController->KeyRotation(); }},
        {OSD_CTRL_RETURN, [](DiscOsdView& view) { view.m_pController->OnMessageOSDReturn(); }},
    };
    if (btState == BT_STATE_RELEASED) {
        PressControl(FindRow(ROWS, &ControlRow::control, ctrlId), ctrlId);
    }
}

void DiscOsdView::OnClickSeekBar(const char* logName, std::span<const ControlRow> rows, long ctrlId,
                                 int btState) {
    static constexpr ControlRow SHARED_ROWS[] = {
        {OSD_CTRL_PLAY, [](DiscOsdView& view) { view.m_pController->PlayPause(); }, OSD_KEY_PLAY_PAUSE},
        {OSD_CTRL_PAUSE, [](DiscOsdView& view) { view.m_pController->PlayPause(); }, OSD_KEY_PLAY_PAUSE},
        {OSD_CTRL_SHUFFLE, [](DiscOsdView& view) { view.m_pController->SetShuffleMode(NEXT_MODE); },
         OSD_KEY_SHUFFLE},
        {OSD_CTRL_REPEAT, [](DiscOsdView& view) { view.m_pController->SetRepeatMode(NEXT_MODE); },
         OSD_KEY_REPEAT},
        {OSD_CTRL_GOTO, [](DiscOsdView& view) { view.ShowGotoView(); }},
        {OSD_CTRL_NOP_6506},
        {OSD_CTRL_EQ, [](DiscOsdView& view) { view.RequestApplication("zmeq"); }},
        {OSD_CTRL_STOP, [](DiscOsdView& view) { view.m_pController->StopPlayBack(); }, OSD_KEY_STOP},
    };
    if (!m_pController) {
        return;
    }
    if (ctrlId == OSD_CTRL_PREV || ctrlId == OSD_CTRL_NEXT) {
        OnClickSeek(logName, ctrlId, btState);
    } else if (btState == BT_STATE_RELEASED) {
        const ControlRow* shared = FindRow(SHARED_ROWS, &ControlRow::control, ctrlId);
        PressControl(shared ? shared : FindRow(rows, &ControlRow::control, ctrlId), ctrlId);
    }
}

void DiscOsdView::OnClickSeek(const char* logName, long ctrlId, int btState) {
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
        ToBeep();
        LOGBASE(LOG_LEV_TRACE, logName, "long touch");
        (m_pController->*row.seek)();
    } else if (btState == BT_STATE_RELEASED && m_nLastBtState != BT_STATE_HELD) {
        ToBeep();
        LOGBASE(LOG_LEV_TRACE, logName, "touch");
        m_nNextChapter = m_data.GetCurPlayInfo().chapter + row.chapterStep;
        (m_pController->*row.skip)();
    }
}

void DiscOsdView::PressControl(const ControlRow* row, long ctrlId) {
    if (!row) {
        OnClickSrcGroup(ctrlId);
        return;
    }
    ToBeep();
    if (row->act && m_pController) {
        row->act(*this);
    }
    if (row->keyType != OSD_KEY_NONE) {
        SetCurKeyType(row->keyType);
    }
}

void DiscOsdView::SelectAudio() {
    if (IsClip({PLAY_TYPE_VCD})) {
        m_pController->SelectMainSubAudio();
        SetCurKeyType(OSD_KEY_VCD_AUDIO);
    } else if (IsClip({PLAY_TYPE_DVD})) {
        m_pController->SelectAudioChannel();
        SetCurKeyType(OSD_KEY_DVD_AUDIO);
    }
}

void DiscOsdView::ShowNoFunction() {
    ShowStateView2(OSD_PIC_NO_FUNCTION, OSD_TXT_NO_FUNCTION);
    SetDisplayStateTimer();
}

void DiscOsdView::RequestApplication(const char* application) {
    constexpr int LAUNCH_TYPE = 0;
    DiscViewController::QueryLauncher(application, LAUNCH_TYPE, "null");
}

void DiscOsdView::OnClickSrcGroup(long ctrlId) {
    SourceGroup group(m_pUIAnalysis, m_pWndMng, m_pController, m_nCurWndId, SPEECH_DATA);
    if (group.Click(ctrlId) == SourceGroupClick::Opened) {
        SetDisplaySrcTimer();
    }
}
