#include "DiscView.h"

#include "DiscViewController.h"
#include "DiscViewLists.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/FindRow.h"
#include "parts/PackedTrack.h"

namespace {

constexpr int TXT_GOTO_CAPTION = 14122;

/** The kind with which PlayTrack is sent for a file of the playing type. */
struct TrackKind {
    int type;
    int kind;
};
constexpr TrackKind TRACK_KINDS[] = {{PLAY_TYPE_MUSIC, 1}, {PLAY_TYPE_PHOTO, 2}, {PLAY_TYPE_VIDEO, 3}};

} // namespace

int DiscView::GotoTotal() const {
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    if (m_nCurPlayType == PLAY_TYPE_CD) {
        return info.mediaIds;
    }
    // Other types do not offer the pad; with no bound nothing can be typed.
    return FindRow(TRACK_KINDS, &TrackKind::type, m_nCurPlayType) ? info.curMediaIds : 0;
}

void DiscView::ShowGotoView() {
    m_pad.Begin(GotoTotal(), TXT_GOTO_CAPTION);
    if (m_uiCurState != VIEW_STATE_GOTO) {
        m_nStateBehindGoto = m_uiCurState;
    }
    m_uiCurState = VIEW_STATE_GOTO;
    DealInputNum();
    ShowWnd(WND_GOTO, true, 0);
}

void DiscView::HideGotoView() {
    m_pad.End();
    const bool bPadShown = m_uiCurState == VIEW_STATE_GOTO;
    if (bPadShown) {
        // The page behind comes back as what it was, so that it goes on to follow the disc and the keys.
        m_uiCurState = m_nStateBehindGoto;
    }
    ShowWnd(WND_GOTO, false, 0);
    // The car may have started or stopped while the pad covered the page.
    if (bPadShown && IsVideoState() && (!m_bVideoAllowed || m_nCurWndId == WND_PARKING)) {
        ApplyParking();
    }
}

void DiscView::DealInputNum() {
    m_pad.DealInputNum();
}

void DiscView::OnClickGotoWnd(long ctrlId) {
    // Checked against the disc as it is now; what is shown stays as it was when the pad was opened.
    const int nTotal = GotoTotal();
    if (NumberPad::IsEntryKey(ctrlId)) {
        ToBeep();
        m_pad.PressEntryKey(ctrlId, nTotal);
        return;
    }
    switch (ctrlId) {
    case GOTO_KEY_OK:
        ToBeep();
        if (m_pController && m_pad.IsConfirmable(nTotal)) {
            SendGoto(m_pad.Number());
            HideGotoView();
        }
        break;
    case GOTO_KEY_CLOSE:
        ToBeep();
        SetDisplayPlayViewTimer();
        OnHandleUIReturnList();
        break;
    case GOTO_ITEM_MODE:
        break; // switches title and chapter in the overlay only
    default:
        OnClickSrcGroup(ctrlId);
        break;
    }
}

void DiscView::SendGoto(int nNumber) {
    if (m_nCurPlayType == PLAY_TYPE_CD) {
        OnHandleUIListClick(ROW_MUSIC, LIST_FROM_CUR_AUDIO, nNumber - 1);
        return;
    }
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    const TrackKind* row = FindRow(TRACK_KINDS, &TrackKind::type, m_nCurPlayType);
    if (!row || nNumber == info.curMediaId) {
        return;
    }
    const int wParam = PackTrack(info.parentFolder, nNumber);
    LOGBASE(LOG_LEV_TRACE, "OnClickGotoWnd", "[DiscView::OnClickGotoWnd] wParam=0x%x\n", wParam);
    Send(&DiscViewController::PlayTrack, wParam, row->kind);
    if (m_nCurPlayType == PLAY_TYPE_MUSIC) {
        OnGotoAudioPlayPage();
    } else {
        GotoVideoPage(m_nCurPlayType);
    }
}
