#include "DiscView.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/CounterText.h"
#include "parts/DiscTimers.h"
#include "zmui/CUIAnalysis.h"

namespace {

/** A play mode's pictures on its button: at rest (and selected), and pressed. */
struct ModeRow {
    int item;
    int mode;
    int icon;
    int pressedIcon;
};

constexpr ModeRow MODES[] = {
    {ITEM_REPEAT, 1, 161, 162}, {ITEM_REPEAT, 2, 53, 54},  {ITEM_REPEAT, 4, 85, 86},
    {ITEM_REPEAT, 8, 83, 84},   {ITEM_SHUFFLE, 0, 94, 95}, {ITEM_SHUFFLE, 1, 165, 166},
    {ITEM_SHUFFLE, 2, 87, 88},
};

void SetModeIcons(CUIAnalysis& ui, int item, int mode) {
    for (const ModeRow& row : MODES) {
        if (row.item == item && row.mode == mode) {
            ui.SetItemIcon(WND_AUDIO_PLAY, item, row.icon, ITEM_STATE_NORMAL);
            ui.SetItemIcon(WND_AUDIO_PLAY, item, row.icon, ITEM_STATE_SELECTED);
            ui.SetItemIcon(WND_AUDIO_PLAY, item, row.pressedIcon, ITEM_STATE_PRESSED);
        }
    }
}

} // namespace

void DiscView::OnUserMsgDiscState() {
    if (!m_pUIAnalysis) {
        return;
    }
    const int nPlayStatus = CDiscData::GetInstance()->GetCurPlayStatus().discState;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnUserMsgDiscState]  playStatus.nPlayStatus=%d\n", nPlayStatus);
    if (IsVideoType(m_nCurPlayType) && nPlayStatus == DISC_STATE_STOPPED) {
        if (m_nCurWndId != WND_PARKING && m_uiCurState == VIEW_STATE_VIDEO_PLAY) {
            SetVisibleOsd(true);
        }
    } else if (IsRunning(nPlayStatus) && m_uiCurState == VIEW_STATE_LOADING) {
        if (nPlayStatus == DISC_STATE_PAUSED) {
            Send(&DiscViewController::Play);
        }
        EnterPlayPage();
    }

    switch (nPlayStatus) {
    case DISC_STATE_STOPPED:
    case DISC_STATE_PAUSED:
    case DISC_STATE_FAST_FORWARD:
    case DISC_STATE_FAST_BACKWARD:
        ShowPlayButton(ITEM_PLAY, ITEM_PAUSE);
        break;
    case DISC_STATE_LOADING:
        KillTimer(ENUM_TIMER_NO_DISC);
        ShowMessage(Message::Loading);
        break;
    case DISC_STATE_PLAYING:
        if (m_bVoicePlayPending && m_nCurPlayType == PLAY_TYPE_MUSIC) {
            m_bVoicePlayPending = false;
            OnHandleVoicePlay(m_strVoicePlay);
        }
        ShowPlayButton(ITEM_PAUSE, ITEM_PLAY);
        break;
    case DISC_STATE_ERROR:
        DiscError();
        break;
    case DISC_STATE_EJECTING:
        DiscExit();
        break;
    }
}

void DiscView::EnterPlayPage() {
    switch (m_nCurPlayType) {
    case PLAY_TYPE_CD:
    case PLAY_TYPE_MUSIC:
        KillTimer(ENUM_TIMER_LOADING);
        OnGotoAudioPlayPage();
        m_nPlayListFrom = m_nCurPlayType == PLAY_TYPE_CD ? PLAY_LIST_CD : PLAY_LIST_MUSIC;
        break;
    case PLAY_TYPE_PHOTO:
        m_nPlayListFrom = PLAY_LIST_PHOTO;
        KillTimer(ENUM_TIMER_LOADING);
        GotoVideoPage(PLAY_TYPE_PHOTO);
        break;
    case PLAY_TYPE_DVD:
    case PLAY_TYPE_VIDEO:
    case PLAY_TYPE_VCD:
        if (CDiscData::GetInstance()->GetDeviceStatus().nVideoMode == VIDEO_MODE_ON) {
            EnterVideoPage();
        }
        break;
    }
}

void DiscView::EnterVideoPage() {
    m_nPlayListFrom = PLAY_LIST_VIDEO;
    KillTimer(ENUM_TIMER_LOADING);
    GotoVideoPage(m_nCurPlayType);
}

