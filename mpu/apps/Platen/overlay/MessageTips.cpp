#include "overlay/MessageTips.h"

#include "FindRow.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "overlay/OverlayState.h"
#include "overlay/StateDisplay.h"

namespace {

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
    {1, OSD_PIC_NO_FUNCTION, OSD_TXT_NO_FUNCTION, nullptr, Stay::Timed},
    {2, OSD_PIC_PREVIOUS, OSD_TXT_PREVIOUS, nullptr, Stay::Timed},
    {3, OSD_PIC_NEXT, OSD_TXT_NEXT, nullptr, Stay::Timed},
    {4, OSD_PIC_STOP, OSD_TXT_STOP, nullptr, Stay::Sticky},
    {5, OSD_PIC_PAUSE, OSD_TXT_PAUSE, nullptr, Stay::Sticky},
    {6, OSD_PIC_PLAY, OSD_TXT_PLAY, nullptr, Stay::Timed},
    {7, OSD_PIC_REPEAT_OFF, OSD_TXT_REPEAT_OFF, nullptr, Stay::Timed},
    {8, OSD_PIC_REPEAT, OSD_TXT_REPEAT_ALL, nullptr, Stay::Timed},
    {9, OSD_PIC_REPEAT_ONE, OSD_TXT_REPEAT_ONE, nullptr, Stay::Timed},
    {10, OSD_PIC_REPEAT, OSD_TXT_REPEAT_FOLDER, nullptr, Stay::Timed},
    {11, OSD_PIC_AB_OFF, OSD_TXT_REPEAT_OFF, nullptr, Stay::Timed},
    {12, OSD_PIC_AB, OSD_TXT_REPEAT_AB, nullptr, Stay::Timed},
    {18, OSD_PIC_FORWARD, 0, L"x2", Stay::Sticky},
    {19, OSD_PIC_FORWARD, 0, L"x4", Stay::Sticky},
    {20, OSD_PIC_FORWARD, 0, L"x8", Stay::Sticky},
    {21, OSD_PIC_FORWARD, 0, L"x20", Stay::Sticky},
    {22, OSD_PIC_BACKWARD, 0, L"x2", Stay::Sticky},
    {23, OSD_PIC_BACKWARD, 0, L"x4", Stay::Sticky},
    {24, OSD_PIC_BACKWARD, 0, L"x8", Stay::Sticky},
    {25, OSD_PIC_BACKWARD, 0, L"x20", Stay::Sticky},
    {29, OSD_PIC_PBC, OSD_TXT_PBC_ON, nullptr, Stay::Timed},
    {30, OSD_PIC_PBC, OSD_TXT_PBC_OFF, nullptr, Stay::Timed},
};

} // namespace

void MessageTips::OnUserMsgMsgTip() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgMsgTip]\n");
    if (!m_state.IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_VIDEO})) {
        return;
    }
    const TipRow* row = FindRow(TIPS, &TipRow::tip, m_state.m_data.GetMsgTip());
    if (!row) {
        return;
    }
    if (row->speed) {
        m_display.ShowStateView(row->picture, row->speed);
    } else {
        m_display.ShowStateView2(row->picture, row->text);
    }
    if (row->stay == Stay::Timed) {
        m_display.SetDisplayStateTimer();
    } else {
        m_display.KillDisplayStateTimer();
    }
}
