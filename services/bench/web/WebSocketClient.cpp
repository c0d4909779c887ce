#include "services/bench/web/WebSocketClient.h"

#include "base/JsonMessage.h"

#include <nlohmann/json.hpp>

#include <libsoup/soup.h>

namespace zm::bench::web {

namespace {

constexpr guint64 MaxMessageBytes = 64 * 1024;

} // namespace

WebSocketClient::WebSocketClient(SoupWebsocketConnection* connection)
    : m_connection(SOUP_WEBSOCKET_CONNECTION(g_object_ref(connection))) {
    soup_websocket_connection_set_max_incoming_payload_size(m_connection, MaxMessageBytes);
    m_messageHandler = g_signal_connect(m_connection, "message", G_CALLBACK(messageTrampoline), this);
    m_closedHandler = g_signal_connect(m_connection, "closed", G_CALLBACK(closedTrampoline), this);
}

WebSocketClient::~WebSocketClient() {
    g_signal_handler_disconnect(m_connection, m_messageHandler);
    g_signal_handler_disconnect(m_connection, m_closedHandler);
    if (soup_websocket_connection_get_state(m_connection) == SOUP_WEBSOCKET_STATE_OPEN) {
        soup_websocket_connection_close(m_connection, SOUP_WEBSOCKET_CLOSE_GOING_AWAY, nullptr);
    }
    g_object_unref(m_connection);
}

void WebSocketClient::sendText(const std::string& text) {
    if (soup_websocket_connection_get_state(m_connection) == SOUP_WEBSOCKET_STATE_OPEN) {
        soup_websocket_connection_send_text(m_connection, text.c_str());
    }
}

void WebSocketClient::sendBinary(std::string_view bytes) {
    if (soup_websocket_connection_get_state(m_connection) == SOUP_WEBSOCKET_STATE_OPEN) {
        soup_websocket_connection_send_binary(m_connection, bytes.data(), bytes.size());
    }
}

void WebSocketClient::close(const char* reason) {
    if (soup_websocket_connection_get_state(m_connection) == SOUP_WEBSOCKET_STATE_OPEN) {
        soup_websocket_connection_close(m_connection, SOUP_WEBSOCKET_CLOSE_POLICY_VIOLATION, reason);
    }
}

void WebSocketClient::messageTrampoline(SoupWebsocketConnection*, int, void* bytes, void* self) {
    auto* client = static_cast<WebSocketClient*>(self);
    gsize size = 0;
    const auto* text = static_cast<const char*>(g_bytes_get_data(static_cast<GBytes*>(bytes), &size));
    const auto message = parseMessage({text, size});
    if (!message.is_object()) {
        client->close("not a JSON object");
        return;
    }
    if (client->onMessage) {
        client->onMessage(message);
    }
}

void WebSocketClient::closedTrampoline(SoupWebsocketConnection*, void* self) {
    if (auto callback = static_cast<WebSocketClient*>(self)->onClosed) {
        callback();
    }
}

} // namespace zm::bench::web
