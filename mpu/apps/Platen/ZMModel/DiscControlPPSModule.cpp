#include "DiscControlPPSModule.h"

#include "DiscPPSInfo.h"
#include "PPSObjectEncoder.h"

DiscControlPPSModule::DiscControlPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange)
    : DiscPPSModule(info, pOnChange), m_strObject(DISC_CMD_OBJECT) {}

bool DiscControlPPSModule::PublishCmdCommmand(int cmd, int param1, int param2) {
    return PPSObjectEncoder(m_strObject, DISC_CMD)
        .Add(DISC_CMD_cmd, cmd)
        .Add(DISC_CMD_param1, param1)
        .Add(DISC_CMD_param2, param2)
        .Write(*this, true);
}
