#pragma once

#include "ZMModel/DiscPPSModule.h"
#include "ZMModel/Mutex.h"
#include "ZMModel/PPSSubscriber.h"

#include "sys/pps.h"

class DiscViewController;

/** Reads the video service's status object. On the monitor thread. */
class DiscVideoStatusPPSModule : public DiscPPSModule {
public:
    DiscVideoStatusPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange,
                             DiscViewController* pController);

    /** The index of the attribute, also when its value could not be decoded; -1 if its name is missing or
     * unknown. */
    int ParsePPSAttr(pps_attrib_t* attr);
    /** What follows a change of the attribute of that index. */
    static PPSReaction Reaction(int nIndex);

    void SubscribeZmDisc(char* encoding, char* value);
    void SubscribeZmVideo(char* encoding, char* value);

private:
    void ApplyStatus(const char* status);

    [[maybe_unused]] DiscViewController* m_pController; ///< not used by the parsing, like the mutex
    Mutex m_mutex;
};
