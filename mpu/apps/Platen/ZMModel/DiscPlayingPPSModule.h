#pragma once

#include "ZMModel/DiscPPSModule.h"
#include "ZMModel/PPSSubscriber.h"

#include "sys/pps.h"

/** Reads the disc service's playing object into the state store. On the monitor thread. */
class DiscPlayingPPSModule : public DiscPPSModule {
public:
    using DiscPPSModule::DiscPPSModule;

    /** The index of the attribute, also when its value could not be decoded; -1 if its name is missing or
     * unknown. */
    int ParsePPSAttr(pps_attrib_t* attr);
    /** What follows a change of the attribute of that index. */
    static PPSReaction Reaction(int nIndex);

    void SubscribeTrackInfo(char* encoding, char* value);
    void SubscribePlayTime(char* encoding, char* value);
    void SubscribePlayID3(char* encoding, char* value);
    /** No attribute leads here: clipsType stays 0. */
    void SubscribeClipsType(char* encoding, char* value);
};
