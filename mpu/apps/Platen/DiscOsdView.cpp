#include "DiscOsdView.h"

#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/DiscTimers.h"
#include "parts/FindRow.h"
#include "parts/SourceGroup.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

#include <algorithm>

namespace {

constexpr int PROGRESS_MAXIMUM = 100;

/** The bar of each clip type, and the animation that plays when it goes. */
struct BarRow {
    int clipType;
    int window;
    int hideAnimation;
};
constexpr BarRow BARS[] = {
    {PLAY_TYPE_DVD, OSD_WND_DVD, 6},
    {PLAY_TYPE_VIDEO, OSD_WND_VIDEO, 4},
    {PLAY_TYPE_VCD, OSD_WND_VCD, 4},
    {PLAY_TYPE_PHOTO, OSD_WND_PICTURE, 2},
};

/** What a bar carries; a disc's bar also has the state display and shows the times as soon as it is shown. */
struct BarContents {
    int window;
    bool hasTimes;
    bool isDisc;
    bool hasChapter;
};
constexpr BarContents CONTENTS[] = {
    {OSD_WND_DVD, true, true, true},
    {OSD_WND_VCD, true, true, false},
    {OSD_WND_PICTURE, false, false, false},
    {OSD_WND_VIDEO, true, false, false},
};

void InitTimes(CUIAnalysis& ui, int window) {
    ui.SetItemText(window, OSD_ITEM_TRACK, L"--/--");
    ui.SetItemText(window, OSD_ITEM_ELAPSED, L"00:00");
    ui.SetItemText(window, OSD_ITEM_TOTAL, L"00:00");
    ui.SetProgressItemValues(window, OSD_ITEM_PROGRESS, PROGRESS_MAXIMUM, 0);
    ui.SetProgressItemPos(window, OSD_ITEM_PROGRESS, 0);
}

void InitStateDisplay(CUIAnalysis& ui, int window) {
    ui.ShowItem(window, OSD_ITEM_TOP_3, true);
    ui.ShowItem(window, OSD_ITEM_TOP_4, false);
    ui.ShowItem(window, OSD_ITEM_STATE_PIC, false);
    ui.SetItemIcon(window, OSD_ITEM_STATE_PIC, OSD_PIC_NONE, ITEM_STATE_ALL);
    ui.SetItemText(window, OSD_ITEM_STATE_TEXT, L" ");
}

} // namespace

void DiscOsdView::AttachControl(DiscViewController* controller) {
    if (controller) {
        m_pController = controller;
    }
}

void DiscOsdView::ViewInit() {
    m_pWndMng = GetUIWndMgrWrapper();
    if (!m_pWndMng) {
        return;
    }
    m_pUIAnalysis = m_pWndMng->GetUIAnalysisObj();
    if (!m_pUIAnalysis) {
        return;
    }
    m_pad.TakeWidgets(m_pUIAnalysis, m_pWndMng);
    for (const BarContents& bar : CONTENTS) {
        if (bar.hasTimes) {
            InitTimes(*m_pUIAnalysis, bar.window);
        }
        if (bar.hasChapter) {
            m_pUIAnalysis->SetItemText(bar.window, OSD_ITEM_CHAPTER, L"--/--");
        }
        if (bar.isDisc) {
            InitStateDisplay(*m_pUIAnalysis, bar.window);
        } else {
            m_pUIAnalysis->SetItemText(bar.window, OSD_ITEM_PIC_TEXT, OSD_TXT_PIC_TITLE);
        }
    }
}

void DiscOsdView::Lock() {
    pthread_mutex_lock(&m_mutex.handle);
}

void DiscOsdView::UnLock() {
    pthread_mutex_unlock(&m_mutex.handle);
}

void DiscOsdView::ToBeep() {
    if (m_pController) {
        m_pController->ToBeep();
    }
}

void DiscOsdView::SetDisplayStateTimer() {
    StartDiscTimer(m_pController, ENUM_TIMER_DISPLAY_STATE);
}

void DiscOsdView::SetDisplayOSDTimer() {
    StartDiscTimer(m_pController, ENUM_TIMER_DISPLAY_OSD);
}

void DiscOsdView::SetDisplaySrcTimer() {
    StartDiscTimer(m_pController, ENUM_TIMER_DISPLAY_SRC);
}

