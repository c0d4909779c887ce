#include "DiscMpegInfoPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSSubscriber.h"
#include "ViewMessages.h"

static constexpr PPSAttributeRow<PPSSubscribe<DiscMpegInfoPPSModule>> ATTRIBUTES[] = {
    {MPEGINFO_VERSION, &DiscMpegInfoPPSModule::SubscribeVersion, {DISC_VMSG_VERSION}},
};
static_assert(PPSNamesDiffer(ATTRIBUTES));

int DiscMpegInfoPPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    if (attr->attr_name) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscMpegInfoPPSModule::ParsePPSAttr, attr_name:%s\n",
                attr->attr_name);
    }
    return PPSDispatch(*this, ATTRIBUTES, attr);
}

PPSReaction DiscMpegInfoPPSModule::Reaction(int nIndex) {
    return PPSReactionTo(ATTRIBUTES, nIndex);
}

void DiscMpegInfoPPSModule::SubscribeVersion(char* encoding, char* value) {
    m_pDiscData->SetMpegVersion(value);
}
