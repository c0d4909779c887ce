#include "launcher/SourceRequest.h"

#include "DiscQDB.h"
#include "DiscViewController.h"
#include "Log.h"
#include "pages/Notices.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "parts/DiscTimers.h"

void SourceRequest::OnUserMsgDeviceState() {
    const bool bExisting = m_data.GetDeviceStatus().bExisting;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgDeviceState]-------bDiscExisting=%d------\n",
            bExisting);
    m_control.KillTimer(ENUM_TIMER_WAIT_DEVICESTATE);
    if (bExisting) {
        if (!m_bSourceRequested) {
            m_discDb.InitDataBase();
            Request(__FUNCTION__);
        } else if (m_bDiscWasOut && !m_discDb.IsOpen()) {
            // A catalogue that was not there with the first disc may have come with this one.
            m_discDb.InitDataBase();
        }
    } else if (m_state.m_uiCurState == VIEW_STATE_LOADING) {
        m_notices.ShowMessage(Notice::NoDisc);
    }
    m_bDiscWasOut = !bExisting;
}

void SourceRequest::RequestForDisc(const char* logName) {
    if (!m_bSourceRequested && m_data.GetDeviceStatus().bExisting) {
        Request(logName);
    }
}

void SourceRequest::Request(const char* logName) {
    LOGBASE(LOG_LEV_TRACE, logName, "************* RequestSource on *************\n");
    m_bSourceRequested = true;
    m_control.Send(&DiscViewController::RequestSource, 1, 0);
}

void SourceRequest::Release() {
    m_control.Send(&DiscViewController::RequestSource, 0, 0);
    m_bSourceRequested = false;
}
