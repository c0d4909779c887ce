#pragma once

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

using SoupWebsocketConnection = struct _SoupWebsocketConnection;

namespace zm::bench::web {

/** One page's end of a WebSocket. On the loop's thread. Messages that are not a JSON object of 64 KiB at most
 * end it. */
class WebSocketClient {
public:
    explicit WebSocketClient(SoupWebsocketConnection* connection);
    ~WebSocketClient();
    WebSocketClient(const WebSocketClient&) = delete;
    WebSocketClient& operator=(const WebSocketClient&) = delete;

    /** Must not destroy the client. */
    std::function<void(const nlohmann::json&)> onMessage;
    /** The last call; may destroy the client. */
    std::function<void()> onClosed;

    void sendText(const std::string& text);
    void sendBinary(std::string_view bytes);
    void close(const char* reason);

private:
    static void messageTrampoline(SoupWebsocketConnection*, int type, void* bytes, void* self);
    static void closedTrampoline(SoupWebsocketConnection*, void* self);
    SoupWebsocketConnection* m_connection;
    unsigned long m_messageHandler;
    unsigned long m_closedHandler;
};

} // namespace zm::bench::web
