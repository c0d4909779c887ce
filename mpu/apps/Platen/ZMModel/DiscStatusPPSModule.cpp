#include "DiscStatusPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSJsonDecoder.h"
#include "PPSSubscriber.h"

int DiscStatusPPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    static constexpr PPSSubscribeRow<DiscStatusPPSModule> ROWS[] = {
        {STATUS_DISCSTATE, &DiscStatusPPSModule::SubscribeDiscState},
        {STATUS_PLAYSTATE, &DiscStatusPPSModule::SubscribePlayState},
        {STATUS_ROOTMENU, &DiscStatusPPSModule::SubscribeRootMenu},
        {STATUS_PARENTAL, &DiscStatusPPSModule::SubscribeParental},
        {STATUS_UPDATEDB, &DiscStatusPPSModule::SubscribeUpdatedb},
        {STATUS_DVDSTATE, &DiscStatusPPSModule::SubscribeDvdState},
        {STATUS_AUDIOCHANNEL, &DiscStatusPPSModule::SubscribeAudioChannel},
        {STATUS_PLAYSPEED, &DiscStatusPPSModule::SubscribePlaySpeed},
        {STATUS_KEYINVALID, &DiscStatusPPSModule::SubscribeKeyInvalid},
        {STATUS_MSGTIP, &DiscStatusPPSModule::SubscribeMsgTip},
    };
    if (attr->attr_name) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscStatusPPSModule::ParsePPSAttr, attr_name:%s\n",
                attr->attr_name);
    }
    return PPSDispatch(*this, ROWS, attr);
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
