#pragma once

#include "base/EventLoop.h"
#include "platform/linux/pps/PpsService.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace zm::bench::unit {

/**
 * The PPS service on a thread of its own, so that everything else in the head unit may use PPS objects with
 * plain blocking calls.
 */
class PpsThread {
public:
    PpsThread(EventLoop& owner, std::string socket);
    ~PpsThread();

    Status start();
    /** Ends the service: who waits for it gets an error. */
    void stop();

    /** Called on the owner's loop after each change, in order: object name without "/pps/" and PPS text. */
    std::function<void(const std::string& object, const std::string& text)> onChange;

private:
    EventLoop& m_owner;
    EventLoop m_loop;
    std::unique_ptr<PpsService> m_service;
    std::thread m_thread;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace zm::bench::unit
