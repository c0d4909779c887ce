#include "pages/SourcePopup.h"

#include "DiscViewController.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "parts/DiscTimers.h"
#include "parts/SourceGroup.h"
#include "parts/Widgets.h"

SourceGroup SourcePopup::Sources() const {
    return {m_widgets.m_pUIAnalysis, m_widgets.m_pWndMng, m_control.Controller(), m_state.m_nCurWndId,
            "--type=ui"};
}

void SourcePopup::OnClickSrcGroup(long nCtrlId) {
    if (Sources().Click(nCtrlId) == SourceGroupClick::Opened) {
        m_control.SetDisplaySrcTimer();
    }
}

void SourcePopup::Close() {
    Sources().ShowPopup(false);
}

void SourcePopup::OnTimerSource() {
    m_control.KillTimer(ENUM_TIMER_DISPLAY_SRC);
    Close();
}
