#pragma once

#include "sys/pps.h"
#include "zmcar/PPSFileBase.h"

class CDiscData;

/** Would read the system service's disc attributes; its object is opened but never monitored. */
class DiscSystemPPSModule : public Oro::ZMCAR::PPSFileBase {
public:
    DiscSystemPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange);

    void AttachData(CDiscData* pData) { m_pDiscData = pData; }
    /** The index of the attribute; -1 if its name is missing or unknown. */
    int ParsePPSAttr(pps_attrib_t* attr);

    void SubscribeAutoDiscIn(char* encoding, char* value);
    /** Not called by the parser: the disc's presence comes from the device object. */
    void SubscribeDiscStatus(char* encoding, char* value);

private:
    CDiscData* m_pDiscData = nullptr;
};
