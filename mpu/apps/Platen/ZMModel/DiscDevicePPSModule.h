#pragma once

#include "sys/pps.h"
#include "zmcar/PPSFileBase.h"

class CDiscData;
struct T_MPEG_DEVICE_STATUS;

/** Reads the disc service's device object into the state store. On the monitor thread. */
class DiscDevicePPSModule : public Oro::ZMCAR::PPSFileBase {
public:
    DiscDevicePPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange);

    void AttachData(CDiscData* pData) { m_pDiscData = pData; }
    /** 1 to 6, or -1 if the name is missing or unknown; an unknown one still writes the unchanged record
     * back. */
    int ParsePPSAttr(pps_attrib_t* attr);

private:
    static void SubscribeMediaType(T_MPEG_DEVICE_STATUS& status, int nValue);
    static void SubscribeDisc(T_MPEG_DEVICE_STATUS& status, int nValue);
    static void SubscribeMixedType(T_MPEG_DEVICE_STATUS& status, int nValue);
    static void SubscribeMixedSwitching(T_MPEG_DEVICE_STATUS& status, int nValue);
    static void SubscribeErrorStatus(T_MPEG_DEVICE_STATUS& status, int nValue);
    static void SubscribeVideoMode(T_MPEG_DEVICE_STATUS& status, int nValue);

    CDiscData* m_pDiscData = nullptr;
};
