#include "zmcar/TimerBase.h"

#include "platform/linux/framework/Application.h"

namespace Oro::ZMCAR {

struct TimerBase::Impl {
    zm::Application& application = zm::Application::instance();
};

TimerBase::TimerBase() : m_pImpl(std::make_unique<Impl>()) {}

TimerBase::~TimerBase() {
    m_pImpl->application.clock().cancelAll(m_pImpl.get());
}

bool TimerBase::SetTimer(unsigned int id, unsigned int milliseconds) {
    if (milliseconds == 0) {
        return false;
    }
    zm::Application& application = m_pImpl->application;
    zm::AppClock& clock = application.clock();
    clock.set({m_pImpl.get(), id},
              {clock.nowMs() + milliseconds, milliseconds, zm::AlarmKind::Handler,
               [&application, id] { application.deliver(zm::AppMessage::Timer, static_cast<int>(id), 0); }});
    return true;
}

bool TimerBase::KillTimer(unsigned int id) {
    return m_pImpl->application.clock().cancel({m_pImpl.get(), id});
}

} // namespace Oro::ZMCAR
