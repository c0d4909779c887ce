#include "input/NoticeTouch.h"

#include "DiscViewItems.h"
#include "lists/ReturnToList.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "pages/SourcePopup.h"
#include "parts/ControlLink.h"

void NoticeTouch::OnClickLoadingWnd(long nCtrlId) {
    if (nCtrlId == ITEM_HOME) {
        m_control.ToBeep();
        m_control.QueryHome();
    } else {
        m_sources.OnClickSrcGroup(nCtrlId);
    }
}

void NoticeTouch::OnClickParkingWnd(long ctrlId) {
    switch (ctrlId) {
    case PARK_CTRL_HOME:
    case PARK_CTRL_BACK:
        m_control.ToBeep();
        LeaveParkingPage();
        break;
    case PARK_CTRL_CONTINUE:
        m_control.ToBeep();
        m_films.OnHideParkingView();
        break;
    default:
        m_sources.OnClickSrcGroup(ctrlId);
        break;
    }
}

void NoticeTouch::LeaveParkingPage() {
    if (m_state.m_nCurPlayType == PLAY_TYPE_PHOTO) {
        m_returnToList.LeaveParkedPhoto();
    } else {
        m_control.QueryHome();
    }
}
