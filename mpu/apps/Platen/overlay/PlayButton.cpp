#include "overlay/PlayButton.h"

#include "ZMModel/CDiscData.h"
#include "overlay/ChapterSteps.h"
#include "overlay/Counters.h"
#include "overlay/OverlayState.h"
#include "overlay/StateDisplay.h"
#include "zmui/CUIAnalysis.h"

void PlayButton::OnUserMsgPlayState() {
    const int discState = m_state.m_data.GetCurPlayStatus().discState;
    if (m_state.IsClip({PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO})) {
        m_counters.ShowFileCounter();
    }
    if (discState == DISC_STATE_STOPPED && m_state.IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_VIDEO})) {
        m_bPauseShown = true;
        m_display.ShowStateView2(OSD_PIC_PAUSE, OSD_TXT_PAUSE);
        m_display.KillDisplayStateTimer();
    }
    if (discState != DISC_STATE_STOPPED && m_bPauseShown) {
        m_display.HideStateView();
        m_bPauseShown = false;
    }
    if (m_state.IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_PHOTO, PLAY_TYPE_VIDEO})) {
        ShowPlayButton(discState);
    }
}

void PlayButton::ShowPlayButton(int discState) {
    switch (discState) {
    case DISC_STATE_STOPPED:
        SwapButtons(OSD_ITEM_PLAY, OSD_ITEM_PAUSE);
        m_steps.OnStopped();
        break;
    case DISC_STATE_PLAYING:
        SwapButtons(OSD_ITEM_PAUSE, OSD_ITEM_PLAY);
        m_steps.OnPlaying();
        break;
    case DISC_STATE_PAUSED:
    case DISC_STATE_FAST_FORWARD:
    case DISC_STATE_FAST_BACKWARD:
        SwapButtons(OSD_ITEM_PLAY, OSD_ITEM_PAUSE);
        break;
    default:
        break;
    }
}

void PlayButton::SwapButtons(int shown, int hidden) {
    if (CUIAnalysis* ui = m_state.m_pUIAnalysis) {
        ui->ShowItem(m_state.m_nCurWndId, shown, true);
        ui->ShowItem(m_state.m_nCurWndId, hidden, false);
        ui->drawItem(m_state.m_nCurWndId, OSD_ITEM_PLAY);
        ui->drawItem(m_state.m_nCurWndId, OSD_ITEM_PAUSE);
    }
}
