#include "DiscOsdView.h"

#include "FindRow.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "ZMModel/ViewMessages.h"
#include "zmcar/AppMessage.h"
#include "zmui/CUIWndMng.h"

/** What a view message does, and what the framework is told of it. */
struct DiscOsdView::MessageRow {
    int code;
    int result;
    void (*act)(DiscOsdView& view);
};

void DiscOsdView::AttachControl(DiscViewController* controller) {
    if (controller) {
        m_state.m_pController = controller;
    }
}

void DiscOsdView::ViewInit() {
    m_state.m_pWndMng = GetUIWndMgrWrapper();
    m_state.m_pUIAnalysis = m_state.m_pWndMng ? m_state.m_pWndMng->GetUIAnalysisObj() : nullptr;
    m_goto.TakeWidgets();
    if (m_state.m_pUIAnalysis) {
        m_bars.Init();
    }
}

void DiscOsdView::OnClick(CUIWndMng*, long wndId, long ctrlId, int btState) {
    m_controls.OnClick(wndId, ctrlId, btState);
}

void DiscOsdView::OnShow(int wndId, bool show, int) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnShow] dwWndId=%d,bShow=%d\n", wndId, show);
    if (wndId == OSD_WND_GOTO) {
        m_goto.OnShow(show);
    }
    if (Bars::IsBar(wndId)) {
        m_bars.HideSourceGroup(wndId);
        m_counters.OnUserMsgTrackInfo();
        if (Bars::IsDiscBar(wndId)) {
            m_counters.OnUserMsgPlayTime();
        }
        UpdateDateTime(false);
        UpdateBTStatus(false);
        UpdateMuteStatus(false);
        UpdateCarTemp(false);
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnShow] end\n");
}

void DiscOsdView::ShowCurWnd(bool show) {
    if (!show) {
        m_bars.PlayHideAnimation();
    }
    ShowWnd(m_state.m_nCurWndId, show, 0);
}

int DiscOsdView::OnUserMessage(APP_MSG_S* msg) {
    using View = DiscOsdView&;
    static constexpr MessageRow ROWS[] = {
        {DISC_VMSG_PLAYSTATE, 0, [](View view) { view.m_playButton.OnUserMsgPlayState(); }},
        {DISC_VMSG_DISCSTATE, 0, [](View view) { view.m_playButton.OnUserMsgPlayState(); }},
        {DISC_VMSG_ROOTMENU, 0, [](View view) { view.ShowPlayState(); }},
        {DISC_VMSG_DVDSTATE, 1, [](View view) { view.m_answers.OnUserMsgDvdState(); }},
        {DISC_VMSG_AUDIOCHANNEL, 1, [](View view) { view.m_answers.OnUserMsgAudioChannel(); }},
        {DISC_VMSG_PLAYSPEED, 0, [](View view) { view.m_answers.OnUserMsgPlaySpeed(); }},
        {DISC_VMSG_CLIPSTYPE, 0, [](View view) { view.OnClipsType(); }},
        {DISC_VMSG_TRACKINFO, 1, [](View view) { view.OnTrackInfo(); }},
        {DISC_VMSG_PLAYTIME, 0, [](View view) { view.m_counters.OnUserMsgPlayTime(); }},
        {DISC_VMSG_UPDATETIME, 1, [](View view) { view.UpdateDateTime(true); }},
        {DISC_VMSG_ERRORSTATUS, 0, [](View view) { view.m_steps.OnErrorStatus(); }},
        {DISC_VMSG_MSGTIP, 1, [](View view) { view.OnMsgTip(); }},
    };
    const MessageRow* row = msg ? FindRow(ROWS, &MessageRow::code, msg->word[0]) : nullptr;
    if (!row) {
        return 0;
    }
    row->act(*this);
    return row->code == DISC_VMSG_TRACKINFO && !HasAnswers() ? 0 : row->result;
}

void DiscOsdView::OnClipsType() {
    m_state.m_nCurPlayType = static_cast<uint32_t>(m_state.m_data.GetDeviceStatus().nMediaType);
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscOsdView::OnUserMessage]-------set m_nCurPlayType=%d\n",
            static_cast<int>(m_state.m_nCurPlayType));
    HideStateView();
    m_bars.FollowClip();
}

void DiscOsdView::OnTrackInfo() {
    m_counters.OnUserMsgTrackInfo();
    if (HasAnswers()) {
        m_state.m_bTrackChanged = true;
        ShowPlayState();
    }
}

void DiscOsdView::OnMsgTip() {
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscOsdView::OnUserMessage]-------DISC_VMSG_MSGTIP\n");
    m_tips.OnUserMsgMsgTip();
}

bool DiscOsdView::HasAnswers() const {
    return m_state.IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_VIDEO});
}
