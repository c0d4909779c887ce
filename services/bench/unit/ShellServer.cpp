#include "services/bench/unit/ShellServer.h"

#include <nlohmann/json.hpp>

namespace zm::bench::unit {

ShellServer::ShellServer(EventLoop& loop, std::string socket)
    : m_loop(loop), m_socket(std::move(socket)),
      m_listener(loop, [this](UniqueFd peer) { accept(std::move(peer)); }) {}

ShellServer::~ShellServer() {
    *m_alive = false;
}

Status ShellServer::start() {
    return m_listener.listen(m_socket);
}

int ShellServer::pid() const {
    return m_application ? m_application->peerPid() : -1;
}

void ShellServer::accept(UniqueFd fd) {
    if (m_application) {
        return;
    }
    m_application = std::make_unique<Connection>(m_loop, std::move(fd));
    m_application->onMessage = [this](Message message) { received(message.text); };
    m_application->onClosed = [this] { gone(); };
}

void ShellServer::received(const std::string& text) {
    const Json message = parseMessage(text);
    if (!message.is_object() || !message.value("t", Json()).is_string()) {
        gone();
        return;
    }
    const std::string kind = message["t"];
    if (kind == "hello") {
        m_group = message.contains("group") && message["group"].is_string() ? message["group"] : Json("");
        Json start = welcome ? welcome() : Json::object();
        start["t"] = "welcome";
        m_welcomed = true;
        tell(start);
    } else if (kind == "running") {
        m_running = true;
        if (onRunning) {
            onRunning();
        }
    } else if (kind == "request") {
        if (onRequest) {
            onRequest(message);
        }
    } else if (kind == "reply") {
        answered(message);
    } else if (kind == "bye") {
        m_inOrder = true;
    }
}

void ShellServer::answered(const Json& message) {
    if (!message.contains("id") || !message["id"].is_number_integer()) {
        return;
    }
    const bool good = message.contains("ok") && message["ok"] == true;
    if (good) {
        settleQuestion(message["id"], message.contains("data") ? message["data"] : Json());
    } else {
        const auto text = message.contains("error") && message["error"].is_string()
                              ? message["error"].get<std::string>()
                              : std::string("the application refused");
        settleQuestion(message["id"], Error{text});
    }
}

void ShellServer::settleQuestion(int id, Result<Json> result) {
    auto found = m_questions.find(id);
    if (found == m_questions.end()) {
        return;
    }
    auto question = std::move(found->second);
    m_questions.erase(found);
    question.reply(std::move(result));
}

void ShellServer::gone() {
    if (!m_application) {
        return;
    }
    m_application.reset();
    m_running = false;
    m_welcomed = false;
    m_group.clear();
    const bool inOrder = std::exchange(m_inOrder, false);
    auto open = std::exchange(m_questions, {});
    for (auto& [id, question] : open) {
        question.reply(Error{"the application has ended"});
    }
    if (onGone) {
        onGone(inOrder);
    }
}

void ShellServer::tell(const Json& message) {
    if (m_welcomed) {
        ++m_sent;
        m_application->send(jsonText(message));
    }
}

void ShellServer::ask(Json message, Reply reply, std::chrono::milliseconds timeout) {
    if (!m_welcomed) {
        const char* why =
            m_application ? "the application has not started" : "the application is not running";
        m_loop.post([reply = std::move(reply), why] { reply(Error{why}); });
        return;
    }
    const int id = m_nextId++;
    message["id"] = id;
    Question question{std::move(reply), {}};
    question.deadline = afterDelay(m_loop, timeout, [this, id, alive = m_alive] {
        // Answered from a fresh turn: answering destroys this very timer.
        m_loop.post([this, id, alive] {
            if (*alive) {
                settleQuestion(id, Error{"the application does not answer"});
            }
        });
    });
    m_questions.emplace(id, std::move(question));
    tell(message);
}

void ShellServer::inform(Json message, Reply reply) {
    if (m_welcomed) {
        ask(std::move(message), std::move(reply));
    } else {
        m_loop.post([reply = std::move(reply)] { reply(Json()); });
    }
}

} // namespace zm::bench::unit
