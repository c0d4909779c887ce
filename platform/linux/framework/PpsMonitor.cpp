#include "platform/linux/framework/PpsMonitor.h"

#include "platform/linux/framework/FrameworkLog.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <system_error>
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
    std::lock_guard lock(m_mutex);
    if (m_running || m_thread.joinable()) {
        return Error{"the PPS monitor runs already"};
    }
    if (!m_wake.valid()) {
        return Error{"the PPS monitor has no wake-up descriptor"};
    }
    m_running = true;
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error& error) {
        m_running = false;
        return Error{std::string("PPS monitor thread: ") + error.what()};
    }
    return ok();
}

bool PpsMonitor::stop() {
    {
        std::lock_guard lock(m_mutex);
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
        std::lock_guard lock(m_mutex);
        if (std::any_of(m_entries.begin(), m_entries.end(),
                        [key](const Entry& entry) { return entry.key == key; })) {
            return false;
        }
        m_entries.push_back({key, std::move(slot)});
    }
    wake();
    return true;
}

bool PpsMonitor::remove(int key) {
    std::lock_guard lock(m_mutex);
    return std::erase_if(m_entries, [key](const Entry& entry) { return entry.key == key; }) > 0;
}

bool PpsMonitor::drain(TimePoint deadline) {
    auto fence = std::make_shared<Fence>();
    {
        std::lock_guard lock(m_mutex);
        if (!m_running) {
            return true;
        }
        m_fences.push_back(fence);
    }
    wake();
    return fence->wait(deadline);
}

uint64_t PpsMonitor::activity() const {
    std::lock_guard lock(m_mutex);
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
        for (const auto& fence : turn.fences) {
            fence->pass();
        }
        if (!turn.running) {
            return;
        }
        wait(turn.entries);
    }
}

PpsMonitor::Turn PpsMonitor::takeTurn() {
    uint64_t count = 0;
    // Emptied before looking: a wake-up that comes later stays for the poll. Nothing to empty is no failure.
    [[maybe_unused]] const auto emptied = ::read(m_wake.get(), &count, sizeof count);
    std::lock_guard lock(m_mutex);
    Turn turn{m_entries, std::exchange(m_fences, {}), m_running};
    for (Entry& entry : m_entries) {
        entry.ready = false;
    }
    return turn;
}

void PpsMonitor::read(const Entry& entry) {
    auto text = entry.slot->read();
    {
        std::lock_guard lock(m_mutex);
        Entry* own = find(entry);
        // Told once, until a read succeeds again.
        if (own && std::exchange(own->failed, !text) != !text && !text) {
            reportFailure("PPS object " + std::to_string(entry.key) + ": " + text.error());
        }
    }
    if (text && !text->empty()) {
        deliver(entry, std::move(*text));
    }
}

void PpsMonitor::deliver(const Entry& entry, std::string text) {
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
        {
            std::lock_guard lock(m_mutex);
            if (!m_running || !find(entry)) {
                return;
            }
            ++m_delivered;
        }
        m_onChange(entry.key, &attribute);
    }
}

// The entry as it is now; null if it was removed. With m_mutex held.
PpsMonitor::Entry* PpsMonitor::find(const Entry& entry) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& other) {
        return other.key == entry.key && other.slot == entry.slot;
    });
    return found == m_entries.end() ? nullptr : &*found;
}

bool PpsMonitor::failed(const Entry& entry) {
    std::lock_guard lock(m_mutex);
    const Entry* own = find(entry);
    return own && own->failed;
}

// Waits until there is something to do, and notes which objects to read.
void PpsMonitor::wait(const std::vector<Entry>& entries) {
    std::vector<pollfd> waits{{m_wake.get(), POLLIN, 0}};
    bool retry = false;
    for (const Entry& entry : entries) {
        // One whose read fails may well be readable all the time.
        waits.push_back({failed(entry) ? -1 : entry.slot->pollFd(), POLLIN, 0});
        retry = retry || (waits.back().fd < 0 && entry.slot->isOpen());
    }
    ::poll(waits.data(), waits.size(), retry ? RetryMs : -1);
    std::lock_guard lock(m_mutex);
    for (size_t i = 0; i < entries.size(); ++i) {
        if (Entry* own = find(entries[i])) {
            own->ready = own->ready || waits[i + 1].fd < 0 || waits[i + 1].revents != 0;
        }
    }
}

void PpsMonitor::wake() {
    const uint64_t one = 1;
    // Fails only when the descriptor is readable already.
    [[maybe_unused]] const auto written = ::write(m_wake.get(), &one, sizeof one);
}

} // namespace zm
