#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// What clang is told of locks, so that it refuses an access without them (-Wthread-safety). Nothing to other compilers.
#ifdef __clang__
#define ZM_THREAD_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define ZM_THREAD_ATTRIBUTE(attribute)
#endif

/** Behind a field: it is read and written under that lock only. */
#define ZM_GUARDED_BY(mutex) ZM_THREAD_ATTRIBUTE(guarded_by(mutex))
/** Behind a function: who calls it holds that lock. */
#define ZM_REQUIRES(mutex) ZM_THREAD_ATTRIBUTE(requires_capability(mutex))

namespace zm {

/** A lock of which the compiler knows what it guards. Not recursive. */
class ZM_THREAD_ATTRIBUTE(capability("mutex")) Mutex {
public:
    constexpr Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

private:
    friend class MutexLock;
    std::mutex m_mutex;
};

/** Holds a mutex for the length of a block, but for what stands between `unlock` and `lock`. */
class ZM_THREAD_ATTRIBUTE(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& mutex) ZM_THREAD_ATTRIBUTE(acquire_capability(mutex));
    ~MutexLock() ZM_THREAD_ATTRIBUTE(release_capability());
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    void lock() ZM_THREAD_ATTRIBUTE(acquire_capability());
    void unlock() ZM_THREAD_ATTRIBUTE(release_capability());

private:
    friend class Condition;
    std::unique_lock<std::mutex> m_lock;
};

/** A change under a lock that other threads wait for. A wait may end without one: it stands in a loop that looks. */
class Condition {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    void wait(MutexLock& lock);
    /** False once `deadline` has passed. */
    bool waitUntil(MutexLock& lock, TimePoint deadline);
    void notifyOne();
    void notifyAll();

private:
    std::condition_variable m_changed;
};

} // namespace zm
