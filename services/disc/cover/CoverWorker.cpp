#include "services/disc/cover/CoverWorker.h"

#include "base/Threads.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace zm::disc::cover {

/** What the loop and the thread share. */
struct CoverWorker::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<model::Item> wish;
    std::atomic<uint64_t> number{0}; ///< of the latest wish, or of its end
    bool over = false;
};

CoverWorker::CoverWorker(EventLoop& loop, std::shared_ptr<CoverFinder> finder, OnFound onFound)
    : m_mailbox(std::make_shared<Mailbox>(loop)), m_finder(std::move(finder)),
      m_shared(std::make_shared<Shared>()), m_onFound(std::move(onFound)) {}

CoverWorker::~CoverWorker() {
    m_mailbox->close();
    {
        std::lock_guard lock(m_shared->mutex);
        m_shared->over = true;
        ++m_shared->number;
    }
    m_shared->changed.notify_one();
}

Status CoverWorker::look(const model::Item& song) {
    {
        std::lock_guard lock(m_shared->mutex);
        m_shared->wish = song;
        ++m_shared->number;
    }
    m_shared->changed.notify_one();
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
    std::lock_guard lock(m_shared->mutex);
    m_shared->wish.reset();
    ++m_shared->number;
}

void CoverWorker::work(Shared& shared, CoverFinder& finder, Mailbox& mailbox, const OnFound& onFound) {
    for (;;) {
        std::optional<model::Item> song;
        uint64_t number = 0;
        {
            std::unique_lock lock(shared.mutex);
            shared.changed.wait(lock, [&] { return shared.over || shared.wish; });
            if (shared.over) {
                return;
            }
            song = std::exchange(shared.wish, std::nullopt);
            number = shared.number;
        }
        const auto cover = finder.find(*song, [&] { return shared.number != number; });
        std::lock_guard lock(shared.mutex);
        if (cover && shared.number == number) {
            mailbox.post([cover = *cover, onFound] { onFound(cover); });
        }
    }
}

} // namespace zm::disc::cover
