#pragma once

#include "base/EventLoop.h"
#include "base/Socket.h"
#include "platform/linux/pps/PpsFile.h"
#include "platform/linux/pps/PpsService.h"
#include "tests/support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace zm::test {

using json = nlohmann::json;

/** How the head unit answers a hello. */
enum class Welcome { Normal, Silent, Nonsense };

/**
 * The head unit's end of all sockets, on a thread of its own: records what the application sends and sends
 * what a test wants. Frames are taken and given back as a compositor does. Its folder becomes the runtime
 * folder.
 */
class FakeHeadUnit {
public:
    explicit FakeHeadUnit(json start = json::object(), Welcome welcome = Welcome::Normal);
    ~FakeHeadUnit();

    const std::string& folder() const { return m_folder.path(); }

    void tell(const json& message);
    /** Sends and waits for the reply; the whole reply. */
    json ask(json message);
    /** The data of a reply that has to be good. */
    json askData(const json& message);
    void settle();
    void advance(int ms);

    /** Messages of that kind so far, from shell.sock and from screen.sock. */
    std::vector<json> shell(const std::string& kind);
    std::vector<json> screen(const std::string& kind);
    bool waitForShell(const std::string& kind, size_t count = 1);
    bool waitForScreen(const std::string& kind, size_t count = 1);

    /** Closes the connection of shell.sock or of screen.sock. */
    void hangUp();
    void hangUpScreen();
    void tellScreen(const json& message);
    /** What the compositor can read of a window: its newest frame, and the seals of its memory. */
    std::vector<uint8_t> framePixels(const std::string& window);
    int windowSeals(const std::string& window);
    /** From now on no frame is given back, or again all are. */
    void keepFrames(bool keep);

    PpsFile openPps(const std::string& path, int flags = 258);

private:
    void serve();
    void onLoop(const std::function<void()>& task);
    void onShell(Message packet);
    void onScreen(Message packet);
    void giveBack(const json& frame);
    json findWindow(const std::string& name);
    bool waitUntil(const std::function<bool()>& condition);

    RuntimeFolder m_folder;
    json m_start;
    Welcome m_welcome;
    bool m_keepFrames = false;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<json> m_shellMessages;
    std::vector<json> m_screenMessages;
    std::vector<json> m_held;
    std::map<int, UniqueFd> m_memory; ///< by window number
    int m_nextId = 1;

    EventLoop m_loop;
    std::unique_ptr<PpsService> m_pps;
    std::unique_ptr<Listener> m_shellListener;
    std::unique_ptr<Listener> m_screenListener;
    std::unique_ptr<Connection> m_shell;
    std::unique_ptr<Connection> m_screen;
    std::thread m_thread;
};

} // namespace zm::test
