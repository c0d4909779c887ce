#include "base/Socket.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

namespace zm {

namespace {

constexpr size_t PacketBytes = 64 * 1024;
constexpr size_t MaxMessageBytes = 64u << 20;
constexpr size_t MaxFds = 8;
// How long nobody is accepted after descriptors ran out.
constexpr std::chrono::milliseconds AcceptPause{100};
// First byte of each packet.
constexpr char LastPacket = 0;
constexpr char MorePackets = 1;

Result<sockaddr_un> address(const std::string& path) {
    sockaddr_un result{};
    result.sun_family = AF_UNIX;
    if (path.size() >= sizeof result.sun_path) {
        return Error{path + ": too long for a socket (" + std::to_string(sizeof result.sun_path - 1) +
                     " bytes at most)"};
    }
    std::memcpy(result.sun_path, path.c_str(), path.size() + 1);
    return result;
}

UniqueFd makeSocket() {
    return UniqueFd(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
}

// One that a signal interrupts has not come about: a socket of this kind connects at once or not at all.
bool connectTo(int fd, const sockaddr_un& where) {
    int status;
    do {
        status = ::connect(fd, reinterpret_cast<const sockaddr*>(&where), sizeof where);
    } while (status != 0 && errno == EINTR);
    return status == 0;
}

ssize_t sendPacket(int fd, std::string_view bytes, const std::vector<int>& fds, int flags) {
    iovec part{const_cast<char*>(bytes.data()), bytes.size()};
    msghdr header{};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int) * MaxFds)] = {};
    if (!fds.empty()) {
        const size_t count = std::min(fds.size(), MaxFds);
        header.msg_control = control;
        header.msg_controllen = CMSG_SPACE(sizeof(int) * count);
        cmsghdr* entry = CMSG_FIRSTHDR(&header);
        entry->cmsg_level = SOL_SOCKET;
        entry->cmsg_type = SCM_RIGHTS;
        entry->cmsg_len = CMSG_LEN(sizeof(int) * count);
        std::memcpy(CMSG_DATA(entry), fds.data(), sizeof(int) * count);
    }
    ssize_t sent;
    do {
        sent = sendmsg(fd, &header, flags | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent;
}

enum class Received { Nothing, Part, Whole, Closed };

// Appends one packet to `message`.
Received receivePacket(int fd, Message& message, int flags) {
    // Kept per thread: a fresh zeroed buffer for each small packet would cost more than the packet.
    thread_local std::vector<char> buffer(PacketBytes + 1);
    iovec part{buffer.data(), buffer.size()};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int) * MaxFds)];
    msghdr header{};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = control;
    header.msg_controllen = sizeof control;
    ssize_t size;
    do {
        size = recvmsg(fd, &header, flags | MSG_CMSG_CLOEXEC);
    } while (size < 0 && errno == EINTR);
    if (size < 0) {
        return errno == EAGAIN || errno == EWOULDBLOCK ? Received::Nothing : Received::Closed;
    }
    for (cmsghdr* entry = CMSG_FIRSTHDR(&header); entry; entry = CMSG_NXTHDR(&header, entry)) {
        if (entry->cmsg_level == SOL_SOCKET && entry->cmsg_type == SCM_RIGHTS) {
            const size_t count = (entry->cmsg_len - CMSG_LEN(0)) / sizeof(int);
            int received[MaxFds];
            std::memcpy(received, CMSG_DATA(entry), std::min(count, MaxFds) * sizeof(int));
            for (size_t i = 0; i < std::min(count, MaxFds); ++i) {
                message.fds.emplace_back(received[i]);
            }
        }
    }
    if (size == 0 || message.text.size() + static_cast<size_t>(size) > MaxMessageBytes ||
        message.fds.size() > MaxFds) {
        return Received::Closed;
    }
    message.text.append(buffer.data() + 1, static_cast<size_t>(size) - 1);
    return buffer[0] == MorePackets ? Received::Part : Received::Whole;
}

template <class Emit>
bool forEachPacket(std::string_view text, Emit emit) {
    std::string packet;
    do {
        const size_t size = std::min(text.size(), PacketBytes);
        packet.assign(1, size < text.size() ? MorePackets : LastPacket);
        packet.append(text.substr(0, size));
        text.remove_prefix(size);
        if (!emit(packet)) {
            return false;
        }
    } while (!text.empty());
    return true;
}

} // namespace

Result<UniqueFd> listenUnix(const std::string& path) {
    auto where = address(path);
    if (!where) {
        return where.failure();
    }
    if (connectUnix(path)) {
        return Error{path + ": already served by another process"};
    }
    ::unlink(path.c_str());
    UniqueFd fd = makeSocket();
    if (!fd.valid() || ::bind(fd.get(), reinterpret_cast<sockaddr*>(&*where), sizeof *where) != 0 ||
        ::listen(fd.get(), 64) != 0) {
        return systemError(path);
    }
    return fd;
}

