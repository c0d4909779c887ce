#pragma once

#include "sys/pps.h"

namespace Oro::ZMCAR {

/** Is told of each changed attribute of the monitored PPS objects. */
class IPPSOnChange {
public:
    virtual ~IPPSOnChange() = default;
    /**
     * One changed attribute of the object registered under `key`, in the order of the lines; on the monitor
     * thread. Encoding and value of a deleted attribute are empty texts.
     */
    virtual void OnAttributeChange(int key, pps_attrib_t* attr) = 0;
};

} // namespace Oro::ZMCAR
