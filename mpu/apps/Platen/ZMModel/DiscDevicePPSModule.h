#pragma once

#include "ZMModel/DiscPPSModule.h"
#include "ZMModel/PPSSubscriber.h"

#include "sys/pps.h"

/** Reads the disc service's device object into the state store. On the monitor thread. */
class DiscDevicePPSModule : public DiscPPSModule {
public:
    using DiscPPSModule::DiscPPSModule;

    /** 1 to 6, or -1 if the name is missing or unknown; an unknown one still writes the unchanged record
     * back. */
    int ParsePPSAttr(pps_attrib_t* attr);
    /** What follows a change of the attribute of that index. */
    static PPSReaction Reaction(int nIndex);
};
