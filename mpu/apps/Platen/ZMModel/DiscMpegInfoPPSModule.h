#pragma once

#include "ZMModel/DiscPPSModule.h"
#include "ZMModel/PPSSubscriber.h"

#include "sys/pps.h"

/** Reads the decoder's version into the state store. On the monitor thread. */
class DiscMpegInfoPPSModule : public DiscPPSModule {
public:
    using DiscPPSModule::DiscPPSModule;

    /** 0, or -1 if the name is missing or unknown. */
    int ParsePPSAttr(pps_attrib_t* attr);
    /** What follows a change of the attribute of that index. */
    static PPSReaction Reaction(int nIndex);

    void SubscribeVersion(char* encoding, char* value);
};
