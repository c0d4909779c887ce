#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"

#include <functional>
#include <memory>
#include <string>

namespace zm::bench::screen {

class Compositor;

/**
 * The platform's video service: asked through "/pps/zelmar/videoservice/command", it posts a child window
 * into the asking application's window group, lets it show the decoder's pictures, and publishes what it did
 * in "/pps/zelmar/videoservice/status". Everything on the loop's thread.
 */
class VideoService {
public:
    /** `ppsSocket` is the socket of a PPS service of another thread or process. */
    VideoService(EventLoop& loop, Compositor& compositor, std::string ppsSocket);
    ~VideoService();

    /** Opens the objects and starts to watch them. May be called as soon as the PPS
     * service has been started. */
    Status start();

    /** A child window was posted into `group` under this window number: tell the application. */
    std::function<void(const std::string& group, const std::string& child, unsigned window)> onChildPosted;
    /** It was withdrawn. */
    std::function<void(const std::string& group, const std::string& child)> onChildWithdrawn;

    /** The application has gone: its child window is withdrawn and "off" published. */
    void applicationGone();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace zm::bench::screen
