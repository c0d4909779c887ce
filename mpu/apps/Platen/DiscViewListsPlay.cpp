#include "DiscViewLists.h"

#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/FindRow.h"
#include "parts/PackedTrack.h"

namespace {

enum : int { TRACK_KIND_MUSIC = 1, TRACK_KIND_VIDEO = 3 };

} // namespace

void DiscView::OnHandleUIListClick(int nPlayType, int nUiFrom, int nLine) {
    struct KindRow {
        int kind;
        void (DiscView::*play)(int, int);
    };
    static constexpr KindRow ROWS[] = {
        {ROW_MUSIC, &DiscView::OnHandleUIListClickAudio},
        {ROW_VIDEO, &DiscView::OnHandleUIListClickVideo},
        {ROW_PICTURE, &DiscView::OnHandleUIListClickPicture},
    };
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnHandleUIListClick] nPlayType=%d,nUiFrom=%d,nLine=%d\n",
            nPlayType, nUiFrom, nLine);
    if (const KindRow* row = FindRow(ROWS, &KindRow::kind, nPlayType)) {
        (this->*row->play)(nUiFrom, nLine);
    }
}

DiscView::FileIds DiscView::ReadFileIds(const char* logName, int nUiFrom, int nLine) {
    LOGBASE(LOG_LEV_TRACE, logName, "[DiscView::%s] nUiFrom=%d,nLine=%d\n", logName, nUiFrom, nLine);
    FileIds ids{-1, -1};
    m_discDb.GetVecList_Data_Fid(nUiFrom, nLine, ids.nFid);
    m_discDb.GetVecList_Data_ListIndex(nUiFrom, nLine, ids.nFolder);
    LOGBASE(LOG_LEV_TRACE, logName, "[DiscView::%s] nFid=%d,nFolder=%d\n", logName, ids.nFid, ids.nFolder);
    return ids;
}

void DiscView::OnHandleUIListClickAudio(int nUiFrom, int nLine) {
    const FileIds ids = ReadFileIds(__FUNCTION__, nUiFrom, nLine);
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    if (m_nCurPlayType == PLAY_TYPE_CD) {
        if (ids.nFid != info.mediaId) {
            Send(&DiscViewController::PlayTrack, ids.nFid, static_cast<int>(TRACK_KIND_MUSIC));
        }
    } else if (ids.nFid != info.curMediaId || ids.nFolder != info.parentFolder) {
        PlayPacked(__FUNCTION__, ids, TRACK_KIND_MUSIC);
    }
    OnGotoAudioPlayPage();
}

void DiscView::OnHandleUIListClickVideo(int nUiFrom, int nLine) {
    PlayPacked(__FUNCTION__, ReadFileIds(__FUNCTION__, nUiFrom, nLine), TRACK_KIND_VIDEO);
    if (CDiscData::GetInstance()->GetDeviceStatus().nVideoMode == VIDEO_MODE_ON) {
        GotoVideoPage(PLAY_TYPE_VIDEO);
    }
}

void DiscView::OnHandleUIListClickPicture(int nUiFrom, int nLine) {
    const FileIds ids = ReadFileIds(__FUNCTION__, nUiFrom, nLine);
    // Not packed, unlike music and video.
    Send(&DiscViewController::PlayTrack, ids.nFid, ids.nFolder);
    GotoVideoPage(PLAY_TYPE_PHOTO);
}

void DiscView::PlayPacked(const char* logName, const FileIds& ids, int nKind) {
    const int wParam = PackTrack(ids.nFolder, ids.nFid);
    // The text names the music handler for video, too.
    LOGBASE(LOG_LEV_TRACE, logName, "[DiscView::OnHandleUIListClickAudio] wParam=0x%x\n", wParam);
    Send(&DiscViewController::PlayTrack, wParam, nKind);
}
