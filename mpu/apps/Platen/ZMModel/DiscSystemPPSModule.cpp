#include "DiscSystemPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "PPSSubscriber.h"

int DiscSystemPPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    static constexpr PPSSubscribeRow<DiscSystemPPSModule> ROWS[] = {
        {SYSTEM_AUTODISCIN, &DiscSystemPPSModule::SubscribeAutoDiscIn},
        {SYSTEM_DISCSTATUS, nullptr},
    };
    return PPSDispatch(*this, ROWS, attr);
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
