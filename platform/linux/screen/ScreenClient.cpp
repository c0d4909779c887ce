#include "platform/linux/screen/ScreenClient.h"

#include "base/JsonMessage.h"

#include <nlohmann/json.hpp>

#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>

namespace zm {

using json = nlohmann::json;
using Clock = std::chrono::steady_clock;

namespace {

// A compositor that takes nothing for so long counts as gone.
constexpr timeval SendLimit{2, 0};
// A message that has begun to arrive is complete within this time.
constexpr std::chrono::milliseconds ReceiveLimit(2000);
constexpr int MaxPixels = 8192;

bool readable(int fd, std::chrono::milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        pollfd ready{fd, POLLIN, 0};
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        const int count = ::poll(&ready, 1, static_cast<int>(std::max<int64_t>(0, left.count())));
        if (count >= 0 || errno != EINTR) {
            return count > 0;
        }
    }
}

} // namespace

Result<std::unique_ptr<ScreenClient>>
ScreenClient::connect(const std::string& socket, const std::string& role, std::chrono::milliseconds timeout) {
    auto fd = connectUnix(socket, timeout);
    if (!fd) {
        return fd.failure();
    }
    if (::setsockopt(fd->get(), SOL_SOCKET, SO_SNDTIMEO, &SendLimit, sizeof SendLimit) != 0) {
        return systemError(socket);
    }
    std::unique_ptr<ScreenClient> client(new ScreenClient(std::move(*fd)));
    if (auto sent = client->send({{"t", "hello"}, {"role", role}, {"pid", ::getpid()}}); !sent) {
        return sent.failure();
    }
    return client;
}

Result<ScreenWindow*> ScreenClient::makeWindow(const SurfaceSpec& spec) {
    if (spec.width <= 0 || spec.height <= 0 || spec.width > MaxPixels || spec.height > MaxPixels) {
        return Error{"window " + spec.name + ": " + std::to_string(spec.width) + " x " +
                     std::to_string(spec.height) + " is no size"};
    }
    auto window = std::make_unique<ScreenWindow>(static_cast<ScreenLink&>(*this), m_nextWindow, spec);
    auto memory = window->allocate();
    if (!memory) {
        return memory.failure();
    }
    const json message = {{"t", "window"},       {"window", m_nextWindow}, {"name", spec.name},
                          {"width", spec.width}, {"height", spec.height},  {"stride", window->stride()},
                          {"order", spec.order}, {"alpha", spec.alpha},    {"visible", spec.visible}};
    if (auto sent = send(message, {memory->get()}); !sent) {
        return sent.failure();
    }
    ++m_nextWindow;
    m_windows.push_back(std::move(window));
    return m_windows.back().get();
}

void ScreenClient::closeWindow(ScreenWindow* window) {
    // A connection that breaks here says so at the next call.
    static_cast<void>(send({{"t", "close"}, {"window", window->number()}}));
    std::erase_if(m_windows, [&](const auto& other) { return other.get() == window; });
}

Status ScreenClient::setProps(int window, const WindowProps& props) {
    return sendProps({{"t", "props"}, {"window", window}}, props);
}

Status ScreenClient::setProps(const std::string& name, const WindowProps& props) {
    return sendProps({{"t", "props"}, {"name", name}}, props);
}

Status ScreenClient::sendProps(json message, const WindowProps& props) {
    auto add = [&](const char* member, const auto& value) {
        if (value) {
            message[member] = *value;
        }
    };
    add("visible", props.visible);
    add("order", props.order);
    add("x", props.x);
    add("y", props.y);
    add("width", props.width);
    add("height", props.height);
    add("alpha", props.alpha);
    return send(message);
}

Status ScreenClient::receive() {
    if (broken()) {
        return Error{m_failure};
    }
    while (readable(fd(), std::chrono::milliseconds(0))) {
        if (auto received = receiveOne(); !received) {
            return received;
        }
    }
    return ok();
}

Status ScreenClient::sync(std::chrono::milliseconds timeout) {
    const int64_t id = ++m_syncSent;
    const auto deadline = Clock::now() + timeout;
    if (auto sent = send({{"t", "sync"}, {"id", id}}); !sent) {
        return sent;
    }
    while (m_syncDone < id) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0 || !readable(fd(), left)) {
            return Error{"screen: no answer in time"};
        }
        if (auto received = receiveOne(); !received) {
            return received;
        }
    }
    return ok();
}

Status ScreenClient::send(const json& message, const std::vector<int>& fds) {
    if (broken()) {
        return Error{m_failure};
    }
    if (auto sent = m_connection.send(jsonText(message), fds); !sent) {
        return fail(sent.error());
    }
    return ok();
}

Status ScreenClient::receiveOne() {
    auto message = m_connection.receive(ReceiveLimit);
    if (!message) {
        return fail(message.error());
    }
    const json object = parseJson(message->text);
    if (!object.is_object()) {
        return fail("the compositor sent something that is no message");
    }
    handle(object);
    return broken() ? Status(Error{m_failure}) : ok();
}

void ScreenClient::handle(const json& message) {
    const auto number = [&](const char* member) {
        const auto found = message.find(member);
        return found != message.end() && found->is_number_integer() ? found->get<int64_t>() : -1;
    };
    const auto kind = message.find("t");
    if (kind == message.end()) {
        return;
    }
    if (*kind == "release") {
        for (const auto& window : m_windows) {
            if (window->number() == number("window")) {
                window->released(static_cast<int>(number("buffer")), number("seq"));
            }
        }
    } else if (*kind == "synced") {
        m_syncDone = std::max(m_syncDone, number("id"));
    } else if (*kind == "error") {
        fail(message.contains("text") ? message["text"].dump() : "error without a text");
    }
}

Error ScreenClient::fail(const std::string& why) {
    if (m_failure.empty()) {
        m_failure = "screen: " + why;
    }
    return Error{m_failure};
}

} // namespace zm
