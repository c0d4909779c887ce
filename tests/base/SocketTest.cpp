#include "base/Socket.h"

#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <thread>

namespace zm::test {

using namespace std::chrono_literals;

class SocketTest : public testing::Test {
protected:
    /** Both ends of a connection. */
    std::pair<UniqueFd, UniqueFd> pair() {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
        return {UniqueFd(ends[0]), UniqueFd(ends[1])};
    }
    static bool sameFile(int left, int right) {
        struct stat a {};
        struct stat b {};
        return fstat(left, &a) == 0 && fstat(right, &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
    }

    TemporaryFolder temporary;
    const std::string folder = temporary.path();
    const std::string path = folder + "/test.sock";
};

TEST_F(SocketTest, MessagesOfAnySizeArriveWholeAndInOrder) {
    auto [left, right] = pair();
    SyncConnection sender(std::move(left));
    SyncConnection receiver(std::move(right));
    std::vector<std::string> messages;
    for (size_t size : {0u, 1u, 65535u, 65536u, 65537u, 131072u, 5000000u}) {
        std::string text(size, 'x');
        for (size_t i = 0; i < size; i += 997) {
            text[i] = static_cast<char>(i % 251);
        }
        messages.push_back(std::move(text));
    }
    std::thread sending([&] {
        for (const auto& message : messages) {
            EXPECT_TRUE(sender.send(message));
        }
    });
    for (const auto& message : messages) {
        auto received = receiver.receive(10s);
        ASSERT_TRUE(received) << received.error();
        EXPECT_TRUE(received->text == message) << message.size() << " bytes";
    }
    sending.join();
}

TEST_F(SocketTest, DescriptorsTravelWithTheirMessage) {
    auto [left, right] = pair();
    SyncConnection sender(std::move(left));
    SyncConnection receiver(std::move(right));
    UniqueFd file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::thread sending([&] {
        EXPECT_TRUE(sender.send("none"));
        EXPECT_TRUE(sender.send(std::string(200000, 'x'), {file.get(), file.get()}));
        EXPECT_TRUE(sender.send("none again"));
    });
    EXPECT_TRUE(receiver.receive(10s)->fds.empty());
    const auto message = receiver.receive(10s);
    ASSERT_EQ(message->fds.size(), 2u);
    EXPECT_TRUE(sameFile(message->fds[0].get(), file.get()));
    EXPECT_TRUE(sameFile(message->fds[1].get(), file.get()));
    EXPECT_EQ(fcntl(message->fds[0].get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    EXPECT_TRUE(receiver.receive(10s)->fds.empty());
    sending.join();
}

TEST_F(SocketTest, ReceivingEndsWithItsTimeOrItsPeer) {
    auto [left, right] = pair();
    SyncConnection receiver(std::move(right));
    EXPECT_EQ(receiver.receive(1ms).error(), "no answer in time");
    left.reset();
    EXPECT_EQ(receiver.receive(5s).error(), "connection closed");
    EXPECT_FALSE(receiver.send("x")) << "and kills nobody by a signal";
}

TEST_F(SocketTest, AStaleSocketIsReplacedAndAServedOneIsNot) {
    {
        auto first = listenUnix(path);
        ASSERT_TRUE(first) << first.error();
        EXPECT_NE(listenUnix(path).error().find("already served"), std::string::npos);
        EXPECT_TRUE(connectUnix(path));
    }
    EXPECT_TRUE(std::filesystem::exists(path)) << "the file is left behind";
    EXPECT_FALSE(connectUnix(path));
    EXPECT_TRUE(listenUnix(path));
}

TEST_F(SocketTest, ConnectingWaitsForAServerThatComesLater) {
    EXPECT_NE(connectUnix(path).error().find(path), std::string::npos);
    Result<UniqueFd> listening = Error{""};
    std::thread server([&] { listening = listenUnix(path); });
    EXPECT_TRUE(connectUnix(path, 5s));
    server.join();
}

TEST_F(SocketTest, ASignalDoesNotKeepAnybodyFromConnecting) {
    auto listening = listenUnix(path);
    ASSERT_TRUE(listening) << listening.error();
    ASSERT_EQ(::listen(listening->get(), 0), 0);
    const auto waiting = connectUnix(path); // one finds room, the next has to wait
    ASSERT_TRUE(waiting);
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) {};
    ASSERT_EQ(::sigaction(SIGUSR1, &action, &before), 0);
    std::atomic<bool> done = false;
    Result<UniqueFd> connected = Error{"never tried"};
    std::thread client([&] {
        connected = connectUnix(path);
        done = true;
    });
    const auto end = std::chrono::steady_clock::now() + 300ms;
    while (!done && std::chrono::steady_clock::now() < end) {
        ::pthread_kill(client.native_handle(), SIGUSR1);
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_FALSE(done) << connected.error();
    const UniqueFd first(::accept(listening->get(), nullptr, nullptr));
    client.join();
    EXPECT_TRUE(connected) << connected.error();
    ::sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(SocketTest, APathThatIsTooLongIsAnErrorAndNotCut) {
    const std::string longPath = folder + "/" + std::string(200, 'x');
    EXPECT_NE(listenUnix(longPath).error().find("too long"), std::string::npos);
    EXPECT_NE(connectUnix(longPath).error().find("too long"), std::string::npos);
}

TEST_F(SocketTest, ASocketInAFolderThatIsNotThereIsAnError) {
    const std::string missing = folder + "/missing/test.sock";
    const auto listening = listenUnix(missing);
    ASSERT_FALSE(listening);
    EXPECT_EQ(listening.error(), missing + ": No such file or directory");
}

TEST_F(SocketTest, SendingToAPeerThatLeftClosesOnce) {
    EventLoop loop;
    auto [left, right] = pair();
    Connection connection(loop, std::move(left));
    int closed = 0;
    connection.onClosed = [&] { ++closed; };
    right.reset();
    connection.send("lost");
    connection.send("lost, too");
    const SourceHandle end = afterDelay(loop, 50ms, [&] { loop.quit(); });
    loop.run();
    EXPECT_EQ(closed, 1);
}

TEST_F(SocketTest, APeerThatLeavesBeforeItHasReadAllClosesOnce) {
    EventLoop loop;
    auto [left, right] = pair();
    Connection connection(loop, std::move(left));
    int closed = 0;
    connection.onClosed = [&] { ++closed; };
    connection.send(std::string(4 << 20, 'x')); // more than the kernel takes at once
    const SourceHandle leaving =
        afterDelay(loop, 10ms, [end = std::make_shared<UniqueFd>(std::move(right))] { end->reset(); });
    const SourceHandle over = afterDelay(loop, 100ms, [&] { loop.quit(); });
    loop.run();
    EXPECT_EQ(closed, 1);
}

TEST_F(SocketTest, MessagesThatNobodyTakesAreDroppedAndTheEndIsTold) {
    EventLoop loop;
    auto [left, right] = pair();
    Connection connection(loop, std::move(left));
    int closed = 0;
    connection.onClosed = [&] {
        ++closed;
        loop.quit();
    };
    SyncConnection peer(std::move(right));
    EXPECT_TRUE(peer.send("nobody listens"));
    peer.shutdown();
    const SourceHandle late = afterDelay(loop, 10s, [&] { loop.quit(); });
    loop.run();
    EXPECT_EQ(closed, 1);
}

TEST_F(SocketTest, AServedConnectionReceivesAndAnswers) {
    EventLoop loop;
    std::unique_ptr<Connection> connection;
    bool closed = false;
    Listener listener(loop, [&](UniqueFd fd) {
        connection = std::make_unique<Connection>(loop, std::move(fd));
        EXPECT_EQ(connection->peerPid(), getpid());
        connection->onMessage = [&](Message message) { connection->send("echo " + message.text); };
        connection->onClosed = [&] {
            closed = true;
            loop.quit();
        };
    });
    ASSERT_TRUE(listener.listen(path));
    std::thread client([&] {
        SyncConnection own(std::move(*connectUnix(path)));
        for (size_t size : {3u, 300000u}) {
            const std::string text(size, 'y');
            EXPECT_TRUE(own.send(text));
            auto answer = own.receive(10s);
            ASSERT_TRUE(answer) << answer.error();
            EXPECT_TRUE(answer->text == "echo " + text);
        }
    });
    loop.run();
    client.join();
    EXPECT_TRUE(closed);
}

TEST_F(SocketTest, ASlowPeerGetsEverythingInTheEndDescriptorsToo) {
    EventLoop loop;
    auto [left, right] = pair();
    Connection connection(loop, std::move(left));
    UniqueFd file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    constexpr int Messages = 300;
    for (int i = 0; i < Messages; ++i) {
        connection.send(std::to_string(i) + std::string(20000, 'x'), {file.get()});
    }
    EXPECT_GT(connection.backlog(), 0u) << "more than the socket takes";
    std::thread client([&, end = std::move(right)]() mutable {
        SyncConnection own(std::move(end));
        for (int i = 0; i < Messages; ++i) {
            auto message = own.receive(10s);
            ASSERT_TRUE(message) << message.error();
            EXPECT_TRUE(message->text.starts_with(std::to_string(i) + "x"));
            ASSERT_EQ(message->fds.size(), 1u);
            EXPECT_TRUE(sameFile(message->fds[0].get(), file.get()));
        }
        loop.quit();
    });
    loop.run();
    client.join();
    EXPECT_EQ(connection.backlog(), 0u);
}

TEST_F(SocketTest, APeerThatNeverReadsIsCutOffOnceAndNotInsideSend) {
    EventLoop loop;
    auto [left, right] = pair();
    Connection connection(loop, std::move(left), 100000);
    int closed = 0;
    connection.onClosed = [&] { ++closed; };
    for (int i = 0; i < 1000; ++i) {
        connection.send(std::string(10000, 'x'));
    }
    EXPECT_EQ(closed, 0);
    EXPECT_EQ(connection.backlog(), 0u) << "nothing is kept for it";
    while (loop.iterate(false)) {
    }
    EXPECT_EQ(closed, 1);
}

TEST_F(SocketTest, AConnectionMayBeDestroyedInsideItsCallbacks) {
    for (const bool byMessage : {true, false}) {
        EventLoop loop;
        auto [left, right] = pair();
        auto connection = std::make_unique<Connection>(loop, std::move(left));
        connection->onMessage = [&](Message) { connection.reset(); };
        connection->onClosed = [&] { connection.reset(); };
        {
            SyncConnection peer(std::move(right));
            if (byMessage) {
                ASSERT_TRUE(peer.send("one"));
                ASSERT_TRUE(peer.send("two"));
            }
        }
        const auto deadline = std::chrono::steady_clock::now() + 5s;
        while (connection && std::chrono::steady_clock::now() < deadline) {
            loop.iterate(false);
        }
        EXPECT_EQ(connection, nullptr);
    }
}

TEST_F(SocketTest, AnInterruptedMessageIsNeverDelivered) {
    EventLoop loop;
    auto [left, right] = pair();
    Connection connection(loop, std::move(left));
    int messages = 0;
    bool closed = false;
    connection.onMessage = [&](Message) { ++messages; };
    connection.onClosed = [&] { closed = true; };
    // The first byte says that more packets follow.
    ASSERT_GT(::send(right.get(), "\1part", 5, 0), 0);
    right.reset();
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    while (!closed && std::chrono::steady_clock::now() < deadline) {
        loop.iterate(false);
    }
    EXPECT_TRUE(closed);
    EXPECT_EQ(messages, 0);
}

TEST_F(SocketTest, AMessageThatNeverEndsIsGivenUp) {
    auto [left, right] = pair();
    SyncConnection receiver(std::move(left));
    std::thread sending([end = right.get()] {
        const std::string more = "\1" + std::string(65536, 'x');
        while (::send(end, more.data(), more.size(), MSG_NOSIGNAL) > 0) {
        }
    });
    const auto received = receiver.receive(60s);
    EXPECT_FALSE(received);
    receiver = SyncConnection(UniqueFd()); // which ends the sender
    sending.join();
}

TEST_F(SocketTest, AMessageWithTooManyDescriptorsIsGivenUp) {
    auto [left, right] = pair();
    SyncConnection receiver(std::move(left));
    const UniqueFd file(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    for (int i = 0; i < 20; ++i) {
        char byte = 1; // more follows
        iovec part{&byte, 1};
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
        msghdr header{};
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = control;
        header.msg_controllen = sizeof control;
        cmsghdr* entry = CMSG_FIRSTHDR(&header);
        entry->cmsg_level = SOL_SOCKET;
        entry->cmsg_type = SCM_RIGHTS;
        entry->cmsg_len = CMSG_LEN(sizeof(int));
        const int carried = file.get();
        std::memcpy(CMSG_DATA(entry), &carried, sizeof carried);
        ASSERT_EQ(::sendmsg(right.get(), &header, MSG_DONTWAIT | MSG_NOSIGNAL), 1) << i;
    }
    const auto received = receiver.receive(10s);
    ASSERT_FALSE(received);
    EXPECT_EQ(received.error(), "connection closed");
}

TEST_F(SocketTest, AnEndThatNobodyWaitsForDisturbsNobody) {
    EventLoop loop;
    auto [left, right] = pair();
    const Connection connection(loop, std::move(left));
    right.reset();
    int turns = 0;
    const SourceHandle timer = everyInterval(loop, 5ms, [&] {
        if (++turns == 5) {
            loop.quit();
        }
    });
    loop.run();
    EXPECT_EQ(turns, 5);
}

TEST_F(SocketTest, OneBusyPeerDoesNotStarveAnother) {
    EventLoop loop;
    auto [busyLeft, busyRight] = pair();
    auto [quietLeft, quietRight] = pair();
    auto busy = std::make_unique<Connection>(loop, std::move(busyLeft));
    Connection quiet(loop, std::move(quietLeft));
    std::atomic<bool> stop = false;
    busy->onMessage = [](Message) {};
    quiet.onMessage = [&](Message) {
        stop = true;
        loop.quit();
    };
    std::thread flooding([&, end = std::move(busyRight)]() mutable {
        SyncConnection own(std::move(end));
        while (!stop && own.send("x")) {
        }
    });
    SyncConnection whisper(std::move(quietRight));
    ASSERT_TRUE(whisper.send("y"));
    loop.run();
    EXPECT_TRUE(stop);
    // Closes the connection: the sender may be waiting for room in the socket.
    busy.reset();
    flooding.join();
}

namespace {

/** Takes all descriptors that the process may still have. */
class NoDescriptors {
public:
    NoDescriptors() {
        getrlimit(RLIMIT_NOFILE, &m_limit);
        rlimit tight = m_limit;
        tight.rlim_cur = 64;
        setrlimit(RLIMIT_NOFILE, &tight);
        for (int fd = ::dup(0); fd >= 0; fd = ::dup(0)) {
            m_taken.emplace_back(fd);
        }
    }
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &m_limit); }

private:
    rlimit m_limit{};
    std::vector<UniqueFd> m_taken;
};

std::chrono::nanoseconds processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace

TEST_F(SocketTest, AListenerWithoutDescriptorsWaitsAndAcceptsLater) {
    EventLoop loop;
    int accepted = 0;
    Listener listener(loop, [&](UniqueFd) { ++accepted; });
    ASSERT_TRUE(listener.listen(path));
    auto client = connectUnix(path);
    ASSERT_TRUE(client);
    int wakeUps = 0;
    {
        const NoDescriptors none;
        ASSERT_LT(::dup(0), 0);
        const auto before = processorTime();
        for (const auto end = std::chrono::steady_clock::now() + 500ms;
             std::chrono::steady_clock::now() < end; ++wakeUps) {
            loop.iterate(true);
        }
        EXPECT_EQ(accepted, 0);
        EXPECT_LE(wakeUps, 15) << "a few attempts a second, not one after the other";
        EXPECT_LT(processorTime() - before, 100ms);
    }
    const auto end = std::chrono::steady_clock::now() + 5s;
    while (accepted == 0 && std::chrono::steady_clock::now() < end) {
        loop.iterate(true);
    }
    EXPECT_EQ(accepted, 1);
}

} // namespace zm::test
