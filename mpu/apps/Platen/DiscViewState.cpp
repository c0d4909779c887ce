#include "DiscView.h"

#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/DiscTimers.h"
#include "parts/FindRow.h"

struct DiscView::UserMessageRow {
    int code;
    const char* log;
    void (DiscView::*handler)();
};

int DiscView::OnUserMessage(APP_MSG_S* msg) {
    static constexpr UserMessageRow ROWS[] = {
        {DISC_VMSG_PLAYSTATE, nullptr, &DiscView::OnUserMsgPlayState},
        {DISC_VMSG_ROOTMENU, nullptr, &DiscView::OnUserMsgRootMenu},
        {DISC_VMSG_UPDATEDB, "[DiscView::OnUserMessage]-------DISC_VMSG_UPDATEDB\n",
         &DiscView::OnUserMsgUpdateDb},
        {DISC_VMSG_CLIPSTYPE, "[DiscView::OnUserMessage]-------DISC_VMSG_CLIPSTYPE\n",
         &DiscView::OnUserMsgClipsType},
        {DISC_VMSG_MIXEDTYPE, "[DiscView::OnUserMessage]-------DISC_VMSG_MIXEDTYPE\n",
         &DiscView::OnUserMsgMixedType},
        {DISC_VMSG_DEVICE, "[DiscView::OnUserMessage]-------DISC_VMSG_DEVICE\n",
         &DiscView::OnUserMsgDeviceState},
        {DISC_VMSG_CONNECTED, "[DiscView::OnUserMessage]-------DISC_VMSG_CONNECTED\n", nullptr},
        {DISC_VMSG_TRACKINFO, nullptr, &DiscView::OnUserMsgTrackInfo},
        {DISC_VMSG_PLAYTIME, nullptr, &DiscView::OnUserMsgPlayTime},
        {DISC_VMSG_ID3, nullptr, &DiscView::OnUserMsgID3},
        {DISC_VMSG_VIDEOSTATUS, nullptr, &DiscView::OnCaptureStateChanged},
        {DISC_VMSG_OSDRETURN, nullptr, &DiscView::OnUserMsgOsdReturn},
        {DISC_VMSG_DISCSTATE, nullptr, &DiscView::OnUserMsgDiscState},
        {DISC_VMSG_MIXEDSWITCHING, "[DiscView::OnUserMessage]-------DISC_VMSG_MIXEDSWITCHING\n", nullptr},
        {DISC_VMSG_ERRORSTATUS, nullptr, &DiscView::OnUserMsgErrorStatus},
        {DISC_VMSG_VIDEOMODE, nullptr, &DiscView::OnUserMsgVideoMode},
    };
    const UserMessageRow* row = msg ? FindRow(ROWS, &UserMessageRow::code, msg->word[0]) : nullptr;
    if (row && row->log) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", row->log);
    }
    if (row && row->handler) {
        (this->*row->handler)();
    }
    return 0;
}

void DiscView::OnUserMsgRootMenu() {
    if (CDiscData::GetInstance()->GetDVDRootMenuFlag()) {
        SetVisibleOsd(false);
    }
}

void DiscView::OnUserMsgClipsType() {
    m_nCurPlayType = CDiscData::GetInstance()->GetDeviceStatus().nMediaType;
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]------set m_nCurPlayType=%d\n",
            m_nCurPlayType);
    m_nCurType = m_nCurPlayType;
    SetMediaTypeIcon(WND_MEDIA_LIST);
    SetMediaTypeIcon(WND_FOLDER_LIST);
    switch (m_nCurPlayType) {
    case PLAY_TYPE_MUSIC:
        m_nPlayListFrom = PLAY_LIST_MUSIC;
        break;
    case PLAY_TYPE_VIDEO:
        m_nPlayListFrom = PLAY_LIST_VIDEO;
        break;
    case PLAY_TYPE_PHOTO:
        m_nPlayListFrom = PLAY_LIST_PHOTO;
        break;
    }
}

void DiscView::OnUserMsgMixedType() {
    m_nMixedType = CDiscData::GetInstance()->GetDeviceStatus().nMixedType;
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]------m_nMixedType=0x%x\n",
            static_cast<unsigned>(m_nMixedType));
}

void DiscView::OnUserMsgDeviceState() {
    const bool bExisting = CDiscData::GetInstance()->GetDeviceStatus().bExisting;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgDeviceState]-------bDiscExisting=%d------\n",
            bExisting);
    KillTimer(ENUM_TIMER_WAIT_DEVICESTATE);
    if (bExisting) {
        if (!m_bSourceRequested) {
            m_discDb.InitDataBase();
            RequestDiscSource(__FUNCTION__);
        } else if (m_bDiscWasOut && !m_discDb.IsOpen()) {
            // A catalogue that was not there with the first disc may have come with this one.
            m_discDb.InitDataBase();
        }
    } else if (m_uiCurState == VIEW_STATE_LOADING) {
        ShowMessage(Message::NoDisc);
    }
    m_bDiscWasOut = !bExisting;
}

void DiscView::OnCaptureStateChanged() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnCaptureStateChanged]state=%d\n",
            CDiscData::GetInstance()->GetVideoStatus());
}

void DiscView::OnUserMsgErrorStatus() {
    switch (CDiscData::GetInstance()->GetDeviceStatus().nErrorStatus) {
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
        RegionError();
        break;
    }
}

void DiscView::SkipUnreadable() {
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    switch (m_nCurPlayType) {
    case PLAY_TYPE_CD:
    case PLAY_TYPE_VCD:
        if (info.mediaId < info.mediaIds) {
            Send(&DiscViewController::PlayTrack, info.mediaId + 1, 0);
        } else if (info.mediaId == info.mediaIds) {
            Send(&DiscViewController::PlayTrack, 1, 0);
        }
        break;
    case PLAY_TYPE_MUSIC:
    case PLAY_TYPE_VIDEO:
    case PLAY_TYPE_PHOTO:
        if (info.curMediaId < info.curMediaIds) {
            Send(&DiscViewController::PlayTrack, info.curMediaId + 1, info.parentFolder);
        } else if (info.curMediaId == info.curMediaIds) {
            // Back to the first file: the disc service gets the number after the last one, not the folder.
            Send(&DiscViewController::PlayTrack, 1, info.curMediaId + 1);
        }
        break;
    }
}
