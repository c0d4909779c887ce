#include "DiscSystemPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "PPSSubscriber.h"

static constexpr PPSAttributeRow<PPSSubscribe<DiscSystemPPSModule>> ATTRIBUTES[] = {
    {SYSTEM_AUTODISCIN, &DiscSystemPPSModule::SubscribeAutoDiscIn, {NO_MESSAGE}},
    {SYSTEM_DISCSTATUS, nullptr, {NO_MESSAGE}},
};
static_assert(PPSNamesDiffer(ATTRIBUTES));

int DiscSystemPPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    return PPSDispatch(*this, ATTRIBUTES, attr);
}

void DiscSystemPPSModule::SubscribeAutoDiscIn(char* encoding, char* value) {
    m_pDiscData->SetDiscAutoInsertFlag(PPSUnsigned(value) != 0);
}

void DiscSystemPPSModule::SubscribeDiscStatus(char* encoding, char* value) {
    T_MPEG_DEVICE_STATUS status = m_pDiscData->GetDeviceStatus();
    if (std::strcmp(value, SYSTEM_ON) == 0) {
        status.bExisting = true;
    } else if (std::strcmp(value, SYSTEM_OFF) == 0) {
        status.bExisting = false;
    }
    m_pDiscData->SetDeviceStatus(status);
}
