#include "DiscStatusPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSJsonDecoder.h"
#include "PPSSubscriber.h"
#include "ViewMessages.h"

static constexpr PPSAttributeRow<PPSSubscribe<DiscStatusPPSModule>> ATTRIBUTES[] = {
    {STATUS_DISCSTATE, &DiscStatusPPSModule::SubscribeDiscState, {DISC_VMSG_DISCSTATE, PUBLISH_MEDIA_INFO}},
    {STATUS_PLAYSTATE, &DiscStatusPPSModule::SubscribePlayState, {DISC_VMSG_PLAYSTATE}},
    {STATUS_ROOTMENU, &DiscStatusPPSModule::SubscribeRootMenu, {DISC_VMSG_ROOTMENU}},
    {STATUS_PARENTAL, &DiscStatusPPSModule::SubscribeParental, {DISC_VMSG_PARENTAL}},
    {STATUS_UPDATEDB, &DiscStatusPPSModule::SubscribeUpdatedb, {DISC_VMSG_UPDATEDB}},
    {STATUS_DVDSTATE, &DiscStatusPPSModule::SubscribeDvdState, {DISC_VMSG_DVDSTATE}},
    {STATUS_AUDIOCHANNEL, &DiscStatusPPSModule::SubscribeAudioChannel, {DISC_VMSG_AUDIOCHANNEL}},
    {STATUS_PLAYSPEED, &DiscStatusPPSModule::SubscribePlaySpeed, {DISC_VMSG_PLAYSPEED}},
    {STATUS_KEYINVALID, &DiscStatusPPSModule::SubscribeKeyInvalid, {DISC_VMSG_KEYINVALID}},
    {STATUS_MSGTIP, &DiscStatusPPSModule::SubscribeMsgTip, {DISC_VMSG_MSGTIP}},
};
static_assert(PPSNamesDiffer(ATTRIBUTES));

int DiscStatusPPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    if (attr->attr_name) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscStatusPPSModule::ParsePPSAttr, attr_name:%s\n",
                attr->attr_name);
    }
    return PPSDispatch(*this, ATTRIBUTES, attr);
}

PPSReaction DiscStatusPPSModule::Reaction(int nIndex) {
    return PPSReactionTo(ATTRIBUTES, nIndex);
}

void DiscStatusPPSModule::SubscribeDiscState(char* encoding, char* value) {
    T_PLAY_STATUS status = m_pDiscData->GetCurPlayStatus();
    status.discState = PPSNumber(value);
    m_pDiscData->SetCurPlayStatus(status);
}

void DiscStatusPPSModule::SubscribePlayState(char* encoding, char* value) {
    if (!PPSJsonDecoder::IsJson(encoding)) {
        return;
    }
    T_PLAY_STATUS status = m_pDiscData->GetCurPlayStatus();
    bool bComplete = PPSJsonDecoder(value)
                         .Get(STATUS_PLAYSTATE_REPEAT, status.repeat)
                         .Get(STATUS_PLAYSTATE_SHUFFLE, status.shuffle)
                         .Get(STATUS_PLAYSTATE_SCAN, status.scan)
                         .Finish();
    if (bComplete) {
        m_pDiscData->SetCurPlayStatus(status);
    }
}

void DiscStatusPPSModule::SubscribeRootMenu(char* encoding, char* value) {
    m_pDiscData->SetDVDRootMenuFlag(std::strcmp(value, STATUS_TRUE) == 0);
}

void DiscStatusPPSModule::SubscribeParental(char* encoding, char* value) {
    m_pDiscData->SetDVDParentalFlag(std::strcmp(value, STATUS_TRUE) == 0);
}

void DiscStatusPPSModule::SubscribeUpdatedb(char* encoding, char* value) {
    m_pDiscData->SetUpdateDbState(PPSNumber(value));
}

void DiscStatusPPSModule::SubscribeDvdState(char* encoding, char* value) {
    if (!PPSJsonDecoder::IsJson(encoding)) {
        return;
    }
    T_DVD_DETAIL state = m_pDiscData->GetCurDvdState();
    bool bComplete = PPSJsonDecoder(value)
                         .Get(STATUS_DVDSTATE_AUDIOTYPE, state.audioType)
                         .Get(STATUS_DVDSTATE_AUDIOCHANNEL, state.audioChannel)
                         .Get(STATUS_DVDSTATE_CURAUDIOLAN, state.curAudioLan)
                         .Get(STATUS_DVDSTATE_CURAUDIOMODE, state.curAudioMode)
                         .Get(STATUS_DVDSTATE_TOTALAUDIOMODE, state.totalAudioMode)
                         .Get(STATUS_DVDSTATE_CURSUBTITLELAN, state.curSubtitleLan)
                         .Get(STATUS_DVDSTATE_CURSUBTITLENUM, state.curSubtitleNum)
                         .Get(STATUS_DVDSTATE_TOTALSUBTITLE, state.totalSubtitle)
                         .Get(STATUS_DVDSTATE_CURANGLE, state.curAngle)
                         .Get(STATUS_DVDSTATE_TOTALANGLE, state.totalAngle)
                         .Finish();
    if (bComplete) {
        m_pDiscData->SetCurDvdState(state);
    }
}

void DiscStatusPPSModule::SubscribeAudioChannel(char* encoding, char* value) {
    m_pDiscData->SetAudioChannel(PPSNumber(value));
}

void DiscStatusPPSModule::SubscribePlaySpeed(char* encoding, char* value) {
    m_pDiscData->SetPlaySpeed(PPSNumber(value));
}

void DiscStatusPPSModule::SubscribeKeyInvalid(char* encoding, char* value) {
    // The change itself is the event.
}

void DiscStatusPPSModule::SubscribeMsgTip(char* encoding, char* value) {
    m_pDiscData->SetMsgTip(PPSNumber(value));
}
