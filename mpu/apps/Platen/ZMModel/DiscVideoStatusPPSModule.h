#pragma once

#include "sys/pps.h"
#include "zmcar/PPSFileBase.h"

#include <pthread.h>

class CDiscData;
class DiscViewController;

/** Reads the video service's status object. On the monitor thread. */
class DiscVideoStatusPPSModule : public Oro::ZMCAR::PPSFileBase {
public:
    DiscVideoStatusPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange,
                             DiscViewController* pController);
    ~DiscVideoStatusPPSModule() override;

    void AttachData(CDiscData* pData) { m_pDiscData = pData; }
    /** The index of the attribute, also when its value could not be decoded; -1 if its name is missing or
     * unknown. */
    int ParsePPSAttr(pps_attrib_t* attr);

    void SubscribeZmDisc(char* encoding, char* value);
    void SubscribeZmVideo(char* encoding, char* value);

private:
    void ApplyStatus(const char* status);

    CDiscData* m_pDiscData = nullptr;
    [[maybe_unused]] DiscViewController* m_pController; ///< not used by the parsing, like the mutex
    pthread_mutex_t m_mutex;
};
