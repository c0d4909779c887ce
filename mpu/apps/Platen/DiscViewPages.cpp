#include "DiscView.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "parts/DiscTimers.h"
#include "parts/FindRow.h"
#include "parts/SourceGroup.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr int TXT_DISC_ERROR = 13007;

struct TypeIcon {
    int type;
    int icon;
};

constexpr TypeIcon TYPE_ICONS[] = {{PLAY_TYPE_VIDEO, 80}, {PLAY_TYPE_PHOTO, 55}, {PLAY_TYPE_MUSIC, 90}};

} // namespace

/** A message on WND_DISC_LOADING: its content, the state that it stands for and the timer that goes with it.
 */
struct DiscView::MessageRow {
    Message message;
    int textId;
    int iconId;
    bool busy;
    int state;
    unsigned int timer; ///< 0: none
};

void DiscView::ShowMessage(Message message) {
    static constexpr MessageRow ROWS[] = {
        {Message::Loading, 33, 0, true, VIEW_STATE_LOADING, ENUM_TIMER_LOADING},
        {Message::NoDisc, 34, 133, false, VIEW_STATE_NO_DISC, ENUM_TIMER_NO_DISC},
        // The next disc state ends it.
        {Message::Ejecting, 110, 134, false, VIEW_STATE_EXIT, 0},
        {Message::RegionError, 13067, 125, false, VIEW_STATE_REGION_ERROR, ENUM_TIMER_NO_DISC},
    };
    const MessageRow& row = *FindRow(ROWS, &MessageRow::message, message);
    if (m_pUIAnalysis) {
        m_pUIAnalysis->SetItemText(WND_DISC_LOADING, ITEM_MESSAGE, row.textId);
        m_pUIAnalysis->SetItemIcon(WND_DISC_LOADING, ITEM_MESSAGE, row.iconId, ITEM_STATE_ALL);
        m_pUIAnalysis->ShowItem(WND_DISC_LOADING, ITEM_BUSY, row.busy);
    }
    ShowWnd(WND_DISC_LOADING, true, 0);
    m_uiCurState = row.state;
    StartDiscTimer(m_pController, row.timer);
}

void DiscView::RegionError() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[RegionError]\n");
    ShowMessage(Message::RegionError);
}

void DiscView::DiscError() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscError]\n");
    for (const unsigned int id : {ENUM_TIMER_UNUSED, ENUM_TIMER_QUERY_WAIT, ENUM_TIMER_DISPLAY_OSD}) {
        KillTimer(id);
    }
    OperateCapture(false);
    SetVisibleOsd(false);
    ShowErrorPage();
}

void DiscView::ShowErrorPage() {
    ShowWnd(WND_DISC_ERROR, true, 0);
    m_uiCurState = VIEW_STATE_DISC_ERROR;
    SetDisplayNoDiscTimer();
}

void DiscView::DiscExit() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscExit]\n");
    for (const unsigned int id :
         {ENUM_TIMER_UNUSED, ENUM_TIMER_QUERY_WAIT, ENUM_TIMER_DISPLAY_STATE, ENUM_TIMER_DISPLAY_OSD}) {
        KillTimer(id);
    }
    ShowMessage(Message::Ejecting);
    SetVisibleVideo(false);
    WithdrawOsd();
    OperateCapture(false);
}

void DiscView::OnShow(int dwWndId, bool bShow, int) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnShow] dwWndId=%d,bShow=%d\n", dwWndId, bShow);
    if (!bShow) {
        return;
    }
    m_nCurWndId = dwWndId;
    if (m_pUIAnalysis) {
        m_pUIAnalysis->ShowItem(dwWndId, ITEM_SRC_GROUP, false);
        FillPage(dwWndId);
    }
    UpdateMuteStatus(false);
    UpdateBTStatus(false);
    UpdateCarTemp(false);
    UpdateDateTime(false);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnShow] end\n");
}

void DiscView::FillPage(int nWndId) {
    switch (nWndId) {
    case WND_AUDIO_PLAY:
        OnUserMsgPlayState();
        OnUserMsgTrackInfo();
        OnUserMsgPlayTime();
        break;
    case WND_PARKING:
        FillParkingPage();
        break;
    case WND_GOTO:
        m_pUIAnalysis->ShowItem(nWndId, ITEM_BACK, true);
        m_pUIAnalysis->ShowItem(nWndId, ITEM_HOME, false);
        break;
    case WND_DISC_ERROR:
        m_pUIAnalysis->SetItemText(nWndId, ITEM_ERROR_TEXT, TXT_DISC_ERROR);
        break;
    case WND_MEDIA_LIST:
    case WND_FOLDER_LIST:
        FillListPage(nWndId);
        break;
    case WND_CD_LIST:
        m_pUIAnalysis->ShowItem(nWndId, ITEM_TO_PLAYING, true);
        OnFunc_ListJmp_UiFrom(m_nCurListFrom, m_bSelPlayingRow);
        break;
    }
}

void DiscView::FillParkingPage() {
    const bool bPhoto = m_nCurPlayType == PLAY_TYPE_PHOTO;
    if (bPhoto || m_nCurPlayType == PLAY_TYPE_VCD || m_nCurPlayType == PLAY_TYPE_DVD) {
        m_pUIAnalysis->ShowItem(WND_PARKING, ITEM_BACK, bPhoto);
        m_pUIAnalysis->ShowItem(WND_PARKING, ITEM_HOME, !bPhoto);
    }
}

void DiscView::FillListPage(int nWndId) {
    m_pUIAnalysis->ShowItem(nWndId, ITEM_TO_PLAYING, !m_bNoFileOfType && m_nCurPlayType == m_nCurType);
    UpdateTitleRight(nWndId);
    if (const TypeIcon* row = FindRow(TYPE_ICONS, &TypeIcon::type, m_nCurType)) {
        m_pUIAnalysis->SetItemIcon(nWndId, ITEM_TYPE_ICON, row->icon, ITEM_STATE_ALL);
    }
    SetMediaTypeIcon(nWndId);
}
