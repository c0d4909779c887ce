#include "pages/PlayPage.h"

#include "DiscViewItems.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "pages/PageState.h"
#include "pages/PlayModes.h"
#include "pages/PlayingTitle.h"
#include "pages/Tags.h"
#include "parts/CounterText.h"
#include "parts/Widgets.h"
#include "zmcar/ViewUI.h"
#include "zmui/CUIAnalysis.h"

void PlayPage::OnGotoAudioPlayPage() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnGotoAudioPlayPage]--------------\n");
    m_state.m_uiCurState = VIEW_STATE_AUDIO_PLAY;
    m_view.ShowWnd(WND_AUDIO_PLAY, true, 0);
}

void PlayPage::ShowPlayButton(bool bPlaying) {
    if (IsAudioType(m_state.m_nCurPlayType)) {
        CUIAnalysis& ui = *m_widgets.m_pUIAnalysis;
        ui.ShowItem(WND_AUDIO_PLAY, bPlaying ? ITEM_PAUSE : ITEM_PLAY, true);
        ui.ShowItem(WND_AUDIO_PLAY, bPlaying ? ITEM_PLAY : ITEM_PAUSE, false);
        ui.drawItem(WND_AUDIO_PLAY, ITEM_PLAY);
        ui.drawItem(WND_AUDIO_PLAY, ITEM_PAUSE);
    }
}

void PlayPage::OnUserMsgPlayState() {
    if (!m_widgets.m_pUIAnalysis || !IsAudioType(m_state.m_nCurPlayType)) {
        return;
    }
    const T_PLAY_STATUS status = m_data.GetCurPlayStatus();
    ShowPlayModes(*m_widgets.m_pUIAnalysis, status.repeat, status.shuffle);
    if (m_state.m_uiCurState == VIEW_STATE_AUDIO_PLAY && m_state.m_nCurPlayType == PLAY_TYPE_MUSIC) {
        ShowFileCounter(m_data.GetCurPlayInfo());
    }
}

void PlayPage::OnUserMsgPlayTime() {
    if (m_state.m_uiCurState != VIEW_STATE_AUDIO_PLAY || !m_widgets.m_pUIAnalysis) {
        return;
    }
    CUIAnalysis& ui = *m_widgets.m_pUIAnalysis;
    const T_PLAYTIME_INFO playTime = m_data.GetPlayTime();
    const int nPercent = playTime.trackTime < 1 ? 0 : PlayTimePercent(playTime.time, playTime.trackTime);
    SetTimeText(ui, WND_AUDIO_PLAY, ITEM_ELAPSED, playTime.time);
    SetTimeText(ui, WND_AUDIO_PLAY, ITEM_TOTAL, playTime.trackTime);
    ui.SetProgressItemPos(WND_AUDIO_PLAY, ITEM_PROGRESS, nPercent);
    for (const int item : {ITEM_ELAPSED, ITEM_TOTAL, ITEM_PROGRESS}) {
        ui.drawItem(WND_AUDIO_PLAY, item);
    }
}

void PlayPage::OnUserMsgID3() {
    if (m_widgets.m_pUIAnalysis) {
        // The title of a file is its name.
        ShowTags(*m_widgets.m_pUIAnalysis, m_data.GetID3Info(), m_state.m_nCurPlayType == PLAY_TYPE_CD);
    }
}

void PlayPage::ShowTrack(const T_MPEG_MEDIA_INFO& info) {
    const PlayType nType = m_state.m_nCurPlayType;
    if (nType == PLAY_TYPE_CD) {
        ShowCounter(*m_widgets.m_pUIAnalysis, WND_AUDIO_PLAY, ITEM_TRACK,
                    JudgeCounter(info.mediaId, info.mediaIds, CounterRule::TwoDigits), info.mediaId,
                    info.mediaIds);
    } else if (nType == PLAY_TYPE_MUSIC || nType == PLAY_TYPE_VIDEO || nType == PLAY_TYPE_PHOTO) {
        ShowFileCounter(info);
        if (nType == PLAY_TYPE_MUSIC) {
            m_title.UpdateCurMusicTitle();
        }
    }
}

void PlayPage::ShowFileCounter(const T_MPEG_MEDIA_INFO& info) {
    ShowCounter(*m_widgets.m_pUIAnalysis, WND_AUDIO_PLAY, ITEM_TRACK,
                JudgeCounter(info.curMediaId, info.curMediaIds, CounterRule::Unbounded), info.curMediaId,
                info.curMediaIds);
}
