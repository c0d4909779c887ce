#include "tests/framework/FakeHeadUnit.h"

#include "base/Paths.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace zm::test {

namespace {

constexpr std::chrono::seconds UnitPatience(10);

std::vector<json> ofKind(const std::vector<json>& messages, const std::string& kind) {
    std::vector<json> result;
    for (const json& message : messages) {
        if (message["t"] == kind) {
            result.push_back(message);
        }
    }
    return result;
}

} // namespace

FakeHeadUnit::FakeHeadUnit(json start, Welcome welcome) : m_start(std::move(start)), m_welcome(welcome) {
    m_pps = std::make_unique<PpsService>(m_loop, ppsSocket(folder()));
    EXPECT_TRUE(m_pps->start());
    serve();
    m_thread = std::thread([this] { m_loop.run(); });
}

FakeHeadUnit::~FakeHeadUnit() {
    m_loop.quit();
    m_thread.join();
}

void FakeHeadUnit::serve() {
    const auto listen = [this](const std::string& path, std::unique_ptr<Connection>& slot, auto handler) {
        auto listener = std::make_unique<Listener>(m_loop, [this, &slot, handler](UniqueFd peer) {
            slot = std::make_unique<Connection>(m_loop, std::move(peer));
            slot->onMessage = [this, handler](Message message) { (this->*handler)(std::move(message)); };
            slot->onClosed = [&slot] { slot.reset(); };
        });
        EXPECT_TRUE(listener->listen(path)) << path;
        return listener;
    };
    m_shellListener = listen(shellSocket(folder()), m_shell, &FakeHeadUnit::onShell);
    m_screenListener = listen(screenSocket(folder()), m_screen, &FakeHeadUnit::onScreen);
}

void FakeHeadUnit::onShell(Message packet) {
    const json message = json::parse(packet.text);
    if (message["t"] == "hello" && m_welcome == Welcome::Normal) {
        json welcome = m_start;
        welcome["t"] = "welcome";
        m_shell->send(welcome.dump());
    } else if (message["t"] == "hello" && m_welcome == Welcome::Nonsense) {
        m_shell->send("[1,2,3]");
    }
    std::lock_guard lock(m_mutex);
    m_shellMessages.push_back(message);
    m_changed.notify_all();
}

void FakeHeadUnit::onScreen(Message packet) {
    const json message = json::parse(packet.text);
    std::lock_guard lock(m_mutex);
    if (message["t"] == "window") {
        m_memory[message["window"]] = std::move(packet.fds.at(0));
    }
    m_screenMessages.push_back(message);
    m_changed.notify_all();
    if (message["t"] == "sync") {
        m_screen->send(json{{"t", "synced"}, {"id", message["id"]}}.dump());
    } else if (message["t"] == "commit") {
        // The newest frame stays; those that it replaces go back.
        std::vector<json> kept{message};
        for (const json& frame : m_held) {
            if (m_keepFrames || frame["window"] != message["window"]) {
                kept.push_back(frame);
            } else {
                giveBack(frame);
            }
        }
        m_held = kept;
    }
}

void FakeHeadUnit::giveBack(const json& frame) {
    const json release{
        {"t", "release"}, {"window", frame["window"]}, {"buffer", frame["buffer"]}, {"seq", frame["seq"]}};
    m_screen->send(release.dump());
}

void FakeHeadUnit::tell(const json& message) {
    m_loop.post([this, text = message.dump()] {
        if (m_shell) {
            m_shell->send(text);
        }
    });
}

json FakeHeadUnit::ask(json message) {
    const int id = m_nextId++;
    message["id"] = id;
    tell(message);
    json reply;
    const bool answered = waitUntil([&] {
        for (const json& candidate : ofKind(m_shellMessages, "reply")) {
            if (candidate["id"] == id) {
                reply = candidate;
            }
        }
        return !reply.is_null();
    });
    EXPECT_TRUE(answered) << "no reply to " << message;
    return reply;
}

