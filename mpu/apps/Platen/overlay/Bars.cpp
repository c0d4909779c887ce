#include "overlay/Bars.h"

#include "FindRow.h"
#include "overlay/OverlayState.h"
#include "parts/SourceGroup.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

namespace {

constexpr int PROGRESS_MAXIMUM = 100;

/** A bar: the clips that it belongs to, the animation that plays when it goes, what it carries. A disc's bar
 * has the state display, a file's a title. */
struct BarRow {
    int window;
    int clipType;
    int hideAnimation;
    bool hasTimes;
    bool isDisc;
    bool hasChapter;
};
constexpr BarRow BARS[] = {
    {OSD_WND_DVD, PLAY_TYPE_DVD, 6, true, true, true},
    {OSD_WND_VCD, PLAY_TYPE_VCD, 4, true, true, false},
    {OSD_WND_PICTURE, PLAY_TYPE_PHOTO, 2, false, false, false},
    {OSD_WND_VIDEO, PLAY_TYPE_VIDEO, 4, true, false, false},
};

const BarRow* FindBar(int window) {
    return FindRow(BARS, &BarRow::window, window);
}

void InitTimes(CUIAnalysis& ui, int window) {
    ui.SetItemText(window, OSD_ITEM_TRACK, L"--/--");
    ui.SetItemText(window, OSD_ITEM_ELAPSED, L"00:00");
    ui.SetItemText(window, OSD_ITEM_TOTAL, L"00:00");
    ui.SetProgressItemValues(window, OSD_ITEM_PROGRESS, PROGRESS_MAXIMUM, 0);
    ui.SetProgressItemPos(window, OSD_ITEM_PROGRESS, 0);
}

void InitStateDisplay(CUIAnalysis& ui, int window) {
    ui.ShowItem(window, OSD_ITEM_TOP_3, true);
    ui.ShowItem(window, OSD_ITEM_TOP_4, false);
    ui.ShowItem(window, OSD_ITEM_STATE_PIC, false);
    ui.SetItemIcon(window, OSD_ITEM_STATE_PIC, OSD_PIC_NONE, ITEM_STATE_ALL);
    ui.SetItemText(window, OSD_ITEM_STATE_TEXT, L" ");
}

} // namespace

void Bars::Init() {
    CUIAnalysis& ui = *m_state.m_pUIAnalysis;
    for (const BarRow& bar : BARS) {
        if (bar.hasTimes) {
            InitTimes(ui, bar.window);
        }
        if (bar.hasChapter) {
            ui.SetItemText(bar.window, OSD_ITEM_CHAPTER, L"--/--");
        }
        if (bar.isDisc) {
            InitStateDisplay(ui, bar.window);
        } else {
            ui.SetItemText(bar.window, OSD_ITEM_PIC_TEXT, OSD_TXT_PIC_TITLE);
        }
    }
}

void Bars::FollowClip() {
    if (const BarRow* bar = FindRow(BARS, &BarRow::clipType, static_cast<int>(m_state.m_nCurPlayType))) {
        m_state.m_nCurWndId = bar->window;
    }
}

void Bars::PlayHideAnimation() {
    const BarRow* bar = FindBar(m_state.m_nCurWndId);
    if (bar && m_state.m_pUIAnalysis) {
        m_state.m_pUIAnalysis->TriggerAnimation(bar->window, bar->hideAnimation, bar->hideAnimation);
    }
}

void Bars::HideSourceGroup(int window) {
    if (m_state.m_pUIAnalysis) {
        m_state.m_pUIAnalysis->ShowItem(window, OSD_ITEM_SRC_GROUP, false);
    }
}

void Bars::DrawAllItem() {
    if (m_state.m_pUIAnalysis && m_state.m_pWndMng) {
        HideSourceGroup(m_state.m_nCurWndId);
        m_state.m_pWndMng->drawAllItem();
    }
}

bool Bars::IsBar(int window) {
    return FindBar(window) != nullptr;
}

bool Bars::IsDiscBar(int window) {
    const BarRow* bar = FindBar(window);
    return bar && bar->isDisc;
}
