#pragma once

#include "base/Rect.h"
#include "base/Result.h"
#include "base/Socket.h"
#include "platform/linux/screen/ScreenWindow.h"

#include <nlohmann/json_fwd.hpp>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zm {

/** How a window stands on the screen; absent members stay as they are. Lengths in screen pixels. */
struct WindowProps {
    std::optional<bool> visible;
    std::optional<int> order; ///< higher is in front
    std::optional<int> x, y, width, height;
    std::optional<bool> alpha; ///< blends with what lies under it

    bool empty() const { return !(visible || order || x || y || width || height || alpha); }
};

/**
 * The client side of screen.sock: makes windows and shows frames in them. Everything belongs to one thread at
 * a time. Nothing blocks longer than two seconds, and only `connect` and `sync` wait for the compositor at
 * all. After the first failure the connection stays broken: later calls return the reason and do nothing.
 */
class ScreenClient : private ScreenLink {
public:
    /** Connects as `role` ("app" or "video"), trying again until `timeout` has passed. */
    static Result<std::unique_ptr<ScreenClient>> connect(const std::string& socket, const std::string& role,
                                                         std::chrono::milliseconds timeout);

    /** Makes a window; the client owns it. Fails if the memory cannot be had or the compositor is gone. */
    Result<ScreenWindow*> makeWindow(const SurfaceSpec& spec);
    /** Takes a window away; the pointer is invalid afterwards. */
    void closeWindow(ScreenWindow* window);

    /** Changes an own window, by its number. */
    Status setProps(int window, const WindowProps& props);
    /** Changes a child window that somebody else posted under `name`. */
    Status setProps(const std::string& name, const WindowProps& props);

    /** Takes in what the compositor sent (buffers given back), without waiting. */
    Status receive() override;
    /** Waits until everything sent so far is in effect on the screen. Running out of time breaks nothing. */
    Status sync(std::chrono::milliseconds timeout);

    /** Becomes readable when `receive` has something to do. */
    int fd() const { return m_connection.fd(); }
    bool broken() const { return !m_failure.empty(); }

private:
    explicit ScreenClient(UniqueFd fd) : m_connection(std::move(fd)) {}
    Status send(const nlohmann::json& message, const std::vector<int>& fds = {}) override;
    Status sendProps(nlohmann::json message, const WindowProps& props);
    Status receiveOne();
    void handle(const nlohmann::json& message);
    Error fail(const std::string& why);

    SyncConnection m_connection;
    std::vector<std::unique_ptr<ScreenWindow>> m_windows;
    std::string m_failure;
    int m_nextWindow = 1;
    int64_t m_syncSent = 0;
    int64_t m_syncDone = 0;
};

} // namespace zm
