#include "input/GotoPage.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "lists/ListChange.h"
#include "lists/MediaTypes.h"
#include "lists/RowPlay.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "pages/PlayPage.h"
#include "pages/SourcePopup.h"
#include "parts/ControlLink.h"
#include "parts/PackedTrack.h"
#include "parts/Widgets.h"
#include "zmcar/ViewUI.h"
#include "zmui/CUIAnalysis.h"

void GotoPage::TakeWidgets() {
    m_pad.TakeWidgets(m_widgets.m_pUIAnalysis, m_widgets.m_pWndMng);
}

int GotoPage::GotoTotal() const {
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    if (m_state.m_nCurPlayType == PLAY_TYPE_CD) {
        return info.mediaIds;
    }
    // Other types do not offer the pad; with no bound nothing can be typed.
    return FindMediaType(m_state.m_nCurPlayType) ? info.curMediaIds : 0;
}

void GotoPage::ShowGotoView() {
    m_pad.Begin(GotoTotal(), TXT_GOTO_CAPTION);
    if (m_state.m_uiCurState != VIEW_STATE_GOTO) {
        m_nStateBehindGoto = m_state.m_uiCurState;
    }
    m_state.m_uiCurState = VIEW_STATE_GOTO;
    DealInputNum();
    m_view.ShowWnd(WND_GOTO, true, 0);
}

void GotoPage::HideGotoView() {
    m_pad.End();
    const bool bPadShown = m_state.m_uiCurState == VIEW_STATE_GOTO;
    if (bPadShown) {
        // The page behind comes back as what it was, so that it goes on to follow the disc and the keys.
        m_state.m_uiCurState = m_nStateBehindGoto;
    }
    m_view.ShowWnd(WND_GOTO, false, 0);
    // The car may have started or stopped while the pad covered the page.
    const bool bGateMoved = !m_films.IsVideoAllowed() || m_state.m_nCurWndId == WND_PARKING;
    if (bPadShown && m_state.IsVideoState() && bGateMoved) {
        m_films.ApplyParking();
    }
}

void GotoPage::FillPage() {
    m_widgets.m_pUIAnalysis->ShowItem(WND_GOTO, ITEM_BACK, true);
    m_widgets.m_pUIAnalysis->ShowItem(WND_GOTO, ITEM_HOME, false);
}

void GotoPage::OnClickGotoWnd(long ctrlId) {
    // Checked against the disc as it is now; what is shown stays as it was when the pad was opened.
    const int nTotal = GotoTotal();
    if (NumberPad::IsEntryKey(ctrlId)) {
        m_control.ToBeep();
        m_pad.PressEntryKey(ctrlId, nTotal);
        return;
    }
    switch (ctrlId) {
    case GOTO_KEY_OK:
        m_control.ToBeep();
        if (m_control.Controller() && m_pad.IsConfirmable(nTotal)) {
            SendGoto(m_pad.Number());
            HideGotoView();
        }
        break;
    case GOTO_KEY_CLOSE:
        m_control.ToBeep();
        m_control.SetDisplayPlayViewTimer();
        m_change.OnHandleUIReturnList();
        break;
    case GOTO_ITEM_MODE:
        break; // switches title and chapter in the overlay only
    default:
        m_sources.OnClickSrcGroup(ctrlId);
        break;
    }
}

void GotoPage::SendGoto(int nNumber) {
    if (m_state.m_nCurPlayType == PLAY_TYPE_CD) {
        m_rowPlay.OnHandleUIListClick(ROW_MUSIC, LIST_FROM_CUR_AUDIO, nNumber - 1);
        return;
    }
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    const MediaType* type = FindMediaType(m_state.m_nCurPlayType);
    if (!type || nNumber == info.curMediaId) {
        return;
    }
    const int wParam = PackTrack(info.parentFolder, nNumber);
    LOGBASE(LOG_LEV_TRACE, "OnClickGotoWnd", "[DiscView::OnClickGotoWnd] wParam=0x%x\n", wParam);
    m_control.Send(&DiscViewController::PlayTrack, wParam, type->trackKind);
    if (type->type == PLAY_TYPE_MUSIC) {
        m_playPage.OnGotoAudioPlayPage();
    } else {
        m_films.GotoVideoPage(type->type);
    }
}
