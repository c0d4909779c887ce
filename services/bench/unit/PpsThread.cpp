#include "services/bench/unit/PpsThread.h"

namespace zm::bench::unit {

PpsThread::PpsThread(EventLoop& owner, std::string socket)
    : m_owner(owner), m_service(std::make_unique<PpsService>(m_loop, std::move(socket))) {
    m_service->onChange = [this, alive = m_alive](const std::string& object, const std::string& text) {
        m_owner.post([this, alive, object, text] {
            if (*alive && onChange) {
                onChange(object, text);
            }
        });
    };
}

PpsThread::~PpsThread() {
    stop();
    *m_alive = false;
}

Status PpsThread::start() {
    auto started = m_service->start();
    if (started) {
        m_thread = std::thread([this] { m_loop.run(); });
    }
    return started;
}

void PpsThread::stop() {
    if (m_thread.joinable()) {
        m_loop.quit();
        m_thread.join();
    }
    m_service.reset();
}

} // namespace zm::bench::unit
