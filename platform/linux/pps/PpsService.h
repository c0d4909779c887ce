#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"

#include <functional>
#include <memory>
#include <string>

namespace zm {

/**
 * The publish/subscribe service: all objects of one runtime folder, served on a socket by an event loop. Give
 * it a loop on a thread of its own: PpsFile waits for its answers, so it must never be used on the service's
 * own thread.
 */
class PpsService {
public:
    PpsService(EventLoop& loop, std::string socket);
    ~PpsService();

    /** Starts to serve; fails if another service owns the socket. Loop's thread or before `run`. */
    Status start();

    /** Called on the loop's thread after each change: object name without "/pps/", and the change as PPS
     * text. */
    std::function<void(const std::string& object, const std::string& text)> onChange;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace zm
