#pragma once

#include "platform/linux/framework/PpsSlot.h"
#include "zmcar/PPSFileBase.h"

#include <memory>

struct Oro::ZMCAR::PPSFileBase::Impl {
    fileTagInfo info;
    IPPSOnChange* onChange;
    // Shared with a monitor thread that may be reading it at this moment.
    std::shared_ptr<zm::PpsSlot> slot = std::make_shared<zm::PpsSlot>();
};
