#pragma once

#include "base/Mailbox.h"
#include "services/disc/library/Catalogue.h"
#include "services/disc/medium/Medium.h"
#include "services/disc/model/Contents.h"

#include <memory>
#include <string>

namespace zm::disc::library {

struct ScanProgress;

/** Is told how far a disc is read. On the service's loop, in this order. */
class LoadListener {
public:
    virtual ~LoadListener() = default;
    /** The catalogue no longer shows anything of the disc before. */
    virtual void loadBegun() = 0;
    /** All is numbered; the catalogue follows. */
    virtual void loadScanned(std::shared_ptr<const model::Contents> contents) = 0;
    /** All files and folders of `kind` are in the catalogue. */
    virtual void loadCatalogued(model::MediaKind kind) = 0;
    virtual void loadFinished() = 0;
    /** Instead of the rest. */
    virtual void loadFailed(const std::string& reason) = 0;
};

/**
 * Reads a disc and fills the catalogue, on a thread of its own. Destroying it ends the reports at once; a
 * thread that hangs in the drive is left behind. A drive that does not answer for long is a failure.
 */
class DiscLoad {
public:
    DiscLoad(EventLoop& loop, LoadListener& listener, std::shared_ptr<medium::Medium> medium,
             std::shared_ptr<Catalogue> catalogue);
    ~DiscLoad();

private:
    void watch();

    LoadListener& m_listener;
    std::shared_ptr<Mailbox> m_mailbox;
    std::shared_ptr<ScanProgress> m_progress;
    SourceHandle m_watch;
    int m_lastSteps = -1;
};

} // namespace zm::disc::library
