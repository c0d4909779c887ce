#include "DiscOsdView.h"

#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/DiscTimers.h"
#include "parts/FindRow.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr int PIC_FORWARD = 256;
constexpr int PIC_BACKWARD = 257;

enum class Stay {
    Timed, ///< goes after 3 s
    Sticky ///< stays until another takes its place
};

/** The state display of each message tip; tips without a row show nothing. `speed` stands instead of a
 * resource text. */
struct TipRow {
    int tip;
    int picture;
    int text;
    const wchar_t* speed;
    Stay stay;
};
constexpr TipRow TIPS[] = {
    {1, 275, 163, nullptr, Stay::Timed},        {2, 263, 114, nullptr, Stay::Timed},
    {3, 262, 113, nullptr, Stay::Timed},        {4, 272, 133, nullptr, Stay::Sticky},
    {5, 259, 112, nullptr, Stay::Sticky},       {6, 268, 129, nullptr, Stay::Timed},
    {7, 258, 156, nullptr, Stay::Timed},        {8, 265, 155, nullptr, Stay::Timed},
    {9, 267, 154, nullptr, Stay::Timed},        {10, 265, 164, nullptr, Stay::Timed},
    {11, 270, 156, nullptr, Stay::Timed},       {12, 264, 157, nullptr, Stay::Timed},
    {18, PIC_FORWARD, 0, L"x2", Stay::Sticky},  {19, PIC_FORWARD, 0, L"x4", Stay::Sticky},
    {20, PIC_FORWARD, 0, L"x8", Stay::Sticky},  {21, PIC_FORWARD, 0, L"x20", Stay::Sticky},
    {22, PIC_BACKWARD, 0, L"x2", Stay::Sticky}, {23, PIC_BACKWARD, 0, L"x4", Stay::Sticky},
    {24, PIC_BACKWARD, 0, L"x8", Stay::Sticky}, {25, PIC_BACKWARD, 0, L"x20", Stay::Sticky},
    {29, 276, 161, nullptr, Stay::Timed},       {30, 276, 162, nullptr, Stay::Timed},
};

} // namespace

void DiscOsdView::OnUserMsgMsgTip() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgMsgTip]\n");
    if (!IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_VIDEO})) {
        return;
    }
    const TipRow* row = FindRow(TIPS, &TipRow::tip, m_data.GetMsgTip());
    if (!row) {
        return;
    }
    if (row->speed) {
        ShowStateView(row->picture, row->speed);
    } else {
        ShowStateView2(row->picture, row->text);
    }
    if (row->stay == Stay::Timed) {
        SetDisplayStateTimer();
    } else {
        KillDiscTimer(m_pController, ENUM_TIMER_DISPLAY_STATE);
    }
}

void DiscOsdView::OnUserMsgPlayState() {
    const int state = m_data.GetCurPlayStatus().discState;
    if (IsClip({PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO})) {
        ShowFileCounter();
    }
    if (state == DISC_STATE_STOPPED && IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_VIDEO})) {
        m_bPauseShown = true;
        ShowStateView2(OSD_PIC_PAUSE, OSD_TXT_PAUSE);
        KillDiscTimer(m_pController, ENUM_TIMER_DISPLAY_STATE);
    }
    if (state != DISC_STATE_STOPPED && m_bPauseShown) {
        HideStateView();
        m_bPauseShown = false;
    }
    if (IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_PHOTO, PLAY_TYPE_VIDEO})) {
        ShowPlayButton(state);
    }
}

void DiscOsdView::ShowPlayButton(int state) {
    switch (state) {
    case DISC_STATE_STOPPED:
        SwapButtons(OSD_ITEM_PLAY, OSD_ITEM_PAUSE);
        ResumeAfterError();
        break;
    case DISC_STATE_PLAYING:
        SwapButtons(OSD_ITEM_PAUSE, OSD_ITEM_PLAY);
        FollowChapter();
        break;
    case DISC_STATE_PAUSED:
    case DISC_STATE_FAST_FORWARD:
    case DISC_STATE_FAST_BACKWARD:
        SwapButtons(OSD_ITEM_PLAY, OSD_ITEM_PAUSE);
        break;
    default:
        break;
    }
}

void DiscOsdView::SwapButtons(int shown, int hidden) {
    if (m_pUIAnalysis) {
        m_pUIAnalysis->ShowItem(m_nCurWndId, shown, true);
        m_pUIAnalysis->ShowItem(m_nCurWndId, hidden, false);
        m_pUIAnalysis->drawItem(m_nCurWndId, OSD_ITEM_PLAY);
        m_pUIAnalysis->drawItem(m_nCurWndId, OSD_ITEM_PAUSE);
    }
}

void DiscOsdView::ResumeAfterError() {
    const int error = m_data.GetDeviceStatus().nErrorStatus;
    if (IsClip({PLAY_TYPE_DVD}) && error != 0 && m_pController) {
        m_pController->Play();
    }
}

void DiscOsdView::FollowChapter() {
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    if (!IsClip({PLAY_TYPE_DVD}) || !m_bReadError) {
        m_nNextChapter = info.chapter + 1;
        return;
    }
    m_bReadError = false;
    if (m_nNextChapter < info.chapters) {
        m_pController->PlayChapter(m_nNextChapter + 1);
        ++m_nNextChapter;
    } else if (m_nNextChapter == info.chapters) {
        m_pController->PlayTitle(info.title + 1);
        m_nNextChapter = 2;
    }
}
