#pragma once

#include "base/EventLoop.h"
#include "base/JsonMessage.h"
#include "base/Socket.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace zm::bench::unit {

/**
 * The head unit's end of shell.sock: the link to the application's framework. One application at a time;
 * another one that connects meanwhile is turned away. The welcome is the first that an application gets:
 * before it there is nobody to tell or to ask. Everything on the loop's thread.
 */
class ShellServer {
public:
    using Reply = std::function<void(Result<Json> data)>;

    ShellServer(EventLoop& loop, std::string socket);
    ~ShellServer();

    /** Starts to listen; fails if another process serves the socket. */
    Status start();

    /** Gives the start values for an application that says hello. */
    std::function<Json()> welcome;
    /** The application's event loop runs. */
    std::function<void()> onRunning;
    /** The application asks something of the launcher: its message, "t" included. */
    std::function<void(const Json& request)> onRequest;
    /** The application has gone; `inOrder` when it said so before. */
    std::function<void(bool inOrder)> onGone;

    bool connected() const { return m_application != nullptr; }
    bool running() const { return m_running; }
    /** Process id of the application; -1 without one. */
    int pid() const;
    /** Window group of the application; empty without one. */
    const std::string& group() const { return m_group; }

    uint64_t messagesSent() const { return m_sent; }
    /** Sends a message that is not answered; without an application it is dropped. */
    void tell(const Json& message);
    /** Sends a message and hands its answer's data (or why there is none) to `reply`,
     * never inside the call. */
    void ask(Json message, Reply reply, std::chrono::milliseconds timeout = std::chrono::seconds(10));

    /** As `ask` for a value that a later application gets with its welcome: without an application all is
     * well. */
    void inform(Json message, Reply reply);

private:
    struct Question {
        Reply reply;
        SourceHandle deadline;
    };
    void accept(UniqueFd fd);
    void received(const std::string& text);
    void answered(const Json& message);
    void gone();
    void settleQuestion(int id, Result<Json> result);

    EventLoop& m_loop;
    std::string m_socket;
    Listener m_listener;
    std::unique_ptr<Connection> m_application;
    std::map<int, Question> m_questions;
    std::string m_group;
    int m_nextId = 1;
    uint64_t m_sent = 0;
    bool m_running = false;
    bool m_welcomed = false;
    bool m_inOrder = false;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace zm::bench::unit
