#pragma once

#include "sys/pps.h"
#include "zmcar/PPSFileBase.h"

class CDiscData;

/** Reads the decoder's version into the state store. On the monitor thread. */
class DiscMpegInfoPPSModule : public Oro::ZMCAR::PPSFileBase {
public:
    DiscMpegInfoPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange);

    void AttachData(CDiscData* pData) { m_pDiscData = pData; }
    /** 0, or -1 if the name is missing or unknown. */
    int ParsePPSAttr(pps_attrib_t* attr);

    void SubscribeVersion(char* encoding, char* value);

private:
    CDiscData* m_pDiscData = nullptr;
};
