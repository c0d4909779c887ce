#include "tests/system/SystemTest.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>

namespace zm::test {

/** Clients of the page that leave their connections behind. */
class PageLimit : public SystemTest {
protected:
    void SetUp() override {
        bench = std::make_unique<Process>(
            Words{"zmbench", "--runtime", folder, "--no-disc-service", "--manual-clock"}, folder);
        const std::string ready = bench->line();
        const std::string before = "ready http://127.0.0.1:";
        ASSERT_THAT(ready, StartsWith(before));
        m_port = std::stoi(ready.substr(before.size()));
        m_token = ready.substr(ready.find("token=") + 6);
    }

    size_t descriptors() {
        const std::filesystem::path held = "/proc/" + std::to_string(bench->pid()) + "/fd";
        return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(held), {}));
    }

    UniqueFd connected() {
        UniqueFd fd(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<uint16_t>(m_port));
        EXPECT_EQ(::connect(fd.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        return fd;
    }
    /** Asks for a page in a connection that the client would keep, and waits for the first of the answer. */
    static void ask(const UniqueFd& fd) {
        say(fd, "GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: keep-alive\r\n\r\n");
        char answer[16];
        EXPECT_GT(::recv(fd.get(), answer, sizeof answer, 0), 0);
    }

    static void say(const UniqueFd& fd, const std::string& text) {
        EXPECT_EQ(::send(fd.get(), text.data(), text.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(text.size()));
    }
    std::string authorization() const {
        return "Host: 127.0.0.1\r\nAuthorization: Bearer " + m_token + "\r\n";
    }
    /** What has come within that time; `closed` once the other side has ended the connection. */
    static std::string heard(const UniqueFd& fd, int milliseconds, bool& closed) {
        std::string all;
        char part[4096];
        for (pollfd ready{fd.get(), POLLIN, 0}; ::poll(&ready, 1, milliseconds) == 1;) {
            const ssize_t count = ::recv(fd.get(), part, sizeof part, 0);
            if (count <= 0) {
                closed = true;
                break;
            }
            all.append(part, static_cast<size_t>(count));
        }
        return all;
    }

    int m_port = 0;
    std::string m_token;
};

TEST_F(PageLimit, AClientThatLeavesKeepsNoDescriptor) {
    const size_t before = descriptors();
    for (int i = 0; i < 40; ++i) {
        ask(connected());
        connected(); // and one that says nothing
        const UniqueFd half = connected();
        EXPECT_GT(::send(half.get(), "GET / HT", 8, MSG_NOSIGNAL), 0);
    }
    EXPECT_TRUE(eventually([&] { return descriptors() <= before + 2; })) << before << " " << descriptors();
}

TEST_F(PageLimit, AtTheDescriptorLimitTheControlSocketStillAnswers) {
    const size_t before = descriptors();
    const rlimit low{before + 24, before + 24};
    ASSERT_EQ(::prlimit(bench->pid(), RLIMIT_NOFILE, &low, nullptr), 0);
    std::vector<UniqueFd> clients;
    for (int i = 0; i < 60; ++i) {
        clients.push_back(connected());
    }
    for (int i = 0; i < 5; ++i) {
        EXPECT_THAT(must({"ps"}), HasSubstr("app")) << i;
    }
    clients.clear();
    EXPECT_TRUE(eventually([&] { return descriptors() <= before + 2; }));
    ask(connected());
}

TEST_F(PageLimit, SilentClientsAreClosedButNotSocketsAndRunningCommands) {
    const UniqueFd silent = connected();
    const UniqueFd half = connected();
    say(half, "POST /api/command HTTP/1.1\r\n" + authorization() + "Content-Length: 9\r\n\r\n[");
    const UniqueFd socket = connected();
    say(socket, "GET /ws/screen HTTP/1.1\r\n" + authorization() +
                    "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                    "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n\r\n");
    const UniqueFd command = connected();
    const std::string words = R"({"argv":["pps","watch","test/one","-t","8"]})";
    say(command, "POST /api/command HTTP/1.1\r\n" + authorization() +
                     "Content-Length: " + std::to_string(words.size()) + "\r\n\r\n" + words);

    bool closed = false;
    EXPECT_THAT(heard(silent, 20'000, closed), IsEmpty());
    EXPECT_TRUE(closed);
    closed = false;
    heard(half, 20'000, closed);
    EXPECT_TRUE(closed);
    closed = false;
    EXPECT_THAT(heard(command, 20'000, closed), HasSubstr("\"exit\":0"));
    EXPECT_TRUE(closed);
    closed = false;
    EXPECT_THAT(heard(socket, 100, closed), StartsWith("HTTP/1.1 101"));
    EXPECT_FALSE(closed);
    EXPECT_THAT(must({"ps"}), HasSubstr("app"));
}

} // namespace zm::test
