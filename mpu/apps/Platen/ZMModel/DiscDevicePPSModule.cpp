#include "DiscDevicePPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSSubscriber.h"
#include "ViewMessages.h"

static void SubscribeMediaType(T_MPEG_DEVICE_STATUS& status, int nValue) {
    status.nMediaType = nValue;
}

static void SubscribeDisc(T_MPEG_DEVICE_STATUS& status, int nValue) {
    status.bConnected = nValue == 0 || nValue == 1;
    status.bExisting = nValue == 1;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscConnected:%d\n", status.bConnected);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscExisting:%d\n", status.bExisting);
}

static void SubscribeMixedType(T_MPEG_DEVICE_STATUS& status, int nValue) {
    status.nMixedType = nValue;
}

static void SubscribeMixedSwitching(T_MPEG_DEVICE_STATUS& status, int nValue) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "status.bMixedSwitching=%d=======\n", nValue);
    status.bMixedSwitching = nValue != 0;
}

static void SubscribeErrorStatus(T_MPEG_DEVICE_STATUS& status, int nValue) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "status.nErrorStatus=0x%x=======\n", nValue);
    status.nErrorStatus = nValue;
}

static void SubscribeVideoMode(T_MPEG_DEVICE_STATUS& status, int nValue) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "status.nVideoMode=%d=======\n", nValue);
    status.nVideoMode = nValue;
}

static constexpr PPSAttributeRow<void (*)(T_MPEG_DEVICE_STATUS& status, int nValue)> ATTRIBUTES[] = {
    {"", nullptr, {DISC_VMSG_CONNECTED}},
    {DEVICE_DISC, SubscribeDisc, {DISC_VMSG_DEVICE}},
    {DEVICE_MEDIATYPE, SubscribeMediaType, {DISC_VMSG_CLIPSTYPE, PUBLISH_MEDIA_INFO | PUBLISH_ID3}},
    {DEVICE_MIXEDTYPE, SubscribeMixedType, {DISC_VMSG_MIXEDTYPE}},
    {DEVICE_MIXEDSWITCHING, SubscribeMixedSwitching, {DISC_VMSG_MIXEDSWITCHING}},
    {DEVICE_ERRORSTATUS, SubscribeErrorStatus, {DISC_VMSG_ERRORSTATUS}},
    {DEVICE_VIDEOMODE, SubscribeVideoMode, {DISC_VMSG_VIDEOMODE}},
};
static_assert(PPSNamesDiffer(ATTRIBUTES));

int DiscDevicePPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    if (!attr->attr_name) {
        return -1;
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscDevicePPSModule::ParsePPSAttr, attr_name:%s\n",
            attr->attr_name);
    const int nIndex = PPSIndex(ATTRIBUTES, attr->attr_name);
    T_MPEG_DEVICE_STATUS status = m_pDiscData->GetDeviceStatus();
    if (nIndex >= 0) {
        ATTRIBUTES[nIndex].decode(status, PPSNumber(PPSText(attr->value)));
    }
    m_pDiscData->SetDeviceStatus(status);
    return nIndex;
}

PPSReaction DiscDevicePPSModule::Reaction(int nIndex) {
    return PPSReactionTo(ATTRIBUTES, nIndex);
}
