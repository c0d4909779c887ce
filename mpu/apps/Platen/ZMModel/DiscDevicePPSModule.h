#pragma once

#include "ZMModel/DiscPPSModule.h"

#include "sys/pps.h"

struct T_MPEG_DEVICE_STATUS;

/** Reads the disc service's device object into the state store. On the monitor thread. */
class DiscDevicePPSModule : public DiscPPSModule {
public:
    using DiscPPSModule::DiscPPSModule;

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
};
