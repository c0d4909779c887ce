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
        uint64_t count = 0;
        // Emptied before looking: a wake-up that comes later stays for the poll. Nothing to empty is no
        // failure.
        [[maybe_unused]] const auto emptied = ::read(m_wake.get(), &count, sizeof count);
        std::vector<Entry> entries;
        std::vector<std::shared_ptr<Fence>> fences;
        bool running = false;
        {
            std::lock_guard lock(m_mutex);
            entries = m_entries;
            fences = std::exchange(m_fences, {});
            running = m_running;
        }
        while (running && readAll(entries)) {
        }
        for (const auto& fence : fences) {
            fence->pass();
        }
        if (!running) {
            return;
        }
        wait(entries);
    }
}

// Reads each object once, in the order of adding; whether there was anything.
bool PpsMonitor::readAll(std::vector<Entry>& entries) {
    bool any = false;
    for (Entry& entry : entries) {
        auto text = entry.slot->read();
        entry.failed = !text;
        noteRead(entry, text ? "" : text.error());
        if (text && !text->empty()) {
            any = true;
            deliver(entry, std::move(*text));
        }
    }
    std::lock_guard lock(m_mutex);
    return any && m_running;
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
            const bool wanted =
                m_running && std::any_of(m_entries.begin(), m_entries.end(), [&](const Entry& other) {
                    return other.key == entry.key && other.slot == entry.slot;
                });
            if (!wanted) {
                return;
            }
            ++m_delivered;
        }
        m_onChange(entry.key, &attribute);
    }
}

// Tells of a failure once, until a read succeeds again.
void PpsMonitor::noteRead(const Entry& read, const std::string& why) {
    std::lock_guard lock(m_mutex);
    for (Entry& entry : m_entries) {
        if (entry.key == read.key && std::exchange(entry.failed, read.failed) != read.failed && read.failed) {
            reportFailure("PPS object " + std::to_string(entry.key) + ": " + why);
        }
    }
}

void PpsMonitor::wait(const std::vector<Entry>& entries) {
    std::vector<pollfd> waits{{m_wake.get(), POLLIN, 0}};
    int timeout = -1;
    for (const Entry& entry : entries) {
        // One whose read fails may well be readable all the time.
        const int fd = entry.failed ? -1 : entry.slot->pollFd();
        if (fd >= 0) {
            waits.push_back({fd, POLLIN, 0});
        } else if (entry.slot->isOpen()) {
            timeout = RetryMs;
        }
    }
    ::poll(waits.data(), waits.size(), timeout);
}

void PpsMonitor::wake() {
    const uint64_t one = 1;
    // Fails only when the descriptor is readable already.
    [[maybe_unused]] const auto written = ::write(m_wake.get(), &one, sizeof one);
}

} // namespace zm
