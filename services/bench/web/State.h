#pragma once

#include "base/EventLoop.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using SoupWebsocketConnection = struct _SoupWebsocketConnection;

namespace zm::bench::web {

class WebSocketClient;

/**
 * What pages show beside the screen: the head unit's state, PPS objects, the log, what the application asked
 * for. A page gets everything once and then changes, collected for 50 ms. One that lags behind gets
 * everything anew when it has caught up instead of each step. On the loop's thread.
 */
class State {
public:
    struct Sources {
        /** {"running","children","devices","time","language","theme","motion","launcher","front","drive","fault",
         * "clock","volume","revision"}. */
        std::function<nlohmann::json()> state;
        /** All objects: name and PPS text. */
        std::function<std::vector<std::pair<std::string, std::string>>()> objects;
        /** The newest lines of the log as [{"severity","process","text"}]. */
        std::function<nlohmann::json()> logTail;
        /** Log lines since the last call. */
        std::function<nlohmann::json()> newLog;
    };

    State(EventLoop& loop, Sources sources);
    ~State();

    void add(SoupWebsocketConnection* connection);
    void ppsChanged(const std::string& object, const std::string& text);
    void requested(const nlohmann::json& request);

private:
    struct Page;
    void flush();
    void sendAll(Page& page);
    void push(const nlohmann::json& message);
    EventLoop& m_loop;
    Sources m_sources;
    std::list<std::unique_ptr<Page>> m_pages;
    std::vector<nlohmann::json> m_pending;
    nlohmann::json m_lastState;
    SourceHandle m_timer;
};

} // namespace zm::bench::web
