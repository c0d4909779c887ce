#pragma once

#include "zmcar/IPPSOnChange.h"

#include <memory>

namespace Oro::ZMCAR {

class PPSFileBase;

/**
 * The set of monitored PPS objects and the thread that reads them. The thread calls a derived class, which
 * therefore has to Stop it before its own members go away.
 */
class FilesControlBase : public IPPSOnChange {
public:
    FilesControlBase();
    ~FilesControlBase() override;

    virtual bool Init();
    /** Starts the monitor thread, which first delivers the present state of each object in the order of
     * adding. */
    virtual bool Start();
    /** Ends the monitor thread and waits for it; no change is delivered after the call. */
    virtual bool Stop();
    virtual bool Close();

    /** Adds an open object under `key`; false if the key is taken. May be called before or after Start. */
    bool AddFile(int key, PPSFileBase* file);
    /** Takes the object of `key` out; false if there is none. */
    bool RemoveFile(int key);

    void OnAttributeChange(int key, pps_attrib_t* attr) override;

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

} // namespace Oro::ZMCAR
