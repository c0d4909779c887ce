#pragma once

#include <pthread.h>

/** Holds a POSIX mutex for the length of a block. */
class MutexGuard {
public:
    explicit MutexGuard(pthread_mutex_t& mutex) : m_mutex(mutex) { pthread_mutex_lock(&m_mutex); }
    ~MutexGuard() { pthread_mutex_unlock(&m_mutex); }
    MutexGuard(const MutexGuard&) = delete;
    MutexGuard& operator=(const MutexGuard&) = delete;

private:
    pthread_mutex_t& m_mutex;
};