void DiscOsdView::OnShow(int wndId, bool show, int) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnShow] dwWndId=%d,bShow=%d\n", wndId, show);
    if (wndId == OSD_WND_GOTO) {
        m_bGotoShown = show;
    }
    if (const BarContents* bar = FindRow(CONTENTS, &BarContents::window, wndId)) {
        if (m_pUIAnalysis) {
            m_pUIAnalysis->ShowItem(wndId, ITEM_SRC_GROUP, false);
        }
        OnUserMsgTrackInfo();
        if (bar->isDisc) {
            OnUserMsgPlayTime();
        }
        UpdateDateTime(false);
        UpdateBTStatus(false);
        UpdateMuteStatus(false);
        UpdateCarTemp(false);
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnShow] end\n");
}

void DiscOsdView::ShowCurWnd(bool show) {
    const BarRow* bar = FindRow(BARS, &BarRow::window, m_nCurWndId);
    if (!show && m_pUIAnalysis && bar) {
        m_pUIAnalysis->TriggerAnimation(m_nCurWndId, bar->hideAnimation, bar->hideAnimation);
    }
    ShowWnd(m_nCurWndId, show, 0);
}

void DiscOsdView::DrawAllItem() {
    if (m_pUIAnalysis && m_pWndMng) {
        m_pUIAnalysis->ShowItem(m_nCurWndId, ITEM_SRC_GROUP, false);
        m_pWndMng->drawAllItem();
    }
}

int DiscOsdView::OnUserMessage(APP_MSG_S* msg) {
    if (!msg) {
        return 0;
    }
    switch (msg->word[0]) {
    case DISC_VMSG_PLAYSTATE:
    case DISC_VMSG_DISCSTATE:
        OnUserMsgPlayState();
        return 0;
    case DISC_VMSG_ROOTMENU:
        ShowPlayState();
        return 0;
    case DISC_VMSG_DVDSTATE:
        OnUserMsgDvdState();
        return 1;
    case DISC_VMSG_AUDIOCHANNEL:
        OnUserMsgAudioChannel();
        return 1;
    case DISC_VMSG_PLAYSPEED:
        OnUserMsgPlaySpeed();
        return 0;
    case DISC_VMSG_CLIPSTYPE:
        OnClipsType();
        return 0;
    case DISC_VMSG_TRACKINFO:
        return OnTrackInfo();
    case DISC_VMSG_PLAYTIME:
        OnUserMsgPlayTime();
        return 0;
    case DISC_VMSG_UPDATETIME:
        UpdateDateTime(true);
        return 1;
    case DISC_VMSG_ERRORSTATUS:
        OnErrorStatus();
        return 0;
    case DISC_VMSG_MSGTIP:
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMessage]-------DISC_VMSG_MSGTIP\n");
        OnUserMsgMsgTip();
        return 1;
    default:
        return 0;
    }
}

void DiscOsdView::OnClipsType() {
    m_nCurPlayType = static_cast<uint32_t>(m_data.GetDeviceStatus().nMediaType);
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscOsdView::OnUserMessage]-------set m_nCurPlayType=%d\n",
            static_cast<int>(m_nCurPlayType));
    HideStateView();
    if (const BarRow* bar = FindRow(BARS, &BarRow::clipType, static_cast<int>(m_nCurPlayType))) {
        m_nCurWndId = bar->window;
    }
}

int DiscOsdView::OnTrackInfo() {
    OnUserMsgTrackInfo();
    if (!IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_VIDEO})) {
        return 0;
    }
    m_bTrackChanged = true;
    ShowPlayState();
    return 1;
}

void DiscOsdView::OnErrorStatus() {
    const int error = m_data.GetDeviceStatus().nErrorStatus;
    if (error != ERROR_STATUS_READ && error != ERROR_STATUS_READ_2) {
        return;
    }
    // Logged under the main view's name, as readers of the log expect it.
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]-------READ_ERROR\n");
    if (IsClip({PLAY_TYPE_DVD}) && m_pController) {
        m_bReadError = true;
    }
}

bool DiscOsdView::IsClip(std::initializer_list<int> types) const {
    return std::find(types.begin(), types.end(), static_cast<int>(m_nCurPlayType)) != types.end();
}
