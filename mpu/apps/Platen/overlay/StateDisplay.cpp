#include "overlay/StateDisplay.h"

#include "DiscViewController.h"
#include "Log.h"
#include "overlay/OverlayState.h"
#include "parts/DiscTimers.h"
#include "zmui/CUIAnalysis.h"

StateDisplay::StateDisplay(OverlayState& state) : m_state(state), m_nCurKeyType(OSD_KEY_NONE) {}

void StateDisplay::Lock() {
    m_mutex.Lock();
}

void StateDisplay::UnLock() {
    m_mutex.UnLock();
}

void StateDisplay::ShowStateView(long picId, const wchar_t* text) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::ShowStateView]  nPicID=%d\n",
            static_cast<int>(picId));
    if (m_state.m_pUIAnalysis) {
        m_state.m_pUIAnalysis->SetItemText(m_state.m_nCurWndId, OSD_ITEM_STATE_TEXT, text);
        ShowStatePicture(static_cast<int>(picId), true);
    }
}

void StateDisplay::ShowStateView2(long picId, long textId) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::ShowStateView2]  nPicID=%d\n",
            static_cast<int>(picId));
    if (m_state.m_pUIAnalysis) {
        m_state.m_pUIAnalysis->SetItemText(m_state.m_nCurWndId, OSD_ITEM_STATE_TEXT,
                                           static_cast<int>(textId));
        ShowStatePicture(static_cast<int>(picId), true);
    }
}

void StateDisplay::ShowNoFunction() {
    ShowStateView2(OSD_PIC_NO_FUNCTION, OSD_TXT_NO_FUNCTION);
    SetDisplayStateTimer();
}

void StateDisplay::ShowStatePicture(int picture, bool shown) {
    CUIAnalysis& ui = *m_state.m_pUIAnalysis;
    const int window = m_state.m_nCurWndId;
    ui.SetItemIcon(window, OSD_ITEM_STATE_PIC, picture, ITEM_STATE_ALL);
    ui.ShowItem(window, OSD_ITEM_STATE_PIC, shown);
    ui.drawItem(window, OSD_ITEM_STATE_TEXT);
    ui.drawItem(window, OSD_ITEM_STATE_PIC);
}

void StateDisplay::HideStateView() {
    // Every change of the key type takes the picture away.
    SetCurKeyType(OSD_KEY_NONE);
}

void StateDisplay::SetCurKeyType(int keyType) {
    KillDisplayStateTimer();
    if (m_state.m_pUIAnalysis) {
        m_state.m_pUIAnalysis->SetItemText(m_state.m_nCurWndId, OSD_ITEM_STATE_TEXT, L" ");
        ShowStatePicture(OSD_PIC_NONE, false);
    }
    MutexGuard guard(m_mutex);
    m_nCurKeyType = keyType;
}

int StateDisplay::GetCurKeyType() {
    MutexGuard guard(m_mutex);
    return m_nCurKeyType;
}

void StateDisplay::SetDisplayStateTimer() {
    StartDiscTimer(m_state.m_pController, ENUM_TIMER_DISPLAY_STATE);
}

void StateDisplay::KillDisplayStateTimer() {
    KillDiscTimer(m_state.m_pController, ENUM_TIMER_DISPLAY_STATE);
}
