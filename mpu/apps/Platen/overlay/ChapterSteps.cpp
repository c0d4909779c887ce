#include "overlay/ChapterSteps.h"

#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "overlay/OverlayState.h"

void ChapterSteps::OnErrorStatus() {
    const int error = m_state.m_data.GetDeviceStatus().nErrorStatus;
    if (error != ERROR_STATUS_READ && error != ERROR_STATUS_READ_2) {
        return;
    }
    // Logged under the main view's name, as readers of the log expect it.
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]-------READ_ERROR\n");
    if (m_state.IsClip({PLAY_TYPE_DVD}) && m_state.m_pController) {
        m_bReadError = true;
    }
}

void ChapterSteps::OnStopped() {
    const int error = m_state.m_data.GetDeviceStatus().nErrorStatus;
    if (m_state.IsClip({PLAY_TYPE_DVD}) && error != 0 && m_state.m_pController) {
        m_state.m_pController->Play();
    }
}

void ChapterSteps::OnPlaying() {
    const T_MPEG_MEDIA_INFO info = m_state.m_data.GetCurPlayInfo();
    if (!m_state.IsClip({PLAY_TYPE_DVD}) || !m_bReadError) {
        m_nNextChapter = info.chapter + 1;
        return;
    }
    m_bReadError = false;
    if (m_nNextChapter < info.chapters) {
        m_state.m_pController->PlayChapter(m_nNextChapter + 1);
        ++m_nNextChapter;
    } else if (m_nNextChapter == info.chapters) {
        m_state.m_pController->PlayTitle(info.title + 1);
        m_nNextChapter = 2;
    }
}
