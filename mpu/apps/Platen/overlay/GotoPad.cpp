#include "overlay/GotoPad.h"

#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "overlay/ChapterSteps.h"
#include "overlay/OverlayState.h"
#include "parts/PackedTrack.h"
#include "zmcar/ViewUI.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr int TRACK_KIND_NONE = 0;
constexpr int TRACK_KIND_VIDEO = 3;

} // namespace

void GotoPad::TakeWidgets() {
    m_pad.TakeWidgets(m_state.m_pUIAnalysis, m_state.m_pWndMng);
}

int GotoPad::GotoTotal() const {
    const T_MPEG_MEDIA_INFO info = m_state.m_data.GetCurPlayInfo();
    if (m_state.IsClip({PLAY_TYPE_DVD})) {
        return m_nGotoType == OSD_GOTO_CHAPTER ? info.chapters : info.titles;
    }
    return m_state.IsClip({PLAY_TYPE_VIDEO}) ? info.curMediaIds : info.mediaIds;
}

int GotoPad::GotoCaption() const {
    switch (m_nGotoType) {
    case OSD_GOTO_TITLE:
        return OSD_TXT_GOTO_TITLE;
    case OSD_GOTO_CHAPTER:
        return OSD_TXT_GOTO_CHAPTER;
    default:
        return OSD_TXT_GOTO_TRACK;
    }
}

void GotoPad::ShowGotoView() {
    m_nGotoType = m_state.IsClip({PLAY_TYPE_DVD}) ? OSD_GOTO_TITLE : OSD_GOTO_TRACK;
    m_pad.Begin(GotoTotal(), GotoCaption());
    DealInputNum();
    m_view.ShowWnd(OSD_WND_GOTO, true, 0);
}

void GotoPad::HideGotoView() {
    if (m_bGotoShown) {
        EndGoto();
    }
}

void GotoPad::EndGoto() {
    m_pad.End();
    m_view.ShowWnd(OSD_WND_GOTO, false, 0);
}

void GotoPad::OnClickGotoWnd(long ctrlId) {
    // The bound follows the disc while the pad is open.
    const int total = GotoTotal();
    m_pad.SetTotal(total);
    if (NumberPad::IsEntryKey(ctrlId)) {
        m_state.ToBeep();
        m_pad.PressEntryKey(ctrlId, total);
        return;
    }
    switch (ctrlId) {
    case GOTO_KEY_OK:
        m_state.ToBeep();
        if (m_state.m_pController && m_pad.IsConfirmable(total)) {
            SendGoto(m_pad.Number());
            EndGoto();
        }
        break;
    case GOTO_ITEM_MODE:
        m_state.ToBeep();
        SwitchGotoType();
        break;
    case GOTO_KEY_CLOSE:
        m_state.ToBeep();
        m_pad.ClearEntry();
        m_view.ShowWnd(OSD_WND_GOTO, false, 0);
        break;
    default:
        break;
    }
}

void GotoPad::SwitchGotoType() {
    if (!m_state.IsClip({PLAY_TYPE_DVD})) {
        return;
    }
    m_nGotoType = m_nGotoType == OSD_GOTO_TITLE ? OSD_GOTO_CHAPTER : OSD_GOTO_TITLE;
    m_pad.Begin(GotoTotal(), GotoCaption());
    if (m_state.m_pUIAnalysis) {
        m_state.m_pUIAnalysis->drawItem(OSD_WND_GOTO, GOTO_ITEM_MODE);
        m_state.m_pUIAnalysis->drawItem(OSD_WND_GOTO, GOTO_ITEM_DISPLAY);
    }
    DealInputNum();
}

void GotoPad::SendGoto(int number) {
    switch (m_nGotoType) {
    case OSD_GOTO_TITLE:
        m_steps.SetNext(1);
        m_state.m_pController->PlayTitle(number);
        break;
    case OSD_GOTO_CHAPTER:
        m_steps.SetNext(number);
        m_state.m_pController->PlayChapter(number);
        break;
    default:
        SendGotoTrack(number);
        break;
    }
}

void GotoPad::SendGotoTrack(int number) {
    const T_MPEG_MEDIA_INFO info = m_state.m_data.GetCurPlayInfo();
    if (m_state.IsClip({PLAY_TYPE_VCD})) {
        m_state.m_pController->PlayTrack(number, TRACK_KIND_NONE);
    } else if (m_state.IsClip({PLAY_TYPE_VIDEO}) && number != info.curMediaId) {
        const int wParam = PackTrack(info.parentFolder, number);
        // Both views' pads write this line under the main view's name.
        LOGBASE(LOG_LEV_TRACE, "OnClickGotoWnd", "[DiscView::OnClickGotoWnd] wParam=0x%x\n", wParam);
        m_state.m_pController->PlayTrack(wParam, TRACK_KIND_VIDEO);
    }
}
