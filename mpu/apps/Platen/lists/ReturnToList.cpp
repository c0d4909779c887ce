#include "lists/ReturnToList.h"

#include "DiscViewController.h"
#include "Log.h"
#include "lists/ListChange.h"
#include "lists/ListState.h"
#include "lists/MediaTypes.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "video/OverlayWindow.h"
#include "video/VideoWindow.h"

void ReturnToList::OnUserMsgOsdReturn() {
    const PlayType nType = m_state.m_nCurPlayType;
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "DISC_VMSG_OSDRETURN m_nCurPlayType=%d\n", nType);
    if (nType == PLAY_TYPE_VIDEO || nType == PLAY_TYPE_PHOTO) {
        m_control.SetDisplayPlayViewTimer();
        m_overlay.WithdrawOsd();
        ReturnFromVideo(nType == PLAY_TYPE_VIDEO ? m_lists.m_bVideoDbDone : m_lists.m_bPhotoDbDone);
    }
}

void ReturnToList::LeavePhoto() {
    m_control.SetDisplayPlayViewTimer();
    m_overlay.SetVisibleOsd(false);
    ReturnFromVideo(m_lists.m_bPhotoDbDone);
}

void ReturnToList::LeaveFilm() {
    m_control.SetDisplayPlayViewTimer();
    m_overlay.SetVisibleOsd(false);
    ReturnFromVideo(m_lists.m_bVideoDbDone);
}

void ReturnToList::LeaveParkedPhoto() {
    m_overlay.SetVisibleOsd(false);
    m_video.SetVisibleVideo(false);
    m_control.Send(&DiscViewController::GotoSubList, PLAY_TYPE_PHOTO, ROOT_FOLDER);
    m_change.OnHandleUIReturnList();
    m_control.SetDisplayPlayViewTimer();
}

void ReturnToList::ReturnFromVideo(bool bDbDone) {
    m_video.SetVisibleVideo(false);
    if (!bDbDone) {
        m_control.Send(&DiscViewController::GotoSubList, m_state.m_nCurPlayType, ROOT_FOLDER);
    }
    m_change.OnHandleUIReturnList();
}
