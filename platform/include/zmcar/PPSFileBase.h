#pragma once

#include "zmcar/FileTagInfo.h"

#include <memory>

namespace Oro::ZMCAR {

class IPPSOnChange;

/** One PPS object: opened, written and (through FilesControlBase) monitored. */
class PPSFileBase {
public:
    explicit PPSFileBase(const fileTagInfo& info, IPPSOnChange* onChange = nullptr);
    virtual ~PPSFileBase();
    PPSFileBase(const PPSFileBase&) = delete;
    PPSFileBase& operator=(const PPSFileBase&) = delete;

    /** Opens the object; false if it cannot be opened or is open already. */
    bool OpenPPS();
    /** Closes it; false if it was not open. */
    bool ClosePPS();
    /** Writes `length` bytes of PPS text as one change; false if it is not open or the write fails. Any
     * thread. */
    bool WritePPS(const char* buffer, int length);

    const fileTagInfo& GetTagInfo() const;
    IPPSOnChange* GetOnChange() const;

private:
    friend class FilesControlBase;
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

} // namespace Oro::ZMCAR
