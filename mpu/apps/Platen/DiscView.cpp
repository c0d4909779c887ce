#include "DiscView.h"

#include "DiscOsdView.h"
#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/StatusBar.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"
#include "zmui/CUI_BtList.h"

namespace {

constexpr int TXT_SOURCE_NAME = 30;

constexpr int PAGES_WITH_SOURCE_NAME[] = {WND_DISC_LOADING, WND_FOLDER_LIST, WND_MEDIA_LIST, WND_CD_LIST,
                                          WND_AUDIO_PLAY,   WND_DISC_ERROR,  WND_PARKING};

} // namespace

DiscView::DiscView(const std::string& name) : m_strViewName(name), m_strVideoWin(name + "_video_win") {
    m_discDb.Init();
}

DiscView::~DiscView() = default;

void DiscView::AttachControl(DiscViewController* controller) {
    m_pController = controller;
}

void DiscView::ToBeep() {
    if (m_pController) {
        m_pController->ToBeep();
    }
}

void DiscView::QueryApplication(const char* name) {
    if (m_pController) {
        m_pController->QueryLauncher(name, "null");
    }
}

void DiscView::QueryHome() {
    QueryApplication("zmhome");
}

DiscOsdView* DiscView::Osd() {
    return dynamic_cast<DiscOsdView*>(GetViewUI(OSD_VIEW_NAME));
}

void DiscView::ViewInit() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::ViewInit]\n");
    m_pWndMng = GetUIWndMgrWrapper();
    m_pUIAnalysis = m_pWndMng ? m_pWndMng->GetUIAnalysisObj() : nullptr;
    m_pad.TakeWidgets(m_pUIAnalysis, m_pWndMng);
    if (m_pUIAnalysis) {
        TakeList(WND_MEDIA_LIST, m_pAudioList);
        TakeList(WND_FOLDER_LIST, m_pFolderAudioList);
        TakeList(WND_CD_LIST, m_pCDList);
    }
    m_discDb.InitDataBase();
    if (m_pUIAnalysis) {
        for (const int page : PAGES_WITH_SOURCE_NAME) {
            m_pUIAnalysis->SetItemText(page, ITEM_SRC_BUTTON, TXT_SOURCE_NAME);
        }
        m_pUIAnalysis->SetItemText(WND_AUDIO_PLAY, ITEM_TRACK, L"--/--");
        m_pUIAnalysis->ShowItem(WND_DISC_LOADING, OSD_ITEM_MUTE, false);
        m_pUIAnalysis->ShowItem(WND_DISC_LOADING, OSD_ITEM_AM, false);
        m_pUIAnalysis->ShowItem(WND_DISC_LOADING, OSD_ITEM_PM, false);
        m_pUIAnalysis->SetItemText(WND_DISC_LOADING, OSD_ITEM_TEMP, L"--.-");
        m_pUIAnalysis->SetItemText(WND_DISC_LOADING, OSD_ITEM_CLOCK, L"00:00");
    }
    m_uiCurState = VIEW_STATE_LOADING;
    SetLoadingTimer();
    gettimeofday(&m_tvLastPause, nullptr);
}

void DiscView::TakeList(int nWndId, CUI_BtList*& list) {
    m_pUIAnalysis->GetItemData(nWndId, ITEM_LIST, list);
    if (list) {
        list->DeleteAllItems();
    }
}

bool DiscView::Close() {
    m_discDb.ThreadControl::Close();
    if (m_pController && CDiscData::GetInstance()->GetVideoStatus()) {
        OperateCapture(false);
    }
    return ViewUI::Close();
}

void DiscView::OnGotoAudioPlayPage() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnGotoAudioPlayPage]--------------\n");
    m_uiCurState = VIEW_STATE_AUDIO_PLAY;
    ShowWnd(WND_AUDIO_PLAY, true, 0);
}
