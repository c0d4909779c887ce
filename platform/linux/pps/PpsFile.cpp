#include "platform/linux/pps/PpsFile.h"

#include "base/Mutex.h"
#include "base/Socket.h"
#include "platform/linux/pps/PpsPath.h"
#include "platform/linux/pps/PpsProtocol.h"

#include <poll.h>
#include <sys/socket.h>

#include <optional>
#include <thread>
#include <utility>

namespace zm {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A service that does not answer this long counts as gone.
constexpr milliseconds AnswerTime(5000);
constexpr milliseconds ReconnectPause(100);
// How long a write tries to find a service that has gone away, before it fails.
constexpr milliseconds WritePatience(250);

// What an exchange came to: an answer, or a broken connection.
struct Exchanged {
    bool connected;
    Result<std::string> answer;
};

Exchanged exchange(SyncConnection& connection, PpsRequest request, std::string_view text,
                   const std::vector<int>& fds = {}) {
    const Status sent = connection.send(std::string(1, static_cast<char>(request)).append(text), fds);
    if (!sent) {
        return {false, Error{sent.error()}};
    }
    auto received = connection.receive(AnswerTime);
    if (!received) {
        return {false, Error{received.error()}};
    }
    const std::string& answer = received->text;
    if (answer.empty() || answer.front() != static_cast<char>(PpsAnswer::Done)) {
        return {true, Error{answer.empty() ? "empty answer" : answer.substr(1)}};
    }
    return {true, answer.substr(1)};
}

// A request of its own, without a descriptor.
Result<std::string> ask(const std::string& socket, PpsRequest request, std::string_view text) {
    auto fd = connectUnix(socket);
    if (!fd) {
        return fd.failure();
    }
    SyncConnection connection(std::move(*fd));
    return exchange(connection, request, text).answer;
}

} // namespace

struct PpsFile::Impl {
    std::string socket;
    std::string path;
    int flags = 0;
    bool wait = false;

    Mutex mutex; ///< one request at a time: `write` may run beside `read`
    std::optional<SyncConnection> connection ZM_GUARDED_BY(mutex);
    UniqueFd notices ZM_GUARDED_BY(mutex);
    Clock::time_point nextAttempt ZM_GUARDED_BY(mutex){};
    bool reconnected ZM_GUARDED_BY(mutex) = false;

    Error disconnected() const { return Error{path + ": the PPS service is not reachable"}; }

    Status connect(int openFlags) ZM_REQUIRES(mutex) {
        nextAttempt = Clock::now() + ReconnectPause;
        auto fd = connectUnix(socket);
        if (!fd) {
            return fd.failure();
        }
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
            return systemError("socketpair");
        }
        UniqueFd own(ends[0]);
        UniqueFd theirs(ends[1]);
        SyncConnection fresh(std::move(*fd));
        auto opened =
            exchange(fresh, PpsRequest::Open, std::to_string(openFlags) + " " + path, {theirs.get()});
        if (!opened.answer) {
            return opened.answer.failure();
        }
        connection.emplace(std::move(fresh));
        notices = std::move(own);
        return ok();
    }

    // The connection, made anew if the service has gone and the last attempt was long enough ago. A
    // reconnected object is not truncated again: that belongs to the moment of opening.
    bool connected() ZM_REQUIRES(mutex) {
        if (!connection && Clock::now() >= nextAttempt && connect(flags & ~PpsTruncate)) {
            reconnected = true;
        }
        return connection.has_value();
    }

    void drop() ZM_REQUIRES(mutex) {
        // Wakes a thread that still polls the descriptor.
        ::shutdown(notices.get(), SHUT_RDWR);
        connection.reset();
        notices.reset();
    }

    // Takes the notices that have come; finds out whether the service has closed.
    void drainNotices() ZM_REQUIRES(mutex) {
        char bytes[16];
        ssize_t size;
        do {
            size = ::recv(notices.get(), bytes, sizeof bytes, MSG_DONTWAIT);
        } while (size > 0 || (size < 0 && errno == EINTR));
        if (size == 0) {
            drop();
        }
    }

    Result<PpsChanges> readOnce() {
        MutexLock lock(mutex);
        if (connection) {
            drainNotices();
        }
        if (!connected()) {
            return disconnected();
        }
        auto result = exchange(*connection, PpsRequest::Read, "");
        if (!result.connected) {
            drop();
            return disconnected();
        }
        return result.answer ? PpsChanges::decode(*result.answer)
                             : Result<PpsChanges>(Error{result.answer.error()});
    }

    // Repeats a change that met a service which had gone: what that one had done is gone with it.
    Status change(PpsRequest request, std::string_view text) {
        MutexLock lock(mutex);
        const auto deadline = Clock::now() + WritePatience;
        for (;;) {
            if (connected()) {
                auto result = exchange(*connection, request, text);
                if (result.connected) {
                    return result.answer ? ok() : Status(Error{result.answer.error()});
                }
                drop();
                continue;
            }
            if (nextAttempt > deadline) {
                return disconnected();
            }
            std::this_thread::sleep_until(nextAttempt);
        }
    }
};

