#pragma once

#include "zmcar/PPSFileBase.h"

class CDiscData;

/** What the modules share: one PPS object each, and the state store that it is read into or written from. */
class DiscPPSModule : public Oro::ZMCAR::PPSFileBase {
public:
    using PPSFileBase::PPSFileBase;

    void AttachData(CDiscData* pData) { m_pDiscData = pData; }

protected:
    CDiscData* m_pDiscData = nullptr;
};
