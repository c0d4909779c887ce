#pragma once

#include "base/Mutex.h"
#include "base/Socket.h"

#include <nlohmann/json_fwd.hpp>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace zm {

/** The connection to the head unit: sends from any thread, receives on a thread of its own. */
class ShellLink {
public:
    /** Connects, introduces the application with `hello` and takes the welcome; all within `limit`. */
    static Result<std::unique_ptr<ShellLink>> connect(const std::string& socket, const nlohmann::json& hello,
                                                      std::chrono::milliseconds limit);
    ~ShellLink();

    /** The head unit's start values. */
    const nlohmann::json& welcome() const { return *m_welcome; }

    /**
     * Starts receiving. `onMessage` gets every message and `onClosed` is told why the head unit went away;
     * both on the receiving thread. `onClosed` is not called after `close`.
     */
    Status start(std::function<void(const nlohmann::json&)> onMessage,
                 std::function<void(const std::string&)> onClosed);
    /** False if the message could not be sent. */
    bool send(const nlohmann::json& message);
    /** Ends the connection and the thread, and waits for it. Not on the receiving thread. */
    void close();

private:
    explicit ShellLink(UniqueFd fd);
    void receiveAll();

    SyncConnection m_connection;
    std::unique_ptr<nlohmann::json> m_welcome;
    Mutex m_sending;
    std::atomic<bool> m_closing = false;
    std::function<void(const nlohmann::json&)> m_onMessage;
    std::function<void(const std::string&)> m_onClosed;
    std::thread m_thread;
};

} // namespace zm
