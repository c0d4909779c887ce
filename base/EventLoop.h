#pragma once

#include <chrono>
#include <functional>
#include <memory>

using GMainContext = struct _GMainContext;
using GSource = struct _GSource;

namespace zm {

/**
 * An event loop with a GMainContext of its own. `run` makes the calling thread the loop's thread and the
 * context its thread default. `post` and `quit` may be called from any thread; everything else belongs to the
 * loop's thread (or to whoever sets things up before `run`). Callbacks must not throw.
 */
class EventLoop {
public:
    EventLoop();
    ~EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    /** Dispatches events until `quit`; what was posted before stays in order. */
    void run();
    void quit();
    /** Dispatches what is ready now; waits for something first when `wait` is true. Returns whether anything
     * ran. */
    bool iterate(bool wait);
    /** Runs `task` on the loop's thread, after what was posted earlier; never inside the call. */
    void post(std::function<void()> task);

    GMainContext* context() const { return m_context; }

private:
    GMainContext* m_context;
    struct State;
    std::unique_ptr<State> m_state;
};

/** A GSource that is destroyed with its owner. */
class SourceHandle {
public:
    SourceHandle() = default;
    explicit SourceHandle(GSource* source) : m_source(source) {}
    SourceHandle(SourceHandle&& other) noexcept;
    SourceHandle& operator=(SourceHandle&& other) noexcept;
    ~SourceHandle();
    void reset();
    bool active() const { return m_source != nullptr; }

private:
    GSource* m_source = nullptr;
};

/** What may be waited for on a descriptor. */
enum class IoEvent { Readable, Writable };

/**
 * Calls `callback` every `interval` without drift (first time after one interval) until the handle goes away.
 * The callback may reset or replace the handle.
 */
SourceHandle everyInterval(EventLoop& loop, std::chrono::milliseconds interval,
                           std::function<void()> callback);
/** Calls `callback` once after `delay`. */
SourceHandle afterDelay(EventLoop& loop, std::chrono::milliseconds delay, std::function<void()> callback);
/** Calls `callback` each time `fd` is ready (or broken: the next read then tells). The descriptor stays the
 * caller's. */
SourceHandle watchFd(EventLoop& loop, int fd, IoEvent event, std::function<void()> callback);
/** Calls `callback` once with the wait status of the ended child process `pid`, which is reaped. */
SourceHandle watchChild(EventLoop& loop, int pid, std::function<void(int status)> callback);
/** Calls `callback` for each arrival of `signal` (SIGTERM, SIGINT, SIGHUP, SIGUSR1 or SIGUSR2). */
SourceHandle watchSignal(EventLoop& loop, int signal, std::function<void()> callback);

} // namespace zm
