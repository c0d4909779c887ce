#pragma once

#include "base/Rect.h"
#include "base/ScreenSize.h"

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

using SoupWebsocketConnection = struct _SoupWebsocketConnection;

namespace zm::bench::screen {
class Compositor;
} // namespace zm::bench::screen

namespace zm::bench::web {

class WebSocketClient;

/** The bench's command that a page's message stands for, its place inside the screen; empty if it stands for none. */
std::vector<std::string> pageCommand(const nlohmann::json& message, ScreenSize screen = {});

/**
 * The screen for pages: sends each the rectangles that changed and takes their touches. A page acknowledges
 * each rectangle; with two on their way the next waits and grows, so that a slow page gets fewer frames and
 * costs no memory. Pages get PNG, moving pictures JPEG. On the loop's thread.
 */
class Screen {
public:
    /** `command` carries out one command of the bench ("touch", "100", "200"). */
    Screen(screen::Compositor& compositor, std::function<void(std::vector<std::string>)> command);
    ~Screen();

    /** Takes a page's connection over; one too many is closed. */
    void add(SoupWebsocketConnection* connection);
    /** The composed frame will change inside `area`. */
    void damaged(Rect area);
    size_t pages() const { return m_pages.size(); }

private:
    struct Page;
    void serve(Page& page);
    screen::Compositor& m_compositor;
    std::function<void(std::vector<std::string>)> m_command;
    std::list<std::unique_ptr<Page>> m_pages;
};

} // namespace zm::bench::web
