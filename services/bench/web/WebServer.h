#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"
#include "base/UniqueFd.h"
#include "services/bench/web/WebGuard.h"
#include "services/bench/web/WebScreen.h"
#include "services/bench/web/WebState.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

using SoupServer = struct _SoupServer;
using GHashTable = struct _GHashTable;
using SoupServerMessage = struct _SoupServerMessage;

namespace zm {

/** What the page's server needs of the bench. */
struct WebBackend {
    /** How a command ended. */
    struct Answer {
        std::string out;
        std::string err;
        int exit = 0;
    };
    std::function<void(std::vector<std::string> argv, std::function<void(Answer)> done)> run;
    Compositor& compositor;
    WebState::Sources sources;
};

/**
 * The bench's page: files of a folder, `/api/command`, `/api/shot.png`, `/ws/screen` and `/ws/state` on one
 * loopback port. Only for callers that know the token and come from the page itself. Everything on the loop's
 * thread.
 */
class WebServer {
public:
    /** `tokenFile`: where the token is kept from one start to the next. */
    WebServer(EventLoop& loop, WebBackend backend, std::string pageFolder, const std::string& tokenFile);
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    /** Listens on 127.0.0.1:`port` (0: any free one); gives the URL with the token. */
    Result<std::string> start(int port);

    WebScreen& screen() { return m_screen; }
    WebState& state() { return m_state; }

private:
    void watch();
    void accept();
    void hand(UniqueFd fd);
    static void guard(SoupServer*, SoupServerMessage* message, const char* path, GHashTable* query,
                      void* self);
    static void serve(SoupServer*, SoupServerMessage* message, const char* path, GHashTable* query,
                      void* self);
    void command(SoupServerMessage* message);
    void shot(SoupServerMessage* message);
    void file(SoupServerMessage* message, const std::string& path);

    WebBackend m_backend;
    std::string m_pageFolder;
    WebGuard m_guard;
    std::string m_port; ///< on which it listens
    EventLoop& m_loop;
    WebScreen m_screen;
    WebState m_state;
    SoupServer* m_server;
    UniqueFd m_socket;
    SourceHandle m_watch;
    SourceHandle m_pause;
    /** Those whose connections are open; shared with them, as they may outlive the server. */
    std::shared_ptr<int> m_connections = std::make_shared<int>(0);
};

} // namespace zm