PpsFile::PpsFile(std::unique_ptr<Impl> impl) : m_impl(std::move(impl)) {}
PpsFile::PpsFile(PpsFile&&) noexcept = default;
PpsFile& PpsFile::operator=(PpsFile&&) noexcept = default;
PpsFile::~PpsFile() = default;

Result<PpsFile> PpsFile::open(const std::string& socket, const std::string& path, int flags,
                              unsigned /*mode*/) {
    auto parsed = parsePpsPath(path);
    if (!parsed) {
        return parsed.failure();
    }
    auto impl = std::make_unique<Impl>();
    impl->socket = socket;
    impl->path = path;
    impl->flags = flags;
    impl->wait = parsed->wait && (flags & PpsAccessMask) != PpsWriteOnly;
    {
        MutexLock lock(impl->mutex);
        if (auto connected = impl->connect(flags); !connected) {
            return connected.failure();
        }
    }
    return PpsFile(std::move(impl));
}

Result<std::string> PpsFile::read() {
    for (;;) {
        if (m_impl->wait) {
            pollfd ready{pollFd(), POLLIN, 0};
            // Without a connection the descriptor is -1 and the call only pauses until the next attempt.
            ::poll(&ready, 1, static_cast<int>(ReconnectPause.count()));
            if (ready.revents == 0) {
                continue;
            }
        }
        auto result = m_impl->readOnce();
        if (!m_impl->wait || (result && !result->changes.empty())) {
            return result ? Result<std::string>(result->text()) : Error{result.error()};
        }
    }
}

Result<PpsChanges> PpsFile::readChanges() {
    return m_impl->readOnce();
}

Status PpsFile::write(std::string_view text) {
    return m_impl->change(PpsRequest::Write, text);
}

Status PpsFile::truncate() {
    return m_impl->change(PpsRequest::Truncate, "");
}

int PpsFile::pollFd() {
    MutexLock lock(m_impl->mutex);
    return m_impl->connected() ? m_impl->notices.get() : -1;
}

bool PpsFile::reconnected() {
    MutexLock lock(m_impl->mutex);
    return std::exchange(m_impl->reconnected, false);
}

Result<std::vector<std::string>> ppsList(const std::string& socket) {
    auto answer = ask(socket, PpsRequest::List, "");
    if (!answer) {
        return answer.failure();
    }
    std::vector<std::string> names;
    for (size_t begin = 0, end; (end = answer->find('\n', begin)) != answer->npos; begin = end + 1) {
        names.push_back(answer->substr(begin, end - begin));
    }
    return names;
}

Status ppsUnlink(const std::string& socket, const std::string& path) {
    auto answer = ask(socket, PpsRequest::Unlink, path);
    return answer ? ok() : Status(Error{answer.error()});
}

} // namespace zm
