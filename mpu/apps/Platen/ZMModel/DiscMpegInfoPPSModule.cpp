#include "DiscMpegInfoPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSSubscriber.h"

int DiscMpegInfoPPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    static constexpr PPSSubscribeRow<DiscMpegInfoPPSModule> ROWS[] = {
        {MPEGINFO_VERSION, &DiscMpegInfoPPSModule::SubscribeVersion},
    };
    if (attr->attr_name) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscMpegInfoPPSModule::ParsePPSAttr, attr_name:%s\n",
                attr->attr_name);
    }
    return PPSDispatch(*this, ROWS, attr);
}

void DiscMpegInfoPPSModule::SubscribeVersion(char* encoding, char* value) {
    m_pDiscData->SetMpegVersion(value);
}
