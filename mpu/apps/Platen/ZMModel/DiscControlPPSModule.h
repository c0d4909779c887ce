#pragma once

#include "zmcar/PPSFileBase.h"

#include <string>

class CDiscData;

/** Sends player commands to the disc service. */
class DiscControlPPSModule : public Oro::ZMCAR::PPSFileBase {
public:
    DiscControlPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange);

    void AttachData(CDiscData* pData) { m_pDiscData = pData; }
    /** The result of the write; true when there was nothing to write. On the views' thread. */
    bool PublishCmdCommmand(int cmd, int param1, int param2);

private:
    CDiscData* m_pDiscData = nullptr;
    std::string m_strObject;
};
