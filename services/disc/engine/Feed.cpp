#include "services/disc/engine/Feed.h"

#include "base/Mutex.h"
#include "base/Threads.h"
#include "services/disc/engine/ScratchReader.h"
#include "services/disc/medium/RawFilm.h"

#include <chrono>
#include <optional>

namespace zm::disc::engine {

namespace {

constexpr auto ReadDeadline = std::chrono::seconds(8);

} // namespace

struct Feed::Shared {
    Mutex mutex;
    Condition changed;
    std::optional<uint64_t> request ZM_GUARDED_BY(mutex); ///< offset of the block wanted
    std::optional<std::vector<char>> block ZM_GUARDED_BY(mutex);
    std::optional<uint64_t> size ZM_GUARDED_BY(mutex);
    std::string failure ZM_GUARDED_BY(mutex);
    bool cancelled ZM_GUARDED_BY(mutex) = false;

    // Waits until `answer` is there; false when cancelled, failed or too late.
    template <class Answer>
    bool wait(MutexLock& lock, const std::optional<Answer>& answer) ZM_REQUIRES(mutex) {
        const auto deadline = std::chrono::steady_clock::now() + ReadDeadline;
        while (!cancelled && failure.empty() && !answer) {
            if (!changed.waitUntil(lock, deadline) && !cancelled && failure.empty() && !answer) {
                failure = "no answer from the drive";
            }
        }
        return !cancelled && failure.empty();
    }

    void fail(const std::string& why) {
        MutexLock lock(mutex);
        failure = why;
        changed.notifyAll();
    }

    // The reading thread: opens the file, then serves one request after the other until cancelled.
    static void run(const std::shared_ptr<Shared>& shared, const std::shared_ptr<medium::Medium>& medium,
                    const std::string& path, Scratch scratch) {
        auto reader = medium->open(path);
        if (!reader) {
            shared->fail(reader.error());
            return;
        }
        if (scratch == Scratch::IsPassedOver) {
            *reader = medium::withoutSectors(std::make_unique<ScratchReader>(std::move(*reader)));
        }
        MutexLock lock(shared->mutex);
        shared->size = (*reader)->size();
        shared->changed.notifyAll();
        for (;;) {
            while (!shared->cancelled && !shared->request) {
                shared->changed.wait(lock);
            }
            if (shared->cancelled) {
                return;
            }
            const uint64_t offset = *shared->request;
            lock.unlock();
            std::vector<char> bytes(BlockBytes);
            const auto count = (*reader)->readAt(offset, bytes);
            lock.lock();
            if (!count) {
                shared->failure = count.error();
                shared->changed.notifyAll();
                return;
            }
            bytes.resize(*count);
            shared->request.reset();
            shared->block = std::move(bytes);
            shared->changed.notifyAll();
        }
    }
};

Feed::Feed(std::shared_ptr<medium::Medium> medium, std::string path, Scratch scratch)
    : m_shared(std::make_shared<Shared>()) {
    const auto begun = runInBackground([shared = m_shared, medium = std::move(medium), path = std::move(path),
                                        scratch] { Shared::run(shared, medium, path, scratch); });
    if (!begun) {
        m_shared->fail(begun.error());
    }
}

Feed::~Feed() {
    cancel();
}

Result<uint64_t> Feed::open() {
    MutexLock lock(m_shared->mutex);
    if (!m_shared->wait(lock, m_shared->size)) {
        return Error{m_shared->cancelled ? "cancelled" : m_shared->failure};
    }
    return *m_shared->size;
}

std::vector<char> Feed::fetch(uint64_t offset) {
    MutexLock lock(m_shared->mutex);
    m_shared->request = offset;
    m_shared->block.reset();
    m_shared->changed.notifyAll();
    if (!m_shared->wait(lock, m_shared->block)) {
        return {};
    }
    std::vector<char> block = std::move(*m_shared->block);
    m_shared->block.reset();
    return block;
}

bool Feed::isWaiting() const {
    MutexLock lock(m_shared->mutex);
    const bool over = m_shared->cancelled || !m_shared->failure.empty();
    return !over && (!m_shared->size || m_shared->request);
}

void Feed::cancel() {
    MutexLock lock(m_shared->mutex);
    m_shared->cancelled = true;
    m_shared->changed.notifyAll();
}

std::string Feed::failure() const {
    MutexLock lock(m_shared->mutex);
    return m_shared->failure;
}

} // namespace zm::disc::engine
