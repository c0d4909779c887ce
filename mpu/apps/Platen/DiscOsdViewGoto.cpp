#include "DiscOsdView.h"

#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/PackedTrack.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr int TRACK_KIND_NONE = 0;
constexpr int TRACK_KIND_VIDEO = 3;

} // namespace

int DiscOsdView::GotoTotal() const {
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    if (IsClip({PLAY_TYPE_DVD})) {
        return m_nGotoType == OSD_GOTO_CHAPTER ? info.chapters : info.titles;
    }
    return IsClip({PLAY_TYPE_VIDEO}) ? info.curMediaIds : info.mediaIds;
}

int DiscOsdView::GotoCaption() const {
    switch (m_nGotoType) {
    case OSD_GOTO_TITLE:
        return OSD_TXT_GOTO_TITLE;
    case OSD_GOTO_CHAPTER:
        return OSD_TXT_GOTO_CHAPTER;
    default:
        return OSD_TXT_GOTO_TRACK;
    }
}

void DiscOsdView::ShowGotoView() {
    m_nGotoType = IsClip({PLAY_TYPE_DVD}) ? OSD_GOTO_TITLE : OSD_GOTO_TRACK;
    m_pad.Begin(GotoTotal(), GotoCaption());
    DealInputNum();
    ShowWnd(OSD_WND_GOTO, true, 0);
}

void DiscOsdView::HideGotoView() {
    if (m_bGotoShown) {
        EndGoto();
    }
}

void DiscOsdView::EndGoto() {
    m_pad.End();
    ShowWnd(OSD_WND_GOTO, false, 0);
}

void DiscOsdView::DealInputNum() {
    m_pad.DealInputNum();
}

void DiscOsdView::OnClickGotoWnd(long ctrlId) {
    // The bound follows the disc while the pad is open.
    const int total = GotoTotal();
    m_pad.SetTotal(total);
    if (NumberPad::IsEntryKey(ctrlId)) {
        ToBeep();
        m_pad.PressEntryKey(ctrlId, total);
        return;
    }
    switch (ctrlId) {
    case GOTO_KEY_OK:
        ToBeep();
        if (m_pController && m_pad.IsConfirmable(total)) {
            SendGoto(m_pad.Number());
            EndGoto();
        }
        break;
    case GOTO_ITEM_MODE:
        ToBeep();
        SwitchGotoType();
        break;
    case GOTO_KEY_CLOSE:
        ToBeep();
        m_pad.ClearEntry();
        ShowWnd(OSD_WND_GOTO, false, 0);
        break;
    default:
        break;
    }
}

void DiscOsdView::SwitchGotoType() {
    if (!IsClip({PLAY_TYPE_DVD})) {
        return;
    }
    m_nGotoType = m_nGotoType == OSD_GOTO_TITLE ? OSD_GOTO_CHAPTER : OSD_GOTO_TITLE;
    m_pad.Begin(GotoTotal(), GotoCaption());
    if (m_pUIAnalysis) {
        m_pUIAnalysis->drawItem(OSD_WND_GOTO, GOTO_ITEM_MODE);
        m_pUIAnalysis->drawItem(OSD_WND_GOTO, GOTO_ITEM_DISPLAY);
    }
    DealInputNum();
}

void DiscOsdView::SendGoto(int number) {
    switch (m_nGotoType) {
    case OSD_GOTO_TITLE:
        m_nNextChapter = 1;
        m_pController->PlayTitle(number);
        break;
    case OSD_GOTO_CHAPTER:
        m_nNextChapter = number;
        m_pController->PlayChapter(number);
        break;
    default:
        SendGotoTrack(number);
        break;
    }
}

void DiscOsdView::SendGotoTrack(int number) {
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    if (IsClip({PLAY_TYPE_VCD})) {
        m_pController->PlayTrack(number, TRACK_KIND_NONE);
    } else if (IsClip({PLAY_TYPE_VIDEO}) && number != info.curMediaId) {
        const int wParam = PackTrack(info.parentFolder, number);
        // Both views' pads write this line under the main view's name.
        LOGBASE(LOG_LEV_TRACE, "OnClickGotoWnd", "[DiscView::OnClickGotoWnd] wParam=0x%x\n", wParam);
        m_pController->PlayTrack(wParam, TRACK_KIND_VIDEO);
    }
}
