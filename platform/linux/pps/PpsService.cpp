#include "platform/linux/pps/PpsService.h"

#include "base/Socket.h"
#include "platform/linux/pps/PpsProtocol.h"
#include "platform/linux/pps/PpsStore.h"

#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <map>

namespace zm {

namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string result;
    for (const auto& name : names) {
        result.append(name).append("\n");
    }
    return result;
}

// One client connection: at most one descriptor.
class Session {
public:
    Session(EventLoop& loop, UniqueFd fd, PpsStore& store, std::function<void()> onClosed)
        : m_store(store), m_connection(loop, std::move(fd)) {
        m_connection.onMessage = [this](Message message) { answer(message); };
        m_connection.onClosed = std::move(onClosed);
    }

private:
    void answer(Message& message) {
        const std::string_view text = message.text;
        auto result = text.empty()
                          ? Result<std::string>(Error{"empty request"})
                          : execute(static_cast<PpsRequest>(text.front()), text.substr(1), message.fds);
        const auto kind = static_cast<char>(result ? PpsAnswer::Done : PpsAnswer::Failed);
        m_connection.send(std::string(1, kind) + (result ? *result : result.error()));
    }

    static Result<std::string> withoutText(const Status& status) {
        return status ? Result<std::string>(std::string()) : Error{status.error()};
    }

    static Result<std::string> encoded(const Result<PpsChanges>& changes) {
        return changes ? Result<std::string>(changes->encoded()) : Error{changes.error()};
    }

    Result<std::string> execute(PpsRequest request, std::string_view text, std::vector<UniqueFd>& fds) {
        switch (request) {
        case PpsRequest::Open:
            return open(text, fds);
        case PpsRequest::List:
            return joined(m_store.names());
        case PpsRequest::Unlink:
            return withoutText(m_store.unlink(std::string(text)));
        default:
            break;
        }
        if (!m_reader) {
            return Error{"no object is open (EBADF)"};
        }
        switch (request) {
        case PpsRequest::Read:
            return encoded(m_reader->read());
        case PpsRequest::Write:
            return withoutText(m_reader->write(text));
        case PpsRequest::Truncate:
            return withoutText(m_reader->truncate());
        default:
            return Error{"unknown request"};
        }
    }

    Result<std::string> open(std::string_view text, std::vector<UniqueFd>& fds) {
        int flags = 0;
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), flags);
        if (m_reader || fds.size() != 1 || parsed.ec != std::errc() || *parsed.ptr != ' ') {
            return Error{"bad open request"};
        }
        auto reader = m_store.open(std::string(parsed.ptr + 1, text.data() + text.size()), flags);
        if (!reader) {
            return reader.failure();
        }
        m_notices = std::move(fds.front());
        m_reader = std::move(*reader);
        // Whatever stands behind the descriptor, the service does not wait for it.
        m_reader->onReadable = [this] {
            TEMP_FAILURE_RETRY(::send(m_notices.get(), "n", 1, MSG_DONTWAIT | MSG_NOSIGNAL));
        };
        m_reader->announce();
        return std::string();
    }

    PpsStore& m_store;
    UniqueFd m_notices;
    std::unique_ptr<PpsReader> m_reader;
    Connection m_connection;
};

} // namespace

struct PpsService::Impl {
    EventLoop& loop;
    std::string socket;
    PpsStore store;
    std::map<int, std::unique_ptr<Session>> sessions;
    int nextSession = 0;
    Listener listener{loop, [this](UniqueFd fd) { accept(std::move(fd)); }};

    void accept(UniqueFd fd) {
        const int number = nextSession++;
        sessions[number] =
            std::make_unique<Session>(loop, std::move(fd), store, [this, number] { sessions.erase(number); });
    }
};

PpsService::PpsService(EventLoop& loop, std::string socket)
    : m_impl(new Impl{loop, std::move(socket), {}, {}}) {
    m_impl->store.onChange = [this](const std::string& object, const std::string& text) {
        if (onChange) {
            onChange(object, text);
        }
    };
}

PpsService::~PpsService() = default;

Status PpsService::start() {
    return m_impl->listener.listen(m_impl->socket);
}

} // namespace zm
