#pragma once

#include "base/Mailbox.h"
#include "base/Result.h"
#include "services/disc/cover/CoverFinder.h"

#include <functional>
#include <memory>

namespace zm::disc::cover {

/**
 * Looks for covers on a thread of its own, the latest wish only. It is left behind when the drive hangs. On the service's
 * loop.
 */
class CoverWorker {
public:
    /** Is told, on the loop, of the cover that was wished for last. */
    using OnFound = std::function<void(const model::Cover&)>;

    CoverWorker(EventLoop& loop, std::shared_ptr<CoverFinder> finder, OnFound onFound);
    /** Nothing is found any more. */
    ~CoverWorker();
    CoverWorker(const CoverWorker&) = delete;
    CoverWorker& operator=(const CoverWorker&) = delete;

    /** An error when the system has no thread to give. */
    Status look(const model::Item& song);
    /** What was wished for is not wanted any more. */
    void forget();

private:
    struct Shared;
    static void work(Shared& shared, CoverFinder& finder, Mailbox& mailbox, const OnFound& onFound);

    std::shared_ptr<Mailbox> m_mailbox;
    std::shared_ptr<CoverFinder> m_finder;
    std::shared_ptr<Shared> m_shared;
    OnFound m_onFound;
    bool m_begun = false;
};

} // namespace zm::disc::cover