Result<UniqueFd> connectUnix(const std::string& path, std::chrono::milliseconds timeout) {
    auto where = address(path);
    if (!where) {
        return where.failure();
    }
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        UniqueFd fd = makeSocket();
        if (fd.valid() && connectTo(fd.get(), *where)) {
            return fd;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return systemError(path);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

Status SyncConnection::send(std::string_view text, const std::vector<int>& fds) {
    bool first = true;
    const bool sent = forEachPacket(text, [&](const std::string& packet) {
        const bool good = sendPacket(m_fd.get(), packet, first ? fds : std::vector<int>{}, 0) >= 0;
        first = false;
        return good;
    });
    if (!sent) {
        return systemError("send");
    }
    return ok();
}

Result<Message> SyncConnection::receive(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    Message message;
    for (;;) {
        int wait = -1;
        if (timeout.count() >= 0) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                deadline - std::chrono::steady_clock::now());
            wait = static_cast<int>(std::max<int64_t>(0, left.count()));
        }
        pollfd ready{m_fd.get(), POLLIN, 0};
        const int count = ::poll(&ready, 1, wait);
        if (count == 0) {
            return Error{"no answer in time"};
        }
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return systemError("poll");
        }
        switch (receivePacket(m_fd.get(), message, 0)) {
        case Received::Whole:
            return message;
        case Received::Closed:
            return Error{"connection closed"};
        default:
            break;
        }
    }
}

void SyncConnection::shutdown() {
    ::shutdown(m_fd.get(), SHUT_RDWR);
}

Connection::Connection(EventLoop& loop, UniqueFd fd, size_t backlogLimit)
    : m_loop(loop), m_fd(std::move(fd)), m_limit(backlogLimit), m_alive(std::make_shared<bool>(true)) {
    m_reader = watchFd(m_loop, m_fd.get(), IoEvent::Readable, [this] { readReady(); });
}

Connection::~Connection() {
    *m_alive = false;
}

void Connection::send(std::string_view text, const std::vector<int>& fds) {
    if (m_failed) {
        return;
    }
    bool first = true;
    const auto alive = forEachPacket(text, [&](const std::string& packet) {
        const auto carried = first ? fds : std::vector<int>{};
        first = false;
        if (m_outgoing.empty()) {
            if (sendPacket(m_fd.get(), packet, carried, MSG_DONTWAIT) >= 0) {
                return true;
            }
            if (errno != EAGAIN && errno != EWOULDBLOCK) {
                return false;
            }
            m_writer = watchFd(m_loop, m_fd.get(), IoEvent::Writable, [this] { writeReady(); });
        }
        Packet waiting{packet, {}};
        for (int carriedFd : carried) {
            waiting.fds.emplace_back(::dup(carriedFd));
        }
        m_backlog += packet.size();
        m_outgoing.push_back(std::move(waiting));
        return m_backlog <= m_limit;
    });
    if (!alive) {
        fail();
    }
}

int Connection::peerPid() const {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(m_fd.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 ? peer.pid : -1;
}

void Connection::readReady() {
    const auto alive = m_alive;
    // A bounded number of packets a turn, so that one busy peer does not starve the others.
    for (int turn = 0; turn < 64 && *alive && !m_failed; ++turn) {
        switch (receivePacket(m_fd.get(), m_incoming, MSG_DONTWAIT)) {
        case Received::Nothing:
            return;
        case Received::Part:
            break;
        case Received::Whole:
            // A copy, because the callback may destroy this connection and with it the member.
            if (auto callback = onMessage) {
                callback(std::exchange(m_incoming, {}));
            }
            break;
        case Received::Closed:
            fail();
            return;
        }
    }
}

void Connection::writeReady() {
    while (!m_outgoing.empty()) {
        auto& packet = m_outgoing.front();
        std::vector<int> fds;
        for (auto& fd : packet.fds) {
            fds.push_back(fd.get());
        }
        if (sendPacket(m_fd.get(), packet.bytes, fds, MSG_DONTWAIT) < 0) {
            if (errno != EAGAIN && errno != EWOULDBLOCK) {
                fail();
            }
            return;
        }
        m_backlog -= packet.bytes.size();
        m_outgoing.pop_front();
    }
    m_writer.reset();
}

void Connection::fail() {
    if (std::exchange(m_failed, true)) {
        return;
    }
    m_reader.reset();
    m_writer.reset();
    m_outgoing.clear();
    m_backlog = 0;
    m_loop.post([this, alive = m_alive] {
        if (!*alive) {
            return;
        }
        if (auto callback = onClosed) {
            callback();
        }
    });
}

Listener::Listener(EventLoop& loop, std::function<void(UniqueFd)> onConnection)
    : m_loop(loop), m_onConnection(std::move(onConnection)) {}

Status Listener::listen(const std::string& path) {
    auto listening = listenUnix(path);
    if (!listening) {
        return listening.failure();
    }
    m_fd = std::move(*listening);
    watch();
    return ok();
}

void Listener::watch() {
    m_watch = watchFd(m_loop, m_fd.get(), IoEvent::Readable, [this] { accept(); });
}

void Listener::accept() {
    UniqueFd accepted(::accept4(m_fd.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (accepted.valid()) {
        m_onConnection(std::move(accepted));
        return;
    }
    // Without a descriptor the caller stays where it is and the socket stays readable.
    if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
        m_watch.reset();
        m_pause = afterDelay(m_loop, AcceptPause, [this] { watch(); });
    }
}

} // namespace zm
