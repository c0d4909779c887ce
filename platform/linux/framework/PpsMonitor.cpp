#include "platform/linux/framework/PpsMonitor.h"

#include "base/Threads.h"
#include "platform/linux/framework/FrameworkLog.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <utility>

namespace zm {

namespace {

// How soon an object is tried again that cannot be waited on (its service is away).
constexpr int RetryMs = 100;

} // namespace

PpsMonitor::PpsMonitor(OnChange onChange)
    : m_onChange(std::move(onChange)), m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

PpsMonitor::~PpsMonitor() {
    stop();
}

Status PpsMonitor::start() {
    MutexLock lock(m_mutex);
    if (m_running || m_thread.joinable()) {
        return Error{"the PPS monitor runs already"};
    }
    if (!m_wake.valid()) {
        return Error{"the PPS monitor has no wake-up descriptor"};
    }
    m_running = true;
    auto thread = startThread("PPS monitor thread", [this] { run(); });
    if (!thread) {
        m_running = false;
        return thread.failure();
    }
    m_thread = std::move(*thread);
    return ok();
}

bool PpsMonitor::stop() {
    {
        MutexLock lock(m_mutex);
        m_running = false;
    }
    if (m_thread.get_id() == std::this_thread::get_id()) {
        return false;
    }
    if (m_thread.joinable()) {
        wake();
        m_thread.join();
    }
    return true;
}

bool PpsMonitor::add(int key, std::shared_ptr<PpsSlot> slot) {
    {
        MutexLock lock(m_mutex);
        if (std::any_of(m_entries.begin(), m_entries.end(),
                        [key](const Entry& entry) { return entry.key == key; })) {
            return false;
        }
        m_entries.push_back({m_nextId++, key, std::move(slot)});
    }
    wake();
    return true;
}

bool PpsMonitor::remove(int key) {
    MutexLock lock(m_mutex);
    return std::erase_if(m_entries, [key](const Entry& entry) { return entry.key == key; }) > 0;
}

bool PpsMonitor::drain(TimePoint deadline) {
    auto fence = std::make_shared<Fence>();
    {
        MutexLock lock(m_mutex);
        if (!m_running) {
            return true;
        }
        m_fences.push_back(fence);
    }
    wake();
    return fence->wait(deadline);
}

uint64_t PpsMonitor::activity() const {
    MutexLock lock(m_mutex);
    return m_delivered;
}

void PpsMonitor::run() {
    for (;;) {
        Turn turn = takeTurn();
        for (const Entry& entry : turn.entries) {
            // A fence asks for everything that was written before it, noticed or not.
            if (turn.running && (entry.ready || !turn.fences.empty())) {
                read(entry);
            }
        }
        if (turn.running) {
            deliver(turn.entries);
        }
        for (const auto& fence : turn.fences) {
            fence->pass();
        }
        if (!turn.running) {
            return;
        }
        look(turn.entries, !m_order.waits());
    }
}

PpsMonitor::Turn PpsMonitor::takeTurn() {
    uint64_t count = 0;
    // Emptied before looking: a wake-up that comes later stays for the poll. An empty one is fine.
    [[maybe_unused]] const auto emptied = ::read(m_wake.get(), &count, sizeof count);
    MutexLock lock(m_mutex);
    Turn turn{m_entries, std::exchange(m_fences, {}), m_running};
    for (Entry& entry : m_entries) {
        entry.ready = false;
    }
    return turn;
}

void PpsMonitor::read(const Entry& entry) {
    auto changes = entry.slot->read();
    {
        MutexLock lock(m_mutex);
        Entry* own = find(entry.id);
        // Told once, until a read succeeds again.
        if (own && std::exchange(own->failed, !changes) != !changes && !changes) {
            reportFailure("PPS object " + std::to_string(entry.key) + ": " + changes.error());
        }
    }
    if (changes) {
        m_order.add(entry.id, std::move(*changes));
    }
}

// A change is noticed before one that was written later can be read. So what is not readable now has nothing
// older than what was read, and the rest has to be read before anything younger is delivered.
void PpsMonitor::deliver(const std::vector<Entry>& entries) {
    if (!m_order.waits()) {
        return;
    }
    for (auto& [id, text] : m_order.take(look(entries, false))) {
        report(id, std::move(text));
    }
}

void PpsMonitor::report(int id, std::string text) {
    char none[] = "";
    pps_attrib_t attribute{};
    attribute.obj_index = attribute.attr_index = -1;
    char* rest = text.data();
    for (pps_status_t status; (status = ppsparse(&rest, nullptr, nullptr, &attribute, 0)) != PPS_END;) {
        if (status == PPS_ATTRIBUTE_DELETED) {
            attribute.encoding = attribute.value = none;
        } else if (status != PPS_ATTRIBUTE) {
            continue;
        }
        int key = 0;
        {
            MutexLock lock(m_mutex);
            const Entry* entry = find(id);
            if (!m_running || !entry) {
                return;
            }
            key = entry->key;
            ++m_delivered;
        }
        m_onChange(key, &attribute);
    }
}

// The entry as it is now; null if it was removed.
PpsMonitor::Entry* PpsMonitor::find(int id) {
    const auto found = std::ranges::find(m_entries, id, &Entry::id);
    return found == m_entries.end() ? nullptr : &*found;
}

bool PpsMonitor::failed(int id) {
    MutexLock lock(m_mutex);
    const Entry* own = find(id);
    return own && own->failed;
}

// Looks which objects have something, and notes them; with `wait`, once there is something to do.
std::vector<int> PpsMonitor::look(const std::vector<Entry>& entries, bool wait) {
    std::vector<pollfd> waits{{m_wake.get(), POLLIN, 0}};
    bool retry = false;
    for (const Entry& entry : entries) {
        // One whose read fails may well be readable all the time.
        waits.push_back({failed(entry.id) ? -1 : entry.slot->pollFd(), POLLIN, 0});
        retry = retry || (waits.back().fd < 0 && entry.slot->isOpen());
    }
    ::poll(waits.data(), waits.size(), !wait ? 0 : retry ? RetryMs : -1);
    std::vector<int> readable;
    MutexLock lock(m_mutex);
    for (size_t i = 0; i < entries.size(); ++i) {
        if (Entry* own = find(entries[i].id)) {
            own->ready = own->ready || waits[i + 1].fd < 0 || waits[i + 1].revents != 0;
            if (waits[i + 1].revents != 0) {
                readable.push_back(own->id);
            }
        }
    }
    return readable;
}

void PpsMonitor::wake() {
    const uint64_t one = 1;
    // Fails only when the descriptor is readable already.
    [[maybe_unused]] const auto written = ::write(m_wake.get(), &one, sizeof one);
}

} // namespace zm
