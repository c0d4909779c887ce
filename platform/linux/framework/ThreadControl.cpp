#include "zmcar/ThreadControl.h"

#include "platform/linux/framework/Application.h"
#include "platform/linux/framework/FrameworkLog.h"
#include "platform/linux/framework/Signals.h"
#include "platform/linux/framework/Worker.h"

namespace Oro::ZMCAR {

struct ThreadControl::Impl {
    // Shared with a `settle` that may still be looking at it.
    std::shared_ptr<zm::Worker> worker = std::make_shared<zm::Worker>();
};

ThreadControl::ThreadControl() : m_pImpl(std::make_unique<Impl>()) {}

ThreadControl::~ThreadControl() {
    Close();
}

bool ThreadControl::Init() {
    const auto started = m_pImpl->worker->start(
        {[this] { InitMaskThread(); }, [this] { DealWithTask(); }, [this] { PrepareToExit(); }});
    if (!started) {
        zm::reportFailure(started.error());
        return false;
    }
    zm::Application::instance().settler().add(m_pImpl->worker);
    return true;
}

void ThreadControl::DoIt() {
    m_pImpl->worker->request();
}

void ThreadControl::Close() {
    m_pImpl->worker->stop();
}

void ThreadControl::InitMaskThread() {
    if (auto blocked = zm::blockEndSignals(); !blocked) {
        zm::reportFailure(blocked.error());
    }
}

void ThreadControl::PrepareToExit() {}

} // namespace Oro::ZMCAR
