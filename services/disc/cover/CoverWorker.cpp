#include "services/disc/cover/CoverWorker.h"

#include "base/Mutex.h"
#include "base/Threads.h"

#include <atomic>
#include <utility>

namespace zm::disc::cover {

/** What the loop and the thread share. */
struct CoverWorker::Shared {
    Mutex mutex;
    Condition changed;
    std::optional<model::Item> wish ZM_GUARDED_BY(mutex);
    std::atomic<uint64_t> number{0}; ///< of the latest wish, or of its end
    bool over ZM_GUARDED_BY(mutex) = false;
};

CoverWorker::CoverWorker(EventLoop& loop, std::shared_ptr<CoverFinder> finder, OnFound onFound)
    : m_mailbox(std::make_shared<Mailbox>(loop)), m_finder(std::move(finder)),
      m_shared(std::make_shared<Shared>()), m_onFound(std::move(onFound)) {}

CoverWorker::~CoverWorker() {
    m_mailbox->close();
    {
        MutexLock lock(m_shared->mutex);
        m_shared->over = true;
        ++m_shared->number;
    }
    m_shared->changed.notifyOne();
}

Status CoverWorker::look(const model::Item& song) {
    {
        MutexLock lock(m_shared->mutex);
        m_shared->wish = song;
        ++m_shared->number;
    }
    m_shared->changed.notifyOne();
    if (m_begun) {
        return ok();
    }
    const Status begun =
        runInBackground([shared = m_shared, finder = m_finder, mailbox = m_mailbox, onFound = m_onFound] {
            work(*shared, *finder, *mailbox, onFound);
        });
    m_begun = static_cast<bool>(begun);
    return begun;
}

void CoverWorker::forget() {
    MutexLock lock(m_shared->mutex);
    m_shared->wish.reset();
    ++m_shared->number;
}

void CoverWorker::work(Shared& shared, CoverFinder& finder, Mailbox& mailbox, const OnFound& onFound) {
    for (;;) {
        std::optional<model::Item> song;
        uint64_t number = 0;
        {
            MutexLock lock(shared.mutex);
            while (!shared.over && !shared.wish) {
                shared.changed.wait(lock);
            }
            if (shared.over) {
                return;
            }
            song = std::exchange(shared.wish, std::nullopt);
            number = shared.number;
        }
        const auto cover = finder.find(*song, [&] { return shared.number != number; });
        MutexLock lock(shared.mutex);
        if (cover && shared.number == number) {
            mailbox.post([cover = *cover, onFound] { onFound(cover); });
        }
    }
}

} // namespace zm::disc::cover
