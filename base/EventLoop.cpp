#include "base/EventLoop.h"

#include "base/Mutex.h"

#include <glib-unix.h>
#include <glib.h>

#include <deque>
#include <utility>

namespace zm {

struct EventLoop::State {
    Mutex mutex;
    std::deque<std::function<void()>> tasks ZM_GUARDED_BY(mutex);
    bool stop ZM_GUARDED_BY(mutex) = false;
};

EventLoop::EventLoop() : m_context(g_main_context_new()), m_state(std::make_unique<State>()) {}

EventLoop::~EventLoop() {
    {
        // Posted tasks that never ran are dropped here, on the owner's thread.
        std::deque<std::function<void()>> dropped;
        MutexLock lock(m_state->mutex);
        dropped.swap(m_state->tasks);
    }
    g_main_context_unref(m_context);
}

void EventLoop::run() {
    g_main_context_push_thread_default(m_context);
    for (;;) {
        {
            MutexLock lock(m_state->mutex);
            if (m_state->stop) {
                m_state->stop = false;
                break;
            }
        }
        iterate(true);
    }
    g_main_context_pop_thread_default(m_context);
}

void EventLoop::quit() {
    {
        MutexLock lock(m_state->mutex);
        m_state->stop = true;
    }
    g_main_context_wakeup(m_context);
}

bool EventLoop::iterate(bool wait) {
    bool ran = false;
    {
        // Take only the tasks of this moment, so that a task that posts itself does not starve descriptors.
        std::deque<std::function<void()>> tasks;
        {
            MutexLock lock(m_state->mutex);
            tasks.swap(m_state->tasks);
        }
        for (auto& task : tasks) {
            task();
            ran = true;
        }
    }
    bool more = false;
    {
        MutexLock lock(m_state->mutex);
        more = !m_state->tasks.empty() || m_state->stop;
    }
    return g_main_context_iteration(m_context, wait && !ran && !more) || ran;
}

void EventLoop::post(std::function<void()> task) {
    {
        MutexLock lock(m_state->mutex);
        m_state->tasks.push_back(std::move(task));
    }
    g_main_context_wakeup(m_context);
}

SourceHandle::SourceHandle(SourceHandle&& other) noexcept
    : m_source(std::exchange(other.m_source, nullptr)) {}

SourceHandle& SourceHandle::operator=(SourceHandle&& other) noexcept {
    if (this != &other) {
        reset();
        m_source = std::exchange(other.m_source, nullptr);
    }
    return *this;
}

SourceHandle::~SourceHandle() {
    reset();
}

void SourceHandle::reset() {
    if (auto* source = std::exchange(m_source, nullptr)) {
        g_source_destroy(source);
        g_source_unref(source);
    }
}

namespace {

template <class Function>
struct Holder {
    Function callback;
    static void destroy(gpointer data) { delete static_cast<Holder*>(data); }
};

template <class Function>
SourceHandle attach(EventLoop& loop, GSource* source, GSourceFunc trampoline, Function callback) {
    g_source_set_callback(source, trampoline, new Holder<Function>{std::move(callback)},
                          Holder<Function>::destroy);
    g_source_attach(source, loop.context());
    return SourceHandle(source);
}

using Plain = std::function<void()>;
using WithStatus = std::function<void(int)>;

// The due time of a periodic source, so that late dispatches do not push later ones.
struct IntervalSource {
    GSource base;
    gint64 period;
};

gboolean dispatchInterval(GSource* source, GSourceFunc callback, gpointer data) {
    auto* self = reinterpret_cast<IntervalSource*>(source);
    const gint64 now = g_get_monotonic_time();
    const gint64 next = g_source_get_ready_time(source) + self->period;
    g_source_set_ready_time(source, next < now ? now : next);
    return callback(data);
}

GSourceFuncs intervalFuncs = {nullptr, nullptr, dispatchInterval, nullptr, nullptr, nullptr};

} // namespace

SourceHandle everyInterval(EventLoop& loop, std::chrono::milliseconds interval, Plain callback) {
    GSource* source = g_source_new(&intervalFuncs, sizeof(IntervalSource));
    auto* self = reinterpret_cast<IntervalSource*>(source);
    self->period = interval.count() * 1000;
    g_source_set_ready_time(source, g_get_monotonic_time() + self->period);
    return attach(
        loop, source,
        [](gpointer data) -> gboolean {
            static_cast<Holder<Plain>*>(data)->callback();
            return G_SOURCE_CONTINUE;
        },
        std::move(callback));
}

SourceHandle afterDelay(EventLoop& loop, std::chrono::milliseconds delay, Plain callback) {
    return attach(
        loop, g_timeout_source_new(static_cast<guint>(delay.count())),
        [](gpointer data) -> gboolean {
            static_cast<Holder<Plain>*>(data)->callback();
            return G_SOURCE_REMOVE;
        },
        std::move(callback));
}

SourceHandle watchFd(EventLoop& loop, int fd, IoEvent event, Plain callback) {
    const auto condition =
        static_cast<GIOCondition>((event == IoEvent::Readable ? G_IO_IN : G_IO_OUT) | G_IO_HUP | G_IO_ERR);
    GUnixFDSourceFunc trampoline = [](gint, GIOCondition, gpointer data) -> gboolean {
        static_cast<Holder<Plain>*>(data)->callback();
        return G_SOURCE_CONTINUE;
    };
    return attach(loop, g_unix_fd_source_new(fd, condition), G_SOURCE_FUNC(trampoline), std::move(callback));
}

SourceHandle watchChild(EventLoop& loop, int pid, WithStatus callback) {
    GChildWatchFunc trampoline = [](GPid, gint status, gpointer data) {
        static_cast<Holder<WithStatus>*>(data)->callback(status);
    };
    return attach(loop, g_child_watch_source_new(pid), G_SOURCE_FUNC(trampoline), std::move(callback));
}

SourceHandle watchSignal(EventLoop& loop, int signal, Plain callback) {
    return attach(
        loop, g_unix_signal_source_new(signal),
        [](gpointer data) -> gboolean {
            static_cast<Holder<Plain>*>(data)->callback();
            return G_SOURCE_CONTINUE;
        },
        std::move(callback));
}

} // namespace zm
