#include "DiscPlayingPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSJsonDecoder.h"
#include "PPSSubscriber.h"
#include "ViewMessages.h"

static constexpr PPSAttributeRow<PPSSubscribe<DiscPlayingPPSModule>> ATTRIBUTES[] = {
    {PLAYING_TRACKINFO, &DiscPlayingPPSModule::SubscribeTrackInfo, {DISC_VMSG_TRACKINFO, PUBLISH_MEDIA_INFO}},
    {PLAYING_PLAYTIME, &DiscPlayingPPSModule::SubscribePlayTime, {DISC_VMSG_PLAYTIME, PUBLISH_MEDIA_INFO}},
    {PLAYING_ID3, &DiscPlayingPPSModule::SubscribePlayID3, {DISC_VMSG_ID3, PUBLISH_ID3}},
};
static_assert(PPSNamesDiffer(ATTRIBUTES));

int DiscPlayingPPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    return PPSDispatch(*this, ATTRIBUTES, attr);
}

PPSReaction DiscPlayingPPSModule::Reaction(int nIndex) {
    return PPSReactionTo(ATTRIBUTES, nIndex);
}

void DiscPlayingPPSModule::SubscribeTrackInfo(char* encoding, char* value) {
    if (!PPSJsonDecoder::IsJson(encoding)) {
        return;
    }
    T_MPEG_MEDIA_INFO info = m_pDiscData->GetCurPlayInfo();
    bool bComplete = PPSJsonDecoder(value)
                         .Get(PLAYING_TRACKINFO_CURMEDIAID, info.curMediaId)
                         .Get(PLAYING_TRACKINFO_CURMEDIAIDS, info.curMediaIds)
                         .Get(PLAYING_TRACKINFO_MEDIAID, info.mediaId)
                         .Get(PLAYING_TRACKINFO_MEDIAIDS, info.mediaIds)
                         .Get(PLAYING_TRACKINFO_CHAPTER, info.chapter)
                         .Get(PLAYING_TRACKINFO_CHAPTERS, info.chapters)
                         .Get(PLAYING_TRACKINFO_TITLE, info.title)
                         .Get(PLAYING_TRACKINFO_TITLES, info.titles)
                         .Get(PLAYING_TRACKINFO_PARENTFOLDER, info.parentFolder)
                         .Finish();
    if (bComplete) {
        m_pDiscData->SetCurPlayInfo(info);
    }
}

void DiscPlayingPPSModule::SubscribePlayTime(char* encoding, char* value) {
    if (!PPSJsonDecoder::IsJson(encoding)) {
        return;
    }
    T_PLAYTIME_INFO time = m_pDiscData->GetPlayTime();
    bool bComplete = PPSJsonDecoder(value)
                         .Get(PLAYING_PLAYTIME_TIME, time.time)
                         .Get(PLAYING_PLAYTIME_TRACKTIME, time.trackTime)
                         .Get(PLAYING_PLAYTIME_TIMES, time.times)
                         .Finish();
    if (bComplete) {
        m_pDiscData->SetPlayTime(time);
    }
}

void DiscPlayingPPSModule::SubscribePlayID3(char* encoding, char* value) {
    if (!PPSJsonDecoder::IsJson(encoding)) {
        return;
    }
    T_ID3_INFO info;
    bool bComplete = PPSJsonDecoder(value)
                         .Get(PLAYING_ID3_TITLE, info.title)
                         .Get(PLAYING_ID3_ARTIST, info.artist)
                         .Get(PLAYING_ID3_ALBUM, info.album)
                         .Finish();
    if (bComplete) {
        m_pDiscData->SetID3Info(info);
    } else {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscPlayingPPSModule::SubscribePlayID3] pps_decoder error\n");
    }
}

void DiscPlayingPPSModule::SubscribeClipsType(char* encoding, char* value) {
    T_MPEG_MEDIA_INFO info = m_pDiscData->GetCurPlayInfo();
    info.clipsType = static_cast<int32_t>(PPSUnsigned(value));
    m_pDiscData->SetCurPlayInfo(info);
}
