#include "disc/ErrorReports.h"

#include "DiscViewController.h"
#include "Log.h"
#include "pages/Notices.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"

void ErrorReports::OnUserMsgErrorStatus() {
    switch (m_data.GetDeviceStatus().nErrorStatus) {
    case ERROR_STATUS_READ:
    case ERROR_STATUS_READ_2:
        LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]-------READ_ERROR\n");
        SkipUnreadable();
        break;
    case ERROR_STATUS_SURFACE:
        LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]-------SURFACE_ERROR\n");
        break;
    case ERROR_STATUS_TEMP:
        LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]-------TEMP_ERROR\n");
        break;
    case ERROR_STATUS_REGION:
        LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]-------REGION_CODE_ERROR\n");
        m_notices.RegionError();
        break;
    default:
        break;
    }
}

void ErrorReports::SkipUnreadable() {
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    switch (m_state.m_nCurPlayType) {
    case PLAY_TYPE_CD:
    case PLAY_TYPE_VCD:
        if (info.mediaId < info.mediaIds) {
            m_control.Send(&DiscViewController::PlayTrack, info.mediaId + 1, 0);
        } else if (info.mediaId == info.mediaIds) {
            m_control.Send(&DiscViewController::PlayTrack, 1, 0);
        }
        break;
    case PLAY_TYPE_MUSIC:
    case PLAY_TYPE_VIDEO:
    case PLAY_TYPE_PHOTO:
        if (info.curMediaId < info.curMediaIds) {
            m_control.Send(&DiscViewController::PlayTrack, info.curMediaId + 1, info.parentFolder);
        } else if (info.curMediaId == info.curMediaIds) {
            // Back to the first file: the disc service gets the number after the last one, not the folder.
            m_control.Send(&DiscViewController::PlayTrack, 1, info.curMediaId + 1);
        }
        break;
    default:
        break;
    }
}
