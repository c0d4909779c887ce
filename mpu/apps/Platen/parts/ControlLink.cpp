#include "parts/ControlLink.h"

#include "DiscViewController.h"
#include "parts/DiscTimers.h"

void ControlLink::ToBeep() const {
    if (m_pController) {
        m_pController->ToBeep();
    }
}

void ControlLink::QueryApplication(const char* name) const {
    if (m_pController) {
        m_pController->QueryLauncher(name, "null");
    }
}

void ControlLink::QueryHome() const {
    QueryApplication("zmhome");
}

void ControlLink::StartTimer(unsigned int id) const {
    StartDiscTimer(m_pController, id);
}

void ControlLink::KillTimer(unsigned int id) const {
    KillDiscTimer(m_pController, id);
}

void ControlLink::SetDisplayOSDTimer() const {
    StartTimer(ENUM_TIMER_DISPLAY_OSD);
}

void ControlLink::SetDisplayPlayViewTimer() const {
    StartTimer(ENUM_TIMER_DISPLAY_PLAYVIEW);
}

void ControlLink::SetDisplayNoDiscTimer() const {
    StartTimer(ENUM_TIMER_NO_DISC);
}

void ControlLink::SetLoadingTimer() const {
    StartTimer(ENUM_TIMER_LOADING);
}

void ControlLink::SetDisplaySrcTimer() const {
    StartTimer(ENUM_TIMER_DISPLAY_SRC);
}
