#include "platform/linux/qdb/QdbHold.h"

#include "platform/linux/qdb/HoldPoint.h"

namespace zm {

static thread_local bool isWorkerThread = false;

HoldPoint& HoldPoint::instance() {
    // Never destroyed: a worker may still wait when the process ends.
    static auto& instance = *new HoldPoint;
    return instance;
}

void HoldPoint::arm(int rows) {
    MutexLock guard(m_mutex);
    m_armedRow = rows < 0 ? 0 : rows;
}

void HoldPoint::release() {
    MutexLock guard(m_mutex);
    m_armedRow.reset();
    ++m_releases;
    m_waiting = 0; // from now on, even if they have not woken up yet
    m_released.notifyAll();
}

bool HoldPoint::anyWaiting() {
    MutexLock guard(m_mutex);
    return m_waiting > 0;
}

std::optional<HoldPoint::Taken> HoldPoint::take() {
    if (!isWorkerThread) {
        return std::nullopt;
    }
    MutexLock guard(m_mutex);
    if (!m_armedRow) {
        return std::nullopt;
    }
    Taken taken{*m_armedRow, m_releases};
    m_armedRow.reset();
    return taken;
}

void HoldPoint::wait(uint64_t ticket) {
    if (!isWorkerThread) {
        return;
    }
    MutexLock lock(m_mutex);
    if (m_releases == ticket) {
        ++m_waiting;
        while (m_releases == ticket) {
            m_released.wait(lock);
        }
    }
}

void qdbHold(int rows) {
    HoldPoint::instance().arm(rows);
}

void qdbRelease() {
    HoldPoint::instance().release();
}

bool qdbHeld() {
    return HoldPoint::instance().anyWaiting();
}

void qdbMarkWorker() {
    isWorkerThread = true;
}

} // namespace zm
