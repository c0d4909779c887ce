#include "platform/linux/framework/Worker.h"

#include "base/Threads.h"
#include "platform/linux/qdb/QdbHold.h"

#include <algorithm>

namespace zm {

namespace {

// A worker that comes to a held row tells nobody, so it is looked for.
constexpr std::chrono::milliseconds LookAgain(2);

} // namespace

Worker::~Worker() {
    stop();
}

Status Worker::start(Hooks hooks) {
    MutexLock lock(m_mutex);
    if (m_running || m_thread.joinable()) {
        return Error{"the worker thread runs already"};
    }
    m_hooks = std::move(hooks);
    auto thread = startThread("worker thread", [this] { run(); });
    if (!thread) {
        return thread.failure();
    }
    m_thread = std::move(*thread);
    m_running = true;
    return ok();
}

void Worker::request() {
    MutexLock lock(m_mutex);
    m_requested = true;
    ++m_activity;
    m_changed.notifyAll();
}

void Worker::stop() {
    bool busy = false;
    {
        MutexLock lock(m_mutex);
        m_running = false;
        m_requested = false;
        busy = m_busy;
        m_changed.notifyAll();
    }
    if (!m_thread.joinable() || m_thread.get_id() == std::this_thread::get_id()) {
        return;
    }
    if (busy) {
        qdbRelease();
    }
    m_thread.join();
}

bool Worker::drain(TimePoint deadline) {
    MutexLock lock(m_mutex);
    while (m_running && (m_busy || m_requested)) {
        const TimePoint now = std::chrono::steady_clock::now();
        if (m_busy && qdbHeld()) {
            return true;
        }
        if (now >= deadline) {
            return false;
        }
        m_changed.waitUntil(lock, std::min(deadline, now + LookAgain));
    }
    return true;
}

uint64_t Worker::activity() const {
    MutexLock lock(m_mutex);
    return m_activity;
}

void Worker::run() {
    qdbMarkWorker();
    m_hooks.begin();
    MutexLock lock(m_mutex);
    for (;;) {
        while (!m_requested && m_running) {
            m_changed.wait(lock);
        }
        if (!m_running) {
            break;
        }
        m_requested = false;
        m_busy = true;
        lock.unlock();
        m_hooks.task();
        lock.lock();
        m_busy = false;
        ++m_activity;
        m_changed.notifyAll();
    }
    lock.unlock();
    m_hooks.end();
}

} // namespace zm
