#include "platform/linux/framework/EventThread.h"

#include "base/Threads.h"

namespace zm {

namespace {

thread_local const EventThread* currentThread = nullptr;

} // namespace

EventThread::~EventThread() {
    stop();
}

Status EventThread::start(Task first, Task last) {
    {
        MutexLock lock(m_mutex);
        if (m_phase != Phase::Waiting) {
            return Error{"the event thread was started before"};
        }
        m_phase = Phase::Running;
    }
    auto thread = startThread("event thread", [this, first = std::move(first), last = std::move(last)] {
        currentThread = this;
        runEvent(first, Counted::No);
        m_loop->run();
        last();
        currentThread = nullptr;
    });
    if (!thread) {
        MutexLock lock(m_mutex);
        m_phase = Phase::Waiting;
        return thread.failure();
    }
    m_thread = std::move(*thread);
    return ok();
}

void EventThread::stop() {
    std::deque<Event> dropped;
    {
        MutexLock lock(m_mutex);
        m_phase = Phase::Stopped;
        dropped.swap(m_events);
    }
    m_loop->quit();
    if (m_thread.joinable() && !isCurrent()) {
        m_thread.join();
    }
}

void EventThread::reset() {
    stop();
    m_loop = std::make_unique<EventLoop>();
    MutexLock lock(m_mutex);
    m_phase = Phase::Waiting;
}

bool EventThread::isCurrent() const {
    return currentThread == this;
}

bool EventThread::running() const {
    MutexLock lock(m_mutex);
    return m_phase == Phase::Running;
}

bool EventThread::stopped() const {
    MutexLock lock(m_mutex);
    return m_phase == Phase::Stopped;
}

void EventThread::post(Task task, Counted counted) {
    MutexLock lock(m_mutex);
    if (m_phase == Phase::Stopped) {
        return;
    }
    m_activity += counted == Counted::Yes;
    m_events.push_back({std::move(task), counted});
    m_loop->post([this] { runNext(); });
}

bool EventThread::runAndWait(Task task, TimePoint deadline) {
    auto fence = std::make_shared<Fence>();
    // The fence passes when the event is destroyed: after it ran, or when it is dropped.
    std::shared_ptr<void> guard(nullptr, [fence](void*) { fence->pass(); });
    post([task = std::move(task), guard = std::move(guard)] { task(); }, Counted::No);
    return fence->wait(deadline);
}

void EventThread::runEvent(const Task& task, Counted counted) {
    task();
    if (afterEvent) {
        afterEvent();
    }
    MutexLock lock(m_mutex);
    m_activity += counted == Counted::Yes;
}

bool EventThread::drain(TimePoint deadline) {
    return runAndWait([] {}, deadline);
}

uint64_t EventThread::activity() const {
    MutexLock lock(m_mutex);
    return m_activity;
}

void EventThread::runNext() {
    Event event;
    {
        MutexLock lock(m_mutex);
        if (m_events.empty()) {
            return;
        }
        event = std::move(m_events.front());
        m_events.pop_front();
    }
    runEvent(event.task, event.counted);
}

} // namespace zm
