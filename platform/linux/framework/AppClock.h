#pragma once

#include "base/Mutex.h"
#include "platform/linux/framework/EventThread.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace zm {

/** What an alarm is for. */
enum class AlarmKind {
    Handler, ///< calls the application
    Tick     ///< moves the toolkit's animations on
};

/**
 * The application's time and its alarms, which run on the event thread. Time is real, or stands still until
 * it is advanced by hand. `set`, `cancel` and `nowMs` from any thread.
 */
class AppClock {
public:
    /** Tells alarms apart: whose it is, and its number there. */
    using Key = std::pair<const void*, unsigned>;
    struct Alarm {
        int64_t dueMs;
        int64_t periodMs; ///< 0: once
        AlarmKind kind;
        std::function<void()> callback;
        uint64_t order = 0; ///< of setting; decides among equal times
    };

    explicit AppClock(EventThread& events) : m_events(events) {}

    /** Before the event thread runs. */
    void setManual(bool manual);
    bool manual() const;
    /** Milliseconds since some moment before the first call. */
    int64_t nowMs() const;

    /** Sets an alarm, replacing the one of the same key. */
    void set(Key key, Alarm alarm);
    /** False if there is none. */
    bool cancel(Key key);
    void cancelAll(const void* owner);
    /** When the alarm of that key is due, or nothing. */
    std::optional<int64_t> due(Key key) const;

    /**
     * Manual time, on the event thread: runs what falls due until `limitMs`, in order of time, up to and
     * including the first alarm that calls the application. False when none is left; the time is then
     * `limitMs`.
     */
    bool advanceToHandler(int64_t limitMs);
    /** On the event thread, when it ends: no wake-up is left. */
    void disarm();

private:
    std::optional<Alarm> takeDue(int64_t limitMs);
    void armOnEventThread();
    void arm();
    void wake();

    EventThread& m_events;
    mutable Mutex m_mutex;
    std::map<Key, Alarm> m_alarms ZM_GUARDED_BY(m_mutex);
    uint64_t m_nextOrder ZM_GUARDED_BY(m_mutex) = 0;
    bool m_manual ZM_GUARDED_BY(m_mutex) = false;
    int64_t m_manualNow ZM_GUARDED_BY(m_mutex) = 0;
    SourceHandle m_wakeup;
    std::optional<int64_t> m_armedFor;
};

} // namespace zm
