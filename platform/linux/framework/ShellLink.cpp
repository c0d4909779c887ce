#include "platform/linux/framework/ShellLink.h"

#include "base/JsonMessage.h"
#include "base/Threads.h"

#include <nlohmann/json.hpp>

#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>

namespace zm {

using json = nlohmann::json;
using SteadyClock = std::chrono::steady_clock;

namespace {

// A head unit that takes nothing for so long counts as gone.
constexpr timeval SendLimit{2, 0};

std::chrono::milliseconds left(SteadyClock::time_point deadline) {
    return std::max(std::chrono::milliseconds(0),
                    std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now()));
}

Result<json> parse(const std::string& text) {
    json message = parseJson(text);
    if (!message.is_object() || !message["t"].is_string()) {
        return Error{"the head unit sent something that is no message"};
    }
    return message;
}

} // namespace

Result<std::unique_ptr<ShellLink>> ShellLink::connect(const std::string& socket, const json& hello,
                                                      std::chrono::milliseconds limit) {
    const auto deadline = SteadyClock::now() + limit;
    // Half the time for a head unit that is just starting, the rest for its answer.
    auto fd = connectUnix(socket, limit / 2);
    if (!fd) {
        return Error{"no head unit: " + fd.error()};
    }
    if (::setsockopt(fd->get(), SOL_SOCKET, SO_SNDTIMEO, &SendLimit, sizeof SendLimit) != 0) {
        return systemError(socket);
    }
    std::unique_ptr<ShellLink> link(new ShellLink(std::move(*fd)));
    if (!link->send(hello)) {
        return Error{socket + ": the head unit takes no messages"};
    }
    auto answer = link->m_connection.receive(left(deadline));
    if (!answer) {
        return Error{"the head unit does not answer: " + answer.error()};
    }
    auto welcome = parse(answer->text);
    if (!welcome) {
        return welcome.failure();
    }
    if ((*welcome)["t"] != "welcome") {
        return Error{"the head unit answered " + answer->text + " instead of a welcome"};
    }
    link->m_welcome = std::make_unique<json>(std::move(*welcome));
    return link;
}

ShellLink::ShellLink(UniqueFd fd) : m_connection(std::move(fd)) {}

ShellLink::~ShellLink() {
    close();
}

Status ShellLink::start(std::function<void(const json&)> onMessage,
                        std::function<void(const std::string&)> onClosed) {
    m_onMessage = std::move(onMessage);
    m_onClosed = std::move(onClosed);
    auto thread = startThread("head unit thread", [this] { receiveAll(); });
    if (!thread) {
        return thread.failure();
    }
    m_thread = std::move(*thread);
    return ok();
}

bool ShellLink::send(const json& message) {
    const std::string text = jsonText(message);
    MutexLock lock(m_sending);
    return static_cast<bool>(m_connection.send(text));
}

void ShellLink::close() {
    m_closing = true;
    m_connection.shutdown();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void ShellLink::receiveAll() {
    std::string reason;
    for (;;) {
        auto packet = m_connection.receive();
        if (!packet) {
            reason = packet.error();
            break;
        }
        auto message = parse(packet->text);
        if (!message) {
            reason = message.error();
            break;
        }
        m_onMessage(*message);
    }
    if (!m_closing) {
        m_onClosed(reason);
    }
}

} // namespace zm
