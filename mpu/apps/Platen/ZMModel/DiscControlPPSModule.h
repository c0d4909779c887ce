#pragma once

#include "ZMModel/DiscPPSModule.h"

#include <string>

/** Sends player commands to the disc service. */
class DiscControlPPSModule : public DiscPPSModule {
public:
    DiscControlPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange);

    /** The result of the write; true when there was nothing to write. On the views' thread. */
    bool PublishCmdCommmand(int cmd, int param1, int param2);

private:
    std::string m_strObject;
};
