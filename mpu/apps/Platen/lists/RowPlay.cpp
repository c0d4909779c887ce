#include "lists/RowPlay.h"

#include "DiscQDB.h"
#include "DiscViewController.h"
#include "Log.h"
#include "lists/MediaTypes.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "pages/PlayPage.h"
#include "parts/ControlLink.h"
#include "parts/PackedTrack.h"

void RowPlay::OnHandleUIListClick(int nPlayType, int nUiFrom, int nLine) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnHandleUIListClick] nPlayType=%d,nUiFrom=%d,nLine=%d\n",
            nPlayType, nUiFrom, nLine);
    switch (nPlayType) {
    case ROW_MUSIC:
        OnHandleUIListClickAudio(nUiFrom, nLine);
        break;
    case ROW_VIDEO:
        OnHandleUIListClickVideo(nUiFrom, nLine);
        break;
    case ROW_PICTURE:
        OnHandleUIListClickPicture(nUiFrom, nLine);
        break;
    }
}

RowPlay::FileIds RowPlay::ReadFileIds(const char* logName, int nUiFrom, int nLine) {
    LOGBASE(LOG_LEV_TRACE, logName, "[DiscView::%s] nUiFrom=%d,nLine=%d\n", logName, nUiFrom, nLine);
    FileIds ids{-1, -1};
    m_discDb.GetVecList_Data_Fid(nUiFrom, nLine, ids.nFid);
    m_discDb.GetVecList_Data_ListIndex(nUiFrom, nLine, ids.nFolder);
    LOGBASE(LOG_LEV_TRACE, logName, "[DiscView::%s] nFid=%d,nFolder=%d\n", logName, ids.nFid, ids.nFolder);
    return ids;
}

void RowPlay::OnHandleUIListClickAudio(int nUiFrom, int nLine) {
    const FileIds ids = ReadFileIds(__FUNCTION__, nUiFrom, nLine);
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    if (m_state.m_nCurPlayType == PLAY_TYPE_CD) {
        if (ids.nFid != info.mediaId) {
            m_control.Send(&DiscViewController::PlayTrack, ids.nFid, TRACK_KIND_MUSIC);
        }
    } else if (ids.nFid != info.curMediaId || ids.nFolder != info.parentFolder) {
        PlayPacked(__FUNCTION__, ids, TRACK_KIND_MUSIC);
    }
    m_playPage.OnGotoAudioPlayPage();
}

void RowPlay::OnHandleUIListClickVideo(int nUiFrom, int nLine) {
    PlayPacked(__FUNCTION__, ReadFileIds(__FUNCTION__, nUiFrom, nLine), TRACK_KIND_VIDEO);
    if (m_data.GetDeviceStatus().nVideoMode == VIDEO_MODE_ON) {
        m_films.GotoVideoPage(PLAY_TYPE_VIDEO);
    }
}

void RowPlay::OnHandleUIListClickPicture(int nUiFrom, int nLine) {
    const FileIds ids = ReadFileIds(__FUNCTION__, nUiFrom, nLine);
    // Not packed, unlike music and video.
    m_control.Send(&DiscViewController::PlayTrack, ids.nFid, ids.nFolder);
    m_films.GotoVideoPage(PLAY_TYPE_PHOTO);
}

void RowPlay::PlayPacked(const char* logName, const FileIds& ids, int nKind) {
    const int wParam = PackTrack(ids.nFolder, ids.nFid);
    // The text names the music handler for video, too.
    LOGBASE(LOG_LEV_TRACE, logName, "[DiscView::OnHandleUIListClickAudio] wParam=0x%x\n", wParam);
    m_control.Send(&DiscViewController::PlayTrack, wParam, nKind);
}
