#include "DiscNowPlayingPPSModule.h"

#include "CDiscData.h"
#include "DiscNumbers.h"
#include "DiscPPSInfo.h"
#include "FindRow.h"
#include "Log.h"
#include "PPSObjectEncoder.h"

namespace {

/** A number that the disc service reports, and the word that is published for it. */
struct WordRow {
    int number;
    const char* word;
};

constexpr WordRow TYPES[] = {
    {PLAY_TYPE_DVD, NOWPLAYING_TYPE_DVD},     {PLAY_TYPE_CD, NOWPLAYING_TYPE_CD},
    {PLAY_TYPE_MUSIC, NOWPLAYING_TYPE_MUSIC}, {PLAY_TYPE_VIDEO, NOWPLAYING_TYPE_VIDEO},
    {PLAY_TYPE_PHOTO, NOWPLAYING_TYPE_PHOTO}, {PLAY_TYPE_VCD, NOWPLAYING_TYPE_VCD},
};

constexpr WordRow STATES[] = {
    {DISC_STATE_STOPPED, NOWPLAYING_STATUS_STOP},       {DISC_STATE_LOADING, NOWPLAYING_STATUS_LOADING},
    {DISC_STATE_PLAYING, NOWPLAYING_STATUS_PLAY},       {DISC_STATE_FAST_FORWARD, NOWPLAYING_STATUS_PLAY},
    {DISC_STATE_FAST_BACKWARD, NOWPLAYING_STATUS_PLAY}, {DISC_STATE_PAUSED, NOWPLAYING_STATUS_PAUSE},
    {DISC_STATE_ERROR, NOWPLAYING_STATUS_ERR_DEVICE},   {DISC_STATE_EJECTING, NOWPLAYING_STATUS_EJECTING},
};

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

    const WordRow* type = FindRow(TYPES, &WordRow::number, nType);
    const WordRow* state = FindRow(STATES, &WordRow::number, status.discState);
    const bool bKnown = type != nullptr;
    const bool bTimed = bKnown && nType != PLAY_TYPE_PHOTO;
    const int nFile = nType == PLAY_TYPE_DVD ? info.chapter : info.mediaId;
    const int nFiles = nType == PLAY_TYPE_DVD ? info.chapters : info.mediaIds;

    return PPSObjectEncoder(m_strObject, NOWPLAYING_MEDIAINFO)
        .Add(NOWPLAYING_MEDIAINFO_STATUS, state ? state->word : NOWPLAYING_STATUS_IDLE)
        .Add(NOWPLAYING_MEDIAINFO_MEDIATYPE, bKnown ? type->word : NOWPLAYING_TYPE_UNKNOWN)
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
    if (nType == PLAY_TYPE_MUSIC || nType == PLAY_TYPE_CD) {
        text = m_pDiscData->GetID3Info();
    }
    if (nType == PLAY_TYPE_MUSIC) {
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
