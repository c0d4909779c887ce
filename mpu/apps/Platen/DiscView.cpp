#include "DiscView.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "DiscViewParts.h"
#include "Log.h"
#include "parts/DiscTimers.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

namespace {

constexpr int PAGES_WITH_SOURCE_NAME[] = {WND_DISC_LOADING, WND_FOLDER_LIST, WND_MEDIA_LIST, WND_CD_LIST,
                                          WND_AUDIO_PLAY,   WND_DISC_ERROR,  WND_PARKING};

/** What the pages show until something is known. */
void SetStartValues(CUIAnalysis& ui) {
    for (const int page : PAGES_WITH_SOURCE_NAME) {
        ui.SetItemText(page, ITEM_SRC_BUTTON, TXT_SOURCE_NAME);
    }
    ui.SetItemText(WND_AUDIO_PLAY, ITEM_TRACK, L"--/--");
    ui.ShowItem(WND_DISC_LOADING, OSD_ITEM_MUTE, false);
    ui.ShowItem(WND_DISC_LOADING, OSD_ITEM_AM, false);
    ui.ShowItem(WND_DISC_LOADING, OSD_ITEM_PM, false);
    ui.SetItemText(WND_DISC_LOADING, OSD_ITEM_TEMP, L"--.-");
    ui.SetItemText(WND_DISC_LOADING, OSD_ITEM_CLOCK, L"00:00");
}

} // namespace

DiscView::DiscView(const std::string& name, CDiscData& data)
    : m_pParts(std::make_unique<DiscViewParts>(*this, name, data)) {
    m_pParts->m_discDb.Init();
}

DiscView::~DiscView() = default;

void DiscView::AttachControl(DiscViewController* controller) {
    m_pParts->control.AttachControl(controller);
}

void DiscView::ViewInit() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::ViewInit]\n");
    Widgets& widgets = m_pParts->widgets;
    widgets.m_pWndMng = GetUIWndMgrWrapper();
    widgets.m_pUIAnalysis = widgets.m_pWndMng ? widgets.m_pWndMng->GetUIAnalysisObj() : nullptr;
    m_pParts->gotoPage.TakeWidgets();
    if (widgets.m_pUIAnalysis) {
        m_pParts->listControls.TakeLists(*widgets.m_pUIAnalysis);
    }
    m_pParts->m_discDb.InitDataBase();
    if (widgets.m_pUIAnalysis) {
        SetStartValues(*widgets.m_pUIAnalysis);
    }
    m_pParts->state.m_uiCurState = VIEW_STATE_LOADING;
    m_pParts->control.SetLoadingTimer();
    m_pParts->launcher.Begin();
}

void DiscView::SetVoicePlayPar(std::string song) {
    m_pParts->search.SetVoicePlayPar(song);
}

void DiscView::SetWaitDeviceStateTimer() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "**************[DiscView::SetWaitDeviceStateTimer]*******************\n");
    m_pParts->control.StartTimer(ENUM_TIMER_WAIT_DEVICESTATE);
}

bool DiscView::Close() {
    m_pParts->m_discDb.ThreadControl::Close();
    if (m_pParts->data.GetVideoStatus()) {
        m_pParts->video.OperateCapture(false);
    }
    return ViewUI::Close();
}

int DiscView::OnChildPost(const char* strChild) {
    const std::string child = strChild ? strChild : "";
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnChildPost] strChild=%s\n", child.c_str());
    if (child == m_pParts->video.Name()) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
                "[DiscView::OnChildPost] ================== video view ======\n");
        m_pParts->video.OnPosted();
        return 1;
    }
    if (child == OSD_VIEW_NAME) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnChildPost] ================== osd view ======\n");
        m_pParts->overlay.SetVisibleOsd(false);
        return 1;
    }
    return 0;
}

void DiscView::OnShow(int dwWndId, bool bShow, int) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnShow] dwWndId=%d,bShow=%d\n", dwWndId, bShow);
    if (!bShow) {
        return;
    }
    m_pParts->state.m_nCurWndId = dwWndId;
    if (CUIAnalysis* ui = m_pParts->widgets.m_pUIAnalysis) {
        ui->ShowItem(dwWndId, OSD_ITEM_SRC_GROUP, false);
        FillPage(dwWndId);
    }
    m_pParts->indicators.FillPage();
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnShow] end\n");
}

void DiscView::FillPage(int nWndId) {
    switch (nWndId) {
    case WND_AUDIO_PLAY:
        m_pParts->playPage.OnUserMsgPlayState();
        m_pParts->trackReports.OnUserMsgTrackInfo();
        m_pParts->playPage.OnUserMsgPlayTime();
        break;
    case WND_PARKING:
        m_pParts->films.FillParkingPage();
        break;
    case WND_GOTO:
        m_pParts->gotoPage.FillPage();
        break;
    case WND_DISC_ERROR:
        m_pParts->notices.FillErrorPage();
        break;
    case WND_MEDIA_LIST:
    case WND_FOLDER_LIST:
        m_pParts->listPage.FillListPage(nWndId);
        break;
    case WND_CD_LIST:
        m_pParts->listPage.FillCDPage();
        break;
    default:
        break;
    }
}
