#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zm {

using TimePoint = std::chrono::steady_clock::time_point;

/** A point in another thread's work that somebody waits for. Any thread. */
class Fence {
public:
    void pass() {
        std::lock_guard lock(m_mutex);
        m_passed = true;
        m_changed.notify_all();
    }
    /** False if the point was not reached before `deadline`. */
    bool wait(TimePoint deadline) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_until(lock, deadline, [this] { return m_passed; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_passed = false;
};

} // namespace zm
