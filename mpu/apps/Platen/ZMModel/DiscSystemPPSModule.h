#pragma once

#include "ZMModel/DiscPPSModule.h"

#include "sys/pps.h"

/** Would read the system service's disc attributes; its object is opened but never monitored. */
class DiscSystemPPSModule : public DiscPPSModule {
public:
    using DiscPPSModule::DiscPPSModule;

    /** The index of the attribute; -1 if its name is missing or unknown. */
    int ParsePPSAttr(pps_attrib_t* attr);

    void SubscribeAutoDiscIn(char* encoding, char* value);
    /** Not called by the parser: the disc's presence comes from the device object. */
    void SubscribeDiscStatus(char* encoding, char* value);
};
