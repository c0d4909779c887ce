#pragma once

#include "base/EventLoop.h"
#include "base/Result.h"
#include "base/UniqueFd.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zm {

/**
 * Local message sockets: AF_UNIX, SOCK_SEQPACKET. One message has at most 64 MiB and may carry descriptors;
 * it is cut into packets of 64 KiB on the way and put together again by the receiver.
 */
struct Message {
    std::string text;
    std::vector<UniqueFd> fds;
};

/** A listening socket at `path` (a stale socket file is replaced; one that somebody serves is an error). */
Result<UniqueFd> listenUnix(const std::string& path);
/** Connects to `path`, trying again until `timeout` has passed. */
Result<UniqueFd> connectUnix(const std::string& path,
                             std::chrono::milliseconds timeout = std::chrono::milliseconds(0));

/** Blocking exchange for clients. One thread at a time may send and one may receive. */
class SyncConnection {
public:
    explicit SyncConnection(UniqueFd fd) : m_fd(std::move(fd)) {}
    Status send(std::string_view text, const std::vector<int>& fds = {});
    /** Waits at most `timeout` (negative: for ever). A closed peer is the error "connection closed". */
    Result<Message> receive(std::chrono::milliseconds timeout = std::chrono::milliseconds(-1));
    int fd() const { return m_fd.get(); }
    void shutdown();

private:
    UniqueFd m_fd;
};

/**
 * One connection served by an event loop. All calls and callbacks on the loop's thread. A peer that does not
 * read is cut off once more than `backlogLimit` bytes wait for it. `onClosed` is called once, from the loop,
 * never from inside `send`; destroying the connection from a callback is allowed.
 */
class Connection {
public:
    Connection(EventLoop& loop, UniqueFd fd, size_t backlogLimit = 32u << 20);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    std::function<void(Message)> onMessage;
    std::function<void()> onClosed;

    void send(std::string_view text, const std::vector<int>& fds = {});
    /** Process id of the peer as the kernel knows it. */
    int peerPid() const;
    size_t backlog() const { return m_backlog; }

private:
    void readReady();
    void writeReady();
    void fail();
    struct Packet {
        std::string bytes;
        std::vector<UniqueFd> fds;
    };
    EventLoop& m_loop;
    UniqueFd m_fd;
    size_t m_limit;
    size_t m_backlog = 0;
    std::deque<Packet> m_outgoing;
    Message m_incoming;
    SourceHandle m_reader;
    SourceHandle m_writer;
    bool m_failed = false;
    std::shared_ptr<bool> m_alive;
};

/**
 * Accepts connections on a socket of its own and hands each to `onConnection`. While the process has no
 * descriptor left, callers wait; they are accepted once there are some again. Loop's thread only.
 */
class Listener {
public:
    Listener(EventLoop& loop, std::function<void(UniqueFd)> onConnection);
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /** Starts to listen at `path`; fails as `listenUnix` does. */
    Status listen(const std::string& path);

private:
    void watch();
    void accept();

    EventLoop& m_loop;
    UniqueFd m_fd;
    std::function<void(UniqueFd)> m_onConnection;
    SourceHandle m_watch;
    SourceHandle m_pause;
};

} // namespace zm
