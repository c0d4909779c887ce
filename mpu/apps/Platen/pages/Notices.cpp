#include "pages/Notices.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "FindRow.h"
#include "Log.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "parts/DiscTimers.h"
#include "parts/Widgets.h"
#include "video/OverlayWindow.h"
#include "video/VideoWindow.h"
#include "zmcar/ViewUI.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr unsigned int NO_TIMER = 0;

struct NoticeRow {
    Notice notice;
    int textId;
    int iconId;
    bool busy;
    ViewState state;
    unsigned int timer;
};

constexpr NoticeRow NOTICES[] = {
    {Notice::Loading, TXT_LIST_WAIT, ICON_NONE, true, VIEW_STATE_LOADING, ENUM_TIMER_LOADING},
    {Notice::NoDisc, TXT_NO_DISC, ICON_NO_DISC, false, VIEW_STATE_NO_DISC, ENUM_TIMER_NO_DISC},
    // The next disc state ends it.
    {Notice::Ejecting, TXT_EJECTING, ICON_EJECTING, false, VIEW_STATE_EXIT, NO_TIMER},
    {Notice::RegionError, TXT_REGION_ERROR, ICON_REGION_ERROR, false, VIEW_STATE_REGION_ERROR,
     ENUM_TIMER_NO_DISC},
};

} // namespace

void Notices::ShowMessage(Notice notice) {
    const NoticeRow& row = *FindRow(NOTICES, &NoticeRow::notice, notice);
    if (CUIAnalysis* ui = m_widgets.m_pUIAnalysis) {
        ui->SetItemText(WND_DISC_LOADING, ITEM_MESSAGE, row.textId);
        ui->SetItemIcon(WND_DISC_LOADING, ITEM_MESSAGE, row.iconId, ITEM_STATE_ALL);
        ui->ShowItem(WND_DISC_LOADING, ITEM_BUSY, row.busy);
    }
    m_view.ShowWnd(WND_DISC_LOADING, true, 0);
    m_state.m_uiCurState = row.state;
    m_control.StartTimer(row.timer);
}

void Notices::RegionError() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[RegionError]\n");
    ShowMessage(Notice::RegionError);
}

void Notices::DiscError() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscError]\n");
    for (const unsigned int id : {ENUM_TIMER_UNUSED, ENUM_TIMER_QUERY_WAIT, ENUM_TIMER_DISPLAY_OSD}) {
        m_control.KillTimer(id);
    }
    m_video.OperateCapture(false);
    m_overlay.SetVisibleOsd(false);
    ShowErrorPage();
}

void Notices::ShowErrorPage() {
    m_view.ShowWnd(WND_DISC_ERROR, true, 0);
    m_state.m_uiCurState = VIEW_STATE_DISC_ERROR;
    m_control.SetDisplayNoDiscTimer();
}

void Notices::DiscExit() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscExit]\n");
    for (const unsigned int id :
         {ENUM_TIMER_UNUSED, ENUM_TIMER_QUERY_WAIT, ENUM_TIMER_DISPLAY_STATE, ENUM_TIMER_DISPLAY_OSD}) {
        m_control.KillTimer(id);
    }
    ShowMessage(Notice::Ejecting);
    m_video.SetVisibleVideo(false);
    m_overlay.WithdrawOsd();
    m_video.OperateCapture(false);
}

void Notices::FillErrorPage() {
    m_widgets.m_pUIAnalysis->SetItemText(WND_DISC_ERROR, ITEM_ERROR_TEXT, TXT_DISC_ERROR);
}

void Notices::OnTimerNoDisc() {
    m_control.KillTimer(ENUM_TIMER_NO_DISC);
    DiscViewController* controller = m_control.Controller();
    if (!controller) {
        return;
    }
    switch (m_state.m_uiCurState) {
    case VIEW_STATE_NO_DISC:
    case VIEW_STATE_15:
        controller->QueryCloseApp(MAIN_VIEW_NAME, "null");
        break;
    case VIEW_STATE_DISC_ERROR:
    case VIEW_STATE_16:
    case VIEW_STATE_REGION_ERROR:
        controller->Eject();
        break;
    default:
        break;
    }
}

void Notices::OnTimerWaitDeviceState() {
    m_control.KillTimer(ENUM_TIMER_WAIT_DEVICESTATE);
    if (m_state.m_uiCurState == VIEW_STATE_LOADING) {
        ShowMessage(Notice::NoDisc);
    }
}

void Notices::OnTimerLoading() {
    m_control.KillTimer(ENUM_TIMER_LOADING);
    if (m_state.m_uiCurState == VIEW_STATE_LOADING) {
        ShowErrorPage();
    }
}
