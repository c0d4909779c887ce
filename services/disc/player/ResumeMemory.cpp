#include "services/disc/player/ResumeMemory.h"

#include "base/Mutex.h"
#include "base/Threads.h"
#include "services/disc/log/Log.h"

#include <algorithm>

namespace zm::disc::player {

namespace {

constexpr std::chrono::seconds Patience{3};

} // namespace

/** Writes the newest of the lists that it was given; shared with the thread that does so. */
class ResumeMemory::Writer : public std::enable_shared_from_this<Writer> {
public:
    explicit Writer(const std::string& file) : m_file(file) {}

    std::vector<RememberedDisc> read() { return m_file.read(); }

    void write(std::vector<RememberedDisc> discs) {
        MutexLock lock(m_mutex);
        m_wanted = std::move(discs);
        // Without a thread the next call tries again.
        m_running = m_running || runInBackground([self = shared_from_this()] { self->run(); });
    }

    void finish() {
        MutexLock lock(m_mutex);
        const auto deadline = std::chrono::steady_clock::now() + Patience;
        while (m_running && m_idle.waitUntil(lock, deadline)) {
        }
        const bool left = !m_running && m_wanted;
        lock.unlock();
        if (left) {
            run();
        }
    }

private:
    void run() {
        MutexLock lock(m_mutex);
        while (m_wanted) {
            const auto discs = std::move(*m_wanted);
            m_wanted.reset();
            lock.unlock();
            const auto status = m_file.write(discs);
            lock.lock();
            if (!status && !m_failing) {
                logWarning("where discs were left cannot be kept: %s\n", status.error().c_str());
            }
            m_failing = !status;
        }
        m_running = false;
        m_idle.notifyAll();
    }

    ResumeFile m_file; ///< used by one thread at a time: `read` comes before the first `write`
    Mutex m_mutex;
    Condition m_idle;
    std::optional<std::vector<RememberedDisc>> m_wanted ZM_GUARDED_BY(m_mutex);
    bool m_running ZM_GUARDED_BY(m_mutex) = false;
    bool m_failing ZM_GUARDED_BY(m_mutex) = false;
};

ResumeMemory::ResumeMemory(const std::string& file) : m_writer(std::make_shared<Writer>(file)) {
    m_discs = m_writer->read();
}

ResumeMemory::~ResumeMemory() {
    m_writer->finish();
}

std::optional<ResumePoint> ResumeMemory::find(const std::string& identity) const {
    const auto disc = std::find_if(m_discs.begin(), m_discs.end(),
                                   [&](const RememberedDisc& each) { return each.identity == identity; });
    return disc == m_discs.end() ? std::nullopt : std::optional(disc->point);
}

void ResumeMemory::keep(const std::string& identity, const ResumePoint& point) {
    std::erase_if(m_discs, [&](const RememberedDisc& each) { return each.identity == identity; });
    m_discs.push_back({identity, point});
    if (m_discs.size() > MaxDiscs) {
        m_discs.erase(m_discs.begin(), m_discs.end() - MaxDiscs);
    }
    m_writer->write(m_discs);
}

} // namespace zm::disc::player
