#include "services/disc/DiscOpening.h"

#include "base/Mutex.h"
#include "base/Threads.h"
#include "services/disc/medium/OpenMedium.h"

#include <optional>
#include <utility>

namespace zm::disc {

namespace {

// Long enough for any disc that lies on this machine, and short enough for whoever waits for the service.
constexpr std::chrono::milliseconds Patience{500};

/** What the opening thread hands over. */
struct Handover {
    Mutex mutex;
    Condition there;
    std::optional<DiscOpening::Opened> medium ZM_GUARDED_BY(mutex);
    bool late ZM_GUARDED_BY(mutex) = false; ///< nobody waits any more
};

} // namespace

void DiscOpening::open(const std::string& path, Done done) {
    const uint64_t number = ++m_number;
    const auto handover = std::make_shared<Handover>();
    const auto begun = runInBackground([this, path, done, number, handover, mailbox = m_mailbox] {
        auto medium = medium::openMedium(path);
        MutexLock lock(handover->mutex);
        if (!handover->late) {
            handover->medium = std::move(medium);
            handover->there.notifyAll();
            return;
        }
        mailbox->post([this, done, number, medium = std::move(medium)] {
            if (number == m_number) {
                done(medium);
            }
        });
    });
    if (!begun) {
        done(medium::openMedium(path));
        return;
    }
    MutexLock lock(handover->mutex);
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    while (!handover->medium && handover->there.waitUntil(lock, deadline)) {
    }
    handover->late = !handover->medium;
    if (handover->medium) {
        const Opened medium = *std::exchange(handover->medium, std::nullopt);
        lock.unlock();
        done(medium);
    }
}

} // namespace zm::disc