void DiscView::ShowPlayButton(int shown, int hidden) {
    if (IsAudioType(m_nCurPlayType)) {
        m_pUIAnalysis->ShowItem(WND_AUDIO_PLAY, shown, true);
        m_pUIAnalysis->ShowItem(WND_AUDIO_PLAY, hidden, false);
        m_pUIAnalysis->drawItem(WND_AUDIO_PLAY, ITEM_PLAY);
        m_pUIAnalysis->drawItem(WND_AUDIO_PLAY, ITEM_PAUSE);
    }
}

void DiscView::OnUserMsgPlayState() {
    if (!m_pUIAnalysis || !IsAudioType(m_nCurPlayType)) {
        return;
    }
    const T_PLAY_STATUS status = CDiscData::GetInstance()->GetCurPlayStatus();
    SetModeIcons(*m_pUIAnalysis, ITEM_REPEAT, status.repeat);
    SetModeIcons(*m_pUIAnalysis, ITEM_SHUFFLE, status.shuffle);
    m_pUIAnalysis->drawItem(WND_AUDIO_PLAY, ITEM_REPEAT);
    m_pUIAnalysis->drawItem(WND_AUDIO_PLAY, ITEM_SHUFFLE);
    if (m_uiCurState == VIEW_STATE_AUDIO_PLAY && m_nCurPlayType == PLAY_TYPE_MUSIC) {
        ShowTrackText();
    }
}

void DiscView::OnUserMsgPlayTime() {
    if (m_uiCurState != VIEW_STATE_AUDIO_PLAY || !m_pUIAnalysis) {
        return;
    }
    const T_PLAYTIME_INFO playTime = CDiscData::GetInstance()->GetPlayTime();
    const int nPercent = playTime.trackTime < 1 ? 0 : PlayTimePercent(playTime.time, playTime.trackTime);
    SetTimeText(*m_pUIAnalysis, WND_AUDIO_PLAY, ITEM_ELAPSED, playTime.time);
    SetTimeText(*m_pUIAnalysis, WND_AUDIO_PLAY, ITEM_TOTAL, playTime.trackTime);
    m_pUIAnalysis->SetProgressItemPos(WND_AUDIO_PLAY, ITEM_PROGRESS, nPercent);
    for (const int item : {ITEM_ELAPSED, ITEM_TOTAL, ITEM_PROGRESS}) {
        m_pUIAnalysis->drawItem(WND_AUDIO_PLAY, item);
    }
}

void DiscView::OnUserMsgVideoMode() {
    const int nVideoMode = CDiscData::GetInstance()->GetDeviceStatus().nVideoMode;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgVideoMode]-------videomode=%d\n", nVideoMode);
    switch (nVideoMode) {
    case VIDEO_MODE_ON:
        if (IsVideoType(m_nCurPlayType) &&
            IsRunning(CDiscData::GetInstance()->GetCurPlayStatus().discState)) {
            EnterVideoPage();
        }
        break;
    case VIDEO_MODE_OFF:
        SetVisibleVideo(false);
        OperateCapture(false);
        break;
    case VIDEO_MODE_TO_LIST:
        if (m_nCurPlayType == PLAY_TYPE_VIDEO && m_uiCurState == VIEW_STATE_VIDEO_PLAY) {
            SetDisplayPlayViewTimer();
            SetVisibleOsd(false);
            ReturnFromVideo(m_bVideoDbDone);
        }
        break;
    }
}

void DiscView::OnUserMsgOsdReturn() {
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "DISC_VMSG_OSDRETURN m_nCurPlayType=%d\n", m_nCurPlayType);
    if (m_nCurPlayType == PLAY_TYPE_VIDEO || m_nCurPlayType == PLAY_TYPE_PHOTO) {
        SetDisplayPlayViewTimer();
        WithdrawOsd();
        ReturnFromVideo(m_nCurPlayType == PLAY_TYPE_VIDEO ? m_bVideoDbDone : m_bPhotoDbDone);
    }
}

void DiscView::ReturnFromVideo(bool bDbDone) {
    SetVisibleVideo(false);
    if (!bDbDone) {
        Send(&DiscViewController::GotoSubList, m_nCurPlayType, 1);
    }
    OnHandleUIReturnList();
}
