#pragma once

#include "base/Mailbox.h"
#include "services/disc/library/Catalogue.h"
#include "services/disc/model/Contents.h"

#include <functional>
#include <memory>

namespace zm::disc::library {

/**
 * Looks after the catalogue of a disc that has been read: when somebody takes its file away, it is made and
 * filled anew, on a thread of its own, `onRestored` being called after each kind. On the service's loop.
 */
class CatalogueGuard {
public:
    CatalogueGuard(EventLoop& loop, std::shared_ptr<Catalogue> catalogue,
                   std::shared_ptr<const model::Contents> contents, std::function<void()> onRestored);
    ~CatalogueGuard();
    CatalogueGuard(const CatalogueGuard&) = delete;
    CatalogueGuard& operator=(const CatalogueGuard&) = delete;

private:
    void look();
    void restore();

    std::shared_ptr<Catalogue> m_catalogue;
    std::shared_ptr<const model::Contents> m_contents;
    std::function<void()> m_onRestored;
    std::shared_ptr<Mailbox> m_mailbox;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    bool m_restoring = false; ///< the catalogue is held by the thread
    SourceHandle m_watch;
};

} // namespace zm::disc::library
