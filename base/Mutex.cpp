#include "base/Mutex.h"

namespace zm {

MutexLock::MutexLock(Mutex& mutex) : m_lock(mutex.m_mutex) {}

MutexLock::~MutexLock() = default;

void MutexLock::lock() {
    m_lock.lock();
}

void MutexLock::unlock() {
    m_lock.unlock();
}

void Condition::wait(MutexLock& lock) {
    m_changed.wait(lock.m_lock);
}

bool Condition::waitUntil(MutexLock& lock, TimePoint deadline) {
    return m_changed.wait_until(lock.m_lock, deadline) == std::cv_status::no_timeout;
}

void Condition::notifyOne() {
    m_changed.notify_one();
}

void Condition::notifyAll() {
    m_changed.notify_all();
}

} // namespace zm
