#include "DiscNowPlayingPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSObjectEncoder.h"

namespace {

enum MEDIA_TYPE_EN { MEDIA_DVD = 0, MEDIA_CD = 1, MEDIA_MUSIC = 2, MEDIA_PHOTO = 4 };

/** By media type. */
constexpr const char* TYPE_NAMES[] = {NOWPLAYING_TYPE_DVD,   NOWPLAYING_TYPE_CD,    NOWPLAYING_TYPE_MUSIC,
                                      NOWPLAYING_TYPE_VIDEO, NOWPLAYING_TYPE_PHOTO, NOWPLAYING_TYPE_VCD};

struct StatusRow {
    int nDiscState;
    const char* name;
};
constexpr StatusRow STATUS_NAMES[] = {
    {0, NOWPLAYING_STATUS_STOP},       {1, NOWPLAYING_STATUS_LOADING},   {2, NOWPLAYING_STATUS_PLAY},
    {10, NOWPLAYING_STATUS_PLAY},      {11, NOWPLAYING_STATUS_PLAY},     {6, NOWPLAYING_STATUS_PAUSE},
    {9, NOWPLAYING_STATUS_ERR_DEVICE}, {20, NOWPLAYING_STATUS_EJECTING},
};

const char* StatusName(int nDiscState) {
    for (const StatusRow& row : STATUS_NAMES) {
        if (row.nDiscState == nDiscState) {
            return row.name;
        }
    }
    return NOWPLAYING_STATUS_IDLE;
}

} // namespace

DiscNowPlayingPPSModule::DiscNowPlayingPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange)
    : DiscPPSModule(info, pOnChange), m_strObject(NOWPLAYING_OBJECT) {}

bool DiscNowPlayingPPSModule::PublishMediaInfo() {
    if (!m_pDiscData) {
        return false;
    }
    const int nType = m_pDiscData->GetDeviceStatus().nMediaType;
    const T_PLAY_STATUS status = m_pDiscData->GetCurPlayStatus();
    const T_MPEG_MEDIA_INFO info = m_pDiscData->GetCurPlayInfo();
    const T_PLAYTIME_INFO time = m_pDiscData->GetPlayTime();

    const bool bKnown = nType >= 0 && nType < static_cast<int>(std::size(TYPE_NAMES));
    const bool bTimed = bKnown && nType != MEDIA_PHOTO;
    const int nFile = nType == MEDIA_DVD ? info.chapter : info.mediaId;
    const int nFiles = nType == MEDIA_DVD ? info.chapters : info.mediaIds;

    return PPSObjectEncoder(m_strObject, NOWPLAYING_MEDIAINFO)
        .Add(NOWPLAYING_MEDIAINFO_STATUS, StatusName(status.discState))
        .Add(NOWPLAYING_MEDIAINFO_MEDIATYPE, bKnown ? TYPE_NAMES[nType] : NOWPLAYING_TYPE_UNKNOWN)
        .Add(NOWPLAYING_MEDIAINFO_PLAYTIME, bTimed ? time.time : 0)
        .Add(NOWPLAYING_MEDIAINFO_TOTALTIME, bTimed ? time.trackTime : 0)
        .Add(NOWPLAYING_MEDIAINFO_FILENUM, bKnown ? nFile : 0)
        .Add(NOWPLAYING_MEDIAINFO_TOTALFILENUM, bKnown ? nFiles : 0)
        .Write(*this, true);
}

bool DiscNowPlayingPPSModule::PublishPlayID3() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscNowPlayingPPSModule::PublishPlayID3]\n");
    if (!m_pDiscData) {
        return false;
    }
    const int nType = m_pDiscData->GetDeviceStatus().nMediaType;
    T_ID3_INFO text;
    if (nType == MEDIA_MUSIC || nType == MEDIA_CD) {
        text = m_pDiscData->GetID3Info();
    }
    if (nType == MEDIA_MUSIC) {
        text.title = m_pDiscData->GetPlayFileName();
    }
    return PPSObjectEncoder(m_strObject, NOWPLAYING_TRACK)
        .Add(NOWPLAYING_TRACK_NAME, NOWPLAYING_NAME_DISC)
        .Add(NOWPLAYING_TRACK_INFO0, text.title)
        .Add(NOWPLAYING_TRACK_INFO1, text.artist)
        .Add(NOWPLAYING_TRACK_INFO2, text.album)
        .Add(NOWPLAYING_TRACK_ICONPATH, "")
        .Write(*this, true);
}
