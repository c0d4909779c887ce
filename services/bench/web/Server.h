#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"
#include "base/UniqueFd.h"
#include "services/bench/web/Guard.h"
#include "services/bench/web/Screen.h"
#include "services/bench/web/State.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

using SoupServer = struct _SoupServer;
using GHashTable = struct _GHashTable;
using SoupServerMessage = struct _SoupServerMessage;

namespace zm::bench::web {

/** What the page's server needs of the bench. */
struct Backend {
    /** How a command ended. */
    struct Answer {
        std::string out;
        std::string err;
        int exit = 0;
    };
    std::function<void(std::vector<std::string> argv, std::function<void(Answer)> done)> run;
    screen::Compositor& compositor;
    State::Sources sources;
    std::string filmFile; ///< where a page's film lies once there is one
};

/**
 * The bench's page: files of a folder, `/api/command`, `/api/shot.png`, `/api/film.webm`,
 * `/ws/screen` and `/ws/state` on one
 * loopback port. Only for callers that know the token and come from the page itself. Everything on the loop's
 * thread.
 */
class Server {
public:
    /** `tokenFile`: where the token is kept from one start to the next. */
    Server(EventLoop& loop, Backend backend, std::string pageFolder, const std::string& tokenFile);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /** Listens on 127.0.0.1:`port` (0: any free one); gives the URL with the token. */
    Result<std::string> start(int port);

    Screen& screen() { return m_screen; }
    State& state() { return m_state; }

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
    void film(SoupServerMessage* message);
    void file(SoupServerMessage* message, const std::string& path);

    Backend m_backend;
    std::string m_pageFolder;
    Guard m_guard;
    std::string m_port; ///< on which it listens
    EventLoop& m_loop;
    Screen m_screen;
    State m_state;
    SoupServer* m_server;
    UniqueFd m_socket;
    SourceHandle m_watch;
    SourceHandle m_pause;
    /** Those whose connections are open; shared with them, as they may outlive the server. */
    std::shared_ptr<int> m_connections = std::make_shared<int>(0);
};

} // namespace zm::bench::web
