#pragma once

#include <pthread.h>

// What clang is told of locks, so that it refuses an access without them. Nothing to others.
#ifdef __clang__
#define LOCK_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define LOCK_ATTRIBUTE(attribute)
#endif

/** Behind a field: it is read and written under that lock only. */
#define GUARDED_BY(mutex) LOCK_ATTRIBUTE(guarded_by(mutex))
/** Behind a function: who calls it holds that lock. */
#define NEEDS_LOCK(mutex) LOCK_ATTRIBUTE(requires_capability(mutex))
/** Behind a function: it locks for its caller, or may do without for the reason that its comment gives. */
#define LOCK_UNCHECKED LOCK_ATTRIBUTE(no_thread_safety_analysis)

/** A POSIX mutex with default attributes: not recursive. */
class LOCK_ATTRIBUTE(capability("mutex")) Mutex {
public:
    Mutex() { pthread_mutex_init(&m_mutex, nullptr); }
    ~Mutex() { pthread_mutex_destroy(&m_mutex); }
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void Lock() LOCK_ATTRIBUTE(acquire_capability()) { pthread_mutex_lock(&m_mutex); }
    void UnLock() LOCK_ATTRIBUTE(release_capability()) { pthread_mutex_unlock(&m_mutex); }

private:
    pthread_mutex_t m_mutex;
};

/** Holds a mutex for the length of a block. */
class LOCK_ATTRIBUTE(scoped_lockable) MutexGuard {
public:
    explicit MutexGuard(Mutex& mutex) LOCK_ATTRIBUTE(acquire_capability(mutex)) : m_mutex(mutex) {
        m_mutex.Lock();
    }
    ~MutexGuard() LOCK_ATTRIBUTE(release_capability()) { m_mutex.UnLock(); }
    MutexGuard(const MutexGuard&) = delete;
    MutexGuard& operator=(const MutexGuard&) = delete;

private:
    Mutex& m_mutex;
};
