#include "services/disc/engine/Feed.h"

#include "base/Threads.h"
#include "services/disc/engine/ScratchReader.h"
#include "services/disc/medium/RawFilm.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace zm::disc::engine {

namespace {

constexpr auto ReadDeadline = std::chrono::seconds(8);

} // namespace

struct Feed::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<uint64_t> request; ///< offset of the block wanted
    std::optional<std::vector<char>> block;
    std::optional<uint64_t> size;
    std::string failure;
    bool cancelled = false;

    // Waits under `lock` until `ready`; false when cancelled, failed or too late.
    template <class Ready>
    bool wait(std::unique_lock<std::mutex>& lock, Ready ready) {
        const bool inTime =
            changed.wait_for(lock, ReadDeadline, [&] { return cancelled || !failure.empty() || ready(); });
        if (!inTime && failure.empty()) {
            failure = "no answer from the drive";
        }
        return inTime && !cancelled && failure.empty();
    }

    void fail(const std::string& why) {
        std::lock_guard lock(mutex);
        failure = why;
        changed.notify_all();
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
        std::unique_lock lock(shared->mutex);
        shared->size = (*reader)->size();
        shared->changed.notify_all();
        for (;;) {
            shared->changed.wait(lock, [&] { return shared->cancelled || shared->request; });
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
                shared->changed.notify_all();
                return;
            }
            bytes.resize(*count);
            shared->request.reset();
            shared->block = std::move(bytes);
            shared->changed.notify_all();
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
    std::unique_lock lock(m_shared->mutex);
    if (!m_shared->wait(lock, [&] { return m_shared->size.has_value(); })) {
        return Error{m_shared->cancelled ? "cancelled" : m_shared->failure};
    }
    return *m_shared->size;
}

std::vector<char> Feed::fetch(uint64_t offset) {
    std::unique_lock lock(m_shared->mutex);
    m_shared->request = offset;
    m_shared->block.reset();
    m_shared->changed.notify_all();
    if (!m_shared->wait(lock, [&] { return m_shared->block.has_value(); })) {
        return {};
    }
    std::vector<char> block = std::move(*m_shared->block);
    m_shared->block.reset();
    return block;
}

bool Feed::isWaiting() const {
    std::lock_guard lock(m_shared->mutex);
    const bool over = m_shared->cancelled || !m_shared->failure.empty();
    return !over && (!m_shared->size || m_shared->request);
}

void Feed::cancel() {
    std::lock_guard lock(m_shared->mutex);
    m_shared->cancelled = true;
    m_shared->changed.notify_all();
}

std::string Feed::failure() const {
    std::lock_guard lock(m_shared->mutex);
    return m_shared->failure;
}

} // namespace zm::disc::engine
