#pragma once

#include "base/EventLoop.h"
#include "base/Mutex.h"

#include <functional>
#include <memory>

namespace zm {

/**
 * A way back to a loop for threads that may be left behind (a disc read can hang for ever): once closed,
 * whatever was or will be posted is dropped, so a thread that comes back late harms nobody. `post` from any
 * thread; `close` on the loop's thread.
 */
class Mailbox : public std::enable_shared_from_this<Mailbox> {
public:
    explicit Mailbox(EventLoop& loop) : m_loop(&loop) {}

    void post(std::function<void()> task) {
        MutexLock lock(m_mutex);
        if (m_loop) {
            m_loop->post([self = shared_from_this(), task = std::move(task)] {
                if (self->isOpen()) {
                    task();
                }
            });
        }
    }
    void close() {
        MutexLock lock(m_mutex);
        m_loop = nullptr;
    }

private:
    bool isOpen() {
        MutexLock lock(m_mutex);
        return m_loop != nullptr;
    }
    Mutex m_mutex;
    EventLoop* m_loop ZM_GUARDED_BY(m_mutex);
};

} // namespace zm
