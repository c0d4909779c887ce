#include "services/disc/player/ResumeMemory.h"

#include "base/Threads.h"
#include "services/disc/log/Log.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>

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
        std::lock_guard lock(m_mutex);
        m_wanted = std::move(discs);
        // Without a thread the next call tries again.
        m_running = m_running || runInBackground([self = shared_from_this()] { self->run(); });
    }

    void finish() {
        std::unique_lock lock(m_mutex);
        if (m_idle.wait_for(lock, Patience, [this] { return !m_running; })) {
            writeWanted(lock);
        }
    }

private:
    void run() {
        std::unique_lock lock(m_mutex);
        writeWanted(lock);
        m_running = false;
        m_idle.notify_all();
    }

    void writeWanted(std::unique_lock<std::mutex>& lock) {
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
    }

    ResumeFile m_file; ///< used by one thread at a time: `read` comes before the first `write`
    std::mutex m_mutex;
    std::condition_variable m_idle;
    std::optional<std::vector<RememberedDisc>> m_wanted;
    bool m_running = false;
    bool m_failing = false;
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
