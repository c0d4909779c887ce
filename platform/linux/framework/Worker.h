#pragma once

#include "base/Mutex.h"
#include "base/Result.h"
#include "platform/linux/framework/Settler.h"

#include <functional>
#include <thread>

namespace zm {

/** A thread that runs one task each time it is asked to. It counts as settled while it is idle or held at a
 * row. */
class Worker : public ActivitySource {
public:
    struct Hooks {
        std::function<void()> begin; ///< on the thread, before the first task
        std::function<void()> task;
        std::function<void()> end; ///< on the thread, after the last task
    };

    ~Worker() override;

    Status start(Hooks hooks);
    /** Asks for one run; requests that arrive during a run start one more afterwards. Any thread. */
    void request();
    /** Ends the thread after the run in progress and waits for it (unless called on it); a held run is let
     * go. */
    void stop();

    bool drain(TimePoint deadline) override;
    uint64_t activity() const override;

private:
    void run();

    mutable Mutex m_mutex;
    Condition m_changed;
    bool m_requested ZM_GUARDED_BY(m_mutex) = false;
    bool m_busy ZM_GUARDED_BY(m_mutex) = false;
    bool m_running ZM_GUARDED_BY(m_mutex) = false;
    uint64_t m_activity ZM_GUARDED_BY(m_mutex) = 0;
    Hooks m_hooks;
    std::thread m_thread;
};

} // namespace zm
