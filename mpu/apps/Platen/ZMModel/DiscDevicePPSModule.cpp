#include "DiscDevicePPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSSubscriber.h"

int DiscDevicePPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    struct Row {
        const char* name;
        int nIndex;
        void (*subscribe)(T_MPEG_DEVICE_STATUS& status, int nValue);
    };
    static constexpr Row ROWS[] = {
        {DEVICE_MEDIATYPE, 2, SubscribeMediaType},     {DEVICE_DISC, 1, SubscribeDisc},
        {DEVICE_MIXEDTYPE, 3, SubscribeMixedType},     {DEVICE_MIXEDSWITCHING, 4, SubscribeMixedSwitching},
        {DEVICE_ERRORSTATUS, 5, SubscribeErrorStatus}, {DEVICE_VIDEOMODE, 6, SubscribeVideoMode},
    };
    if (!attr->attr_name) {
        return -1;
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscDevicePPSModule::ParsePPSAttr, attr_name:%s\n",
            attr->attr_name);

    int nIndex = -1;
    T_MPEG_DEVICE_STATUS status = m_pDiscData->GetDeviceStatus();
    for (const Row& row : ROWS) {
        if (std::strcmp(attr->attr_name, row.name) == 0) {
            row.subscribe(status, PPSNumber(PPSText(attr->value)));
            nIndex = row.nIndex;
            break;
        }
    }
    m_pDiscData->SetDeviceStatus(status);
    return nIndex;
}

void DiscDevicePPSModule::SubscribeMediaType(T_MPEG_DEVICE_STATUS& status, int nValue) {
    status.nMediaType = nValue;
}

void DiscDevicePPSModule::SubscribeDisc(T_MPEG_DEVICE_STATUS& status, int nValue) {
    status.bConnected = nValue == 0 || nValue == 1;
    status.bExisting = nValue == 1;
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscConnected:%d\n", status.bConnected);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscExisting:%d\n", status.bExisting);
}

void DiscDevicePPSModule::SubscribeMixedType(T_MPEG_DEVICE_STATUS& status, int nValue) {
    status.nMixedType = nValue;
}

void DiscDevicePPSModule::SubscribeMixedSwitching(T_MPEG_DEVICE_STATUS& status, int nValue) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "status.bMixedSwitching=%d=======\n", nValue);
    status.bMixedSwitching = nValue != 0;
}

void DiscDevicePPSModule::SubscribeErrorStatus(T_MPEG_DEVICE_STATUS& status, int nValue) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "status.nErrorStatus=0x%x=======\n", nValue);
    status.nErrorStatus = nValue;
}

void DiscDevicePPSModule::SubscribeVideoMode(T_MPEG_DEVICE_STATUS& status, int nValue) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "status.nVideoMode=%d=======\n", nValue);
    status.nVideoMode = nValue;
}