json FakeHeadUnit::askData(const json& message) {
    const json reply = ask(message);
    EXPECT_EQ(reply.value("ok", false), true) << message << " gave " << reply;
    return reply.value("data", json());
}

void FakeHeadUnit::settle() {
    const auto deadline = std::chrono::steady_clock::now() + UnitPatience;
    while (askData({{"t", "settle"}, {"timeout", 5000}}) != json{{"quiet", true}}) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "never quiet";
    }
}

void FakeHeadUnit::advance(int ms) {
    askData({{"t", "advance"}, {"ms", ms}});
}

std::vector<json> FakeHeadUnit::shell(const std::string& kind) {
    std::lock_guard lock(m_mutex);
    return ofKind(m_shellMessages, kind);
}

std::vector<json> FakeHeadUnit::screen(const std::string& kind) {
    std::lock_guard lock(m_mutex);
    return ofKind(m_screenMessages, kind);
}

bool FakeHeadUnit::waitForShell(const std::string& kind, size_t count) {
    return waitUntil([&] { return ofKind(m_shellMessages, kind).size() >= count; });
}

bool FakeHeadUnit::waitForScreen(const std::string& kind, size_t count) {
    return waitUntil([&] { return ofKind(m_screenMessages, kind).size() >= count; });
}

// Runs `task` on the loop's thread and waits for it.
void FakeHeadUnit::onLoop(const std::function<void()>& task) {
    bool done = false;
    m_loop.post([&] {
        task();
        std::lock_guard lock(m_mutex);
        done = true;
        m_changed.notify_all();
    });
    EXPECT_TRUE(waitUntil([&] { return done; }));
}

void FakeHeadUnit::hangUp() {
    onLoop([this] { m_shell.reset(); });
}

void FakeHeadUnit::hangUpScreen() {
    onLoop([this] { m_screen.reset(); });
}

void FakeHeadUnit::tellScreen(const json& message) {
    onLoop([&] { m_screen->send(message.dump()); });
}

// With m_mutex held.
json FakeHeadUnit::findWindow(const std::string& name) {
    for (const json& window : ofKind(m_screenMessages, "window")) {
        if (window["name"] == name) {
            return window;
        }
    }
    ADD_FAILURE() << "no window " << name;
    return {};
}

std::vector<uint8_t> FakeHeadUnit::framePixels(const std::string& name) {
    std::lock_guard lock(m_mutex);
    const json window = findWindow(name);
    const size_t bytes = window["stride"].get<size_t>() * window["height"].get<size_t>();
    std::vector<uint8_t> pixels(bytes);
    for (const json& frame : m_held) {
        if (frame["window"] == window["window"]) {
            const auto offset = static_cast<off_t>(frame["buffer"].get<size_t>() * bytes);
            EXPECT_EQ(pread(m_memory[window["window"]].get(), pixels.data(), bytes, offset),
                      static_cast<ssize_t>(bytes));
            break;
        }
    }
    return pixels;
}

int FakeHeadUnit::windowSeals(const std::string& name) {
    std::lock_guard lock(m_mutex);
    return fcntl(m_memory[findWindow(name)["window"]].get(), F_GET_SEALS);
}

void FakeHeadUnit::keepFrames(bool keep) {
    onLoop([&] {
        std::lock_guard lock(m_mutex);
        m_keepFrames = keep;
        if (keep) {
            return;
        }
        for (const json& frame : std::exchange(m_held, {})) {
            giveBack(frame);
        }
    });
}

PpsFile FakeHeadUnit::openPps(const std::string& path, int flags) {
    auto file = PpsFile::open(ppsSocket(folder()), path, flags, 0666);
    if (!file) {
        ADD_FAILURE() << file.error();
        std::abort();
    }
    return std::move(*file);
}

bool FakeHeadUnit::waitUntil(const std::function<bool()>& condition) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, UnitPatience, condition);
}

} // namespace zm::test
