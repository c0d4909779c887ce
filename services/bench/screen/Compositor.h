#pragma once

#include "base/EventLoop.h"
#include "base/Image.h"
#include "base/Rect.h"
#include "base/Result.h"
#include "base/ScreenSize.h"

#include <nlohmann/json_fwd.hpp>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zm::bench::screen {

/**
 * The screen of the head unit: takes the windows of its clients on a socket (docs/protocols.md, screen.sock)
 * and composes them by order and alpha into one frame. Everything on the loop's thread.
 */
class Compositor {
public:
    Compositor(EventLoop& loop, std::string socket, ScreenSize size = {});
    ~Compositor();

    const ScreenSize& size() const;

    /** Starts to listen; fails if another process serves the socket. */
    Status start();

    /**
     * The frame will change inside `damage` (the smallest rectangle around all changes): called at most once
     * per turn of the loop, never from inside another call. Not called again until `compose` has run.
     */
    std::function<void(Rect damage)> onDamage;

    /** Brings the composed frame up to date, drawing what changed only. The reference stays valid and the
     * same. */
    const Image& compose();
    /** How often `compose` had something to draw. */
    uint64_t composedFrames() const;
    /** When the latest of them were composed. */
    const std::deque<std::chrono::steady_clock::time_point>& frameMoments() const;

    /** Whether the application's windows are on the screen; hidden,
     * the cover is shown (black without one). */
    void setAppVisible(bool visible);
    /** The picture over a hidden application: a launcher's page. Drawn from the top left corner. */
    void setCover(std::optional<Image> cover);

    /**
     * Posts a child window `name` that shows the decoder's pictures, from the one it shows now on (black
     * without): full screen, hidden, z-order 0 until the application places it. Returns its window number. A child that is already
     * posted stays as it is and keeps its number.
     */
    unsigned postChild(const std::string& name);
    /** Takes it away; false if there is none. */
    bool withdrawChild(const std::string& name);

    /**
     * While locked no child window is on the screen, whatever the application asks for. Unlocked, they lie
     * below all windows, in their order.
     */
    void lockVideo(bool locked);

    /**
     * {"posted","visible","rect":[x,y,w,h],"zorder","frames","locked"}: the posted child as the application
     * placed it, frames being the decoder's pictures that it took since it was posted; and the lock.
     */
    nlohmann::json videoState() const;
    /** A client with the role "app" is connected. */
    bool appConnected() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace zm::bench::screen
