#pragma once

#include "base/EventLoop.h"
#include "base/Socket.h"
#include "services/bench/commands/Processor.h"

#include <list>
#include <memory>
#include <string>

namespace zm::bench::commands {

/** Takes commands on ctl.sock (docs/protocols.md); one at a time on each connection. Loop's thread only. */
class CtlServer {
public:
    CtlServer(EventLoop& loop, std::string socket, Processor& processor);
    ~CtlServer();

    /** Starts to listen; fails if another process serves the socket. */
    Status start();

private:
    struct Client;
    void accept(UniqueFd fd);
    void received(Client& client, const std::string& text);
    void drop(Client& client);

    EventLoop& m_loop;
    std::string m_socket;
    Processor& m_processor;
    Listener m_listener;
    std::list<std::unique_ptr<Client>> m_clients;
};

} // namespace zm::bench::commands
