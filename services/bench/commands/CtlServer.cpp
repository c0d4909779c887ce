#include "services/bench/commands/CtlServer.h"
#include "services/bench/commands/Request.h"

#include <nlohmann/json.hpp>

namespace zm::bench::commands {

struct CtlServer::Client {
    Client(EventLoop& loop, UniqueFd fd) : connection(loop, std::move(fd)) {}
    ~Client() {
        if (run) {
            run->cancel();
        }
    }
    Connection connection;
    std::shared_ptr<Run> run;
};

CtlServer::CtlServer(EventLoop& loop, std::string socket, Processor& processor)
    : m_loop(loop), m_socket(std::move(socket)), m_processor(processor),
      m_listener(loop, [this](UniqueFd peer) { accept(std::move(peer)); }) {}

CtlServer::~CtlServer() = default;

Status CtlServer::start() {
    return m_listener.listen(m_socket);
}

void CtlServer::accept(UniqueFd fd) {
    Client& client = *m_clients.emplace_back(std::make_unique<Client>(m_loop, std::move(fd)));
    client.connection.onMessage = [this, &client](Message message) { received(client, message.text); };
    client.connection.onClosed = [this, &client] { drop(client); };
}

void CtlServer::drop(Client& client) {
    m_clients.remove_if([&](const auto& other) { return other.get() == &client; });
}

void CtlServer::received(Client& client, const std::string& text) {
    if (client.run && !client.run->finished()) {
        drop(client);
        return;
    }
    const auto send = [&client](const char* member, const Json& value) {
        client.connection.send(jsonText({{member, value}}));
    };
    auto request = parseRequest(text);
    if (!request) {
        send("err", "zmctl: " + request.error() + "\n");
        send("exit", static_cast<int>(Exit::WrongUsage));
        return;
    }
    client.run = std::make_shared<Run>(std::move(request->words), std::move(request->cwd),
                                       Run::Sink{[send](const std::string& out) { send("out", out); },
                                                 [send](const std::string& err) { send("err", err); },
                                                 [send](int status) { send("exit", status); }});
    m_processor.execute(client.run);
}

} // namespace zm::bench::commands
