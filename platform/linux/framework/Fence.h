#pragma once

#include "base/Mutex.h"

#include <chrono>

namespace zm {

using TimePoint = std::chrono::steady_clock::time_point;

/** A point in another thread's work that somebody waits for. Any thread. */
class Fence {
public:
    void pass() {
        MutexLock lock(m_mutex);
        m_passed = true;
        m_changed.notifyAll();
    }
    /** False if the point was not reached before `deadline`. */
    bool wait(TimePoint deadline) {
        MutexLock lock(m_mutex);
        while (!m_passed && m_changed.waitUntil(lock, deadline)) {
        }
        return m_passed;
    }

private:
    Mutex m_mutex;
    Condition m_changed;
    bool m_passed ZM_GUARDED_BY(m_mutex) = false;
};

} // namespace zm
