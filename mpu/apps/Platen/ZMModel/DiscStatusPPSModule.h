#pragma once

#include "ZMModel/DiscPPSModule.h"
#include "ZMModel/PPSSubscriber.h"

#include "sys/pps.h"

/** Reads the disc service's status object into the state store. On the monitor thread. */
class DiscStatusPPSModule : public DiscPPSModule {
public:
    using DiscPPSModule::DiscPPSModule;

    /** The index of the attribute, also when its value could not be decoded; -1 if its name is missing or
     * unknown. */
    int ParsePPSAttr(pps_attrib_t* attr);
    /** What follows a change of the attribute of that index. */
    static PPSReaction Reaction(int nIndex);

    void SubscribeDiscState(char* encoding, char* value);
    void SubscribePlayState(char* encoding, char* value);
    void SubscribeRootMenu(char* encoding, char* value);
    void SubscribeParental(char* encoding, char* value);
    void SubscribeUpdatedb(char* encoding, char* value);
    void SubscribeDvdState(char* encoding, char* value);
    void SubscribeAudioChannel(char* encoding, char* value);
    void SubscribePlaySpeed(char* encoding, char* value);
    void SubscribeKeyInvalid(char* encoding, char* value);
    void SubscribeMsgTip(char* encoding, char* value);
};
