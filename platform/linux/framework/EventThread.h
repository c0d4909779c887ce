#pragma once

#include "base/EventLoop.h"
#include "base/Mutex.h"
#include "base/Result.h"
#include "platform/linux/framework/Settler.h"

#include <deque>
#include <functional>
#include <memory>
#include <thread>

namespace zm {

/** Whether an event counts as activity: something that called, or may have called, the application. */
enum class Counted { Yes, No };

/**
 * A thread that runs events in the order in which they were posted. What is posted before `start` waits for
 * it; what is posted after `stop` is dropped, as is what still waits then.
 */
class EventThread : public ActivitySource {
public:
    using Task = std::function<void()>;

    EventThread() = default;
    ~EventThread() override;

    /** Runs after each event, on the thread. Set before `start`. */
    Task afterEvent;

    /** Starts the thread; it runs `first` before all events, and `last` after the last one. */
    Status start(Task first, Task last);
    /** Ends the thread after the event that runs and waits for it (unless called on it). */
    void stop();
    /** Ready to be started again after `stop`. */
    void reset();

    bool isCurrent() const;
    /** Started and not stopped. */
    bool running() const;
    bool stopped() const;

    /** Any thread. */
    void post(Task task, Counted counted = Counted::Yes);
    /** Posts `task` and waits until it has run or was dropped; false if it has not before `deadline`. Another
     * thread. */
    bool runAndWait(Task task, TimePoint deadline);
    /** Runs `task` at once as an event of its own. On the thread. */
    void runEvent(const Task& task, Counted counted);

    /** For sources of the thread's own; on the thread. */
    EventLoop& loop() { return *m_loop; }

    bool drain(TimePoint deadline) override;
    uint64_t activity() const override;

private:
    enum class Phase { Waiting, Running, Stopped };
    struct Event {
        Task task;
        Counted counted;
    };
    void runNext();

    mutable Mutex m_mutex;
    Phase m_phase ZM_GUARDED_BY(m_mutex) = Phase::Waiting;
    std::deque<Event> m_events ZM_GUARDED_BY(m_mutex);
    uint64_t m_activity ZM_GUARDED_BY(m_mutex) = 0;
    std::unique_ptr<EventLoop> m_loop = std::make_unique<EventLoop>();
    std::thread m_thread;
};

} // namespace zm
