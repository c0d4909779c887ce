#pragma once

#include "base/Socket.h"
#include "services/bench/screen/Compositor.h"
#include "tests/support/Eventually.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace zm::test {

using Json = nlohmann::json;

/** Pixels as they stand in memory: B, G, R, A. */
constexpr uint32_t Black = 0xff000000;
constexpr uint32_t Red = 0xffff0000;
constexpr uint32_t Green = 0xff00ff00;
constexpr uint32_t Blue = 0xff0000ff;
constexpr uint32_t Clear = 0x00000000;
constexpr uint32_t HalfWhite = 0x80808080;

/** Sealed memory of three buffers that a test paints. */
class Memory {
public:
    static constexpr int AllSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL;

    Memory(int width, int height, int seals = AllSeals, size_t missingBytes = 0)
        : m_width(width), m_height(height), m_fd(memfd_create("window", MFD_CLOEXEC | MFD_ALLOW_SEALING)) {
        const size_t size = bytes() - missingBytes;
        EXPECT_EQ(ftruncate(m_fd.get(), static_cast<off_t>(size)), 0);
        m_pixels =
            static_cast<uint32_t*>(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, m_fd.get(), 0));
        EXPECT_EQ(fcntl(m_fd.get(), F_ADD_SEALS, seals), 0);
    }
    ~Memory() { munmap(m_pixels, bytes()); }
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;

    int fd() const { return m_fd.get(); }
    void fill(int buffer, uint32_t pixel, const Rect& area) {
        for (int y = area.y; y < area.y + area.h; ++y) {
            for (int x = area.x; x < area.x + area.w; ++x) {
                m_pixels[(static_cast<size_t>(buffer) * static_cast<size_t>(m_height) +
                          static_cast<size_t>(y)) *
                             static_cast<size_t>(m_width) +
                         static_cast<size_t>(x)] = pixel;
            }
        }
    }
    void fill(int buffer, uint32_t pixel) { fill(buffer, pixel, {0, 0, m_width, m_height}); }
    Json window(int number, int order, bool alpha, bool visible = true) const {
        return {{"t", "window"},    {"window", number},   {"name", "w"},
                {"width", m_width}, {"height", m_height}, {"stride", m_width * 4},
                {"order", order},   {"alpha", alpha},     {"visible", visible}};
    }

private:
    size_t bytes() const {
        return size_t{3} * 4 * static_cast<size_t>(m_width) * static_cast<size_t>(m_height);
    }
    int m_width;
    int m_height;
    UniqueFd m_fd;
    uint32_t* m_pixels;
};

inline const Json AllDamaged = Json::array({{0, 0, 800, 480}});

inline Json commitOf(int window, int buffer, int seq, const Json& damage = AllDamaged) {
    return {{"t", "commit"}, {"window", window}, {"buffer", buffer}, {"seq", seq}, {"damage", damage}};
}

/** A client of screen.sock that sends what it is told, right or wrong. */
class RawClient {
public:
    RawClient(const std::string& socket, const std::string& role) : m_connection(connect(socket)) {
        if (!role.empty()) {
            send({{"t", "hello"}, {"role", role}, {"pid", getpid()}});
        }
    }
    void send(const Json& message, const std::vector<int>& fds = {}) { sendText(message.dump(), fds); }
    // A refused client may find its connection closed: the answer tells.
    void sendText(const std::string& text, const std::vector<int>& fds = {}) {
        static_cast<void>(m_connection.send(text, fds));
    }
    /** The next message; null when the connection has been closed. */
    Json receive() {
        auto message = m_connection.receive(std::chrono::seconds(5));
        return message ? Json::parse(message->text) : Json();
    }
    /** All messages before the answer to a sync; the last is null if the connection was closed instead. */
    std::vector<Json> sync() {
        send({{"t", "sync"}, {"id", 7}});
        std::vector<Json> messages;
        for (;;) {
            messages.push_back(receive());
            if (messages.back().is_null()) {
                return messages;
            }
            if (messages.back()["t"] == "synced") {
                messages.pop_back();
                return messages;
            }
        }
    }
    /** Opens an opaque window of order 1 over `memory`. */
    void open(const Memory& memory, int window = 1) { send(memory.window(window, 1, false), {memory.fd()}); }
    /** Commits a frame of window 1 and waits until the compositor has taken it. */
    void show(int buffer, int seq, const Json& damage = AllDamaged) {
        send(commitOf(1, buffer, seq, damage));
        sync();
    }
    /** Sends a message that has to be refused; gives the reason. */
    std::string refusal(const Json& message, const std::vector<int>& fds = {}) {
        send(message, fds);
        const Json answer = receive();
        const bool refused = answer.is_object() && answer["t"] == "error" && receive().is_null();
        return refused ? answer["text"].get<std::string>() : std::string();
    }

private:
    static UniqueFd connect(const std::string& socket) {
        auto fd = connectUnix(socket);
        EXPECT_TRUE(fd) << fd.error();
        return fd ? std::move(*fd) : UniqueFd();
    }
    SyncConnection m_connection;
};

/** An application whose only window, red all over, is on the screen. */
class RedApplication : public RawClient {
public:
    explicit RedApplication(const std::string& socket, int width = 800, int height = 480)
        : RawClient(socket, "app"), memory(width, height) {
        memory.fill(0, Red);
        open(memory);
        show(0, 1);
    }
    Memory memory;
};

/** A compositor on a thread of its own; a test looks at it through `call`. */
class ScreenTest : public testing::Test {
protected:
    ScreenTest() {
        compositor = std::make_unique<bench::screen::Compositor>(loop, socket);
        compositor->onDamage = [this](Rect rect) { damages.push_back(rect); };
        const auto started = compositor->start();
        EXPECT_TRUE(started) << started.error();
        thread = std::thread([this] { loop.run(); });
    }
    ~ScreenTest() override {
        loop.quit();
        thread.join();
        compositor.reset();
    }

    /** Runs `task` on the compositor's thread and gives what it returns. */
    template <class Task>
    auto call(Task task) {
        std::packaged_task<decltype(task())()> packaged(std::move(task));
        auto result = packaged.get_future();
        loop.post([&packaged] { packaged(); });
        return result.get();
    }
    /** A pixel of the composed frame, without its meaningless fourth byte. */
    uint32_t pixel(int x, int y) {
        return call([=, this] {
            uint32_t value;
            std::memcpy(&value, compositor->compose().at(x, y), sizeof value);
            return value | 0xff000000;
        });
    }
    /** What the owner was told since the last call. */
    std::vector<Rect> takeDamages() {
        return call([this] { return std::exchange(damages, {}); });
    }
    uint64_t compose() {
        return call([this] {
            compositor->compose();
            return compositor->composedFrames();
        });
    }
    Json video() {
        return call([this] { return compositor->videoState(); });
    }
    TemporaryFolder temporary;
    std::string folder = temporary.path();
    std::string socket = folder + "/screen.sock";
    EventLoop loop;
    std::unique_ptr<bench::screen::Compositor> compositor;
    std::vector<Rect> damages;
    std::thread thread;
};

} // namespace zm::test
