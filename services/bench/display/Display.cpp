#include "services/bench/display/Display.h"

#include "services/bench/screen/Compositor.h"
#include "services/ctl/Names.h"

namespace zm::bench::display {

Display::Display(EventLoop& loop, screen::Compositor& compositor, Actions actions)
    : m_compositor(compositor), m_actions(std::move(actions)), m_mailbox(std::make_shared<Mailbox>(loop)),
      m_frame(compositor.size().width, compositor.size().height) {}

Display::~Display() {
    m_mailbox->close();
}

Status Display::open(bool fullScreen) {
    m_frame.put(m_compositor.compose(), m_compositor.size().area());
    m_window = std::make_unique<Window>(m_frame, m_compositor.size(), listener());
    auto opened = m_window->open(fullScreen);
    if (!opened) {
        m_window.reset();
    }
    return opened;
}

WindowListener Display::listener() {
    // From the window's thread to the loop's.
    const auto post = [mailbox = m_mailbox](auto task) { mailbox->post(std::move(task)); };
    WindowListener listener;
    listener.onTouch = [this, post](const char* step, int x, int y) {
        post([this, step, x, y] { m_actions.command({step, std::to_string(x), std::to_string(y)}); });
    };
    listener.onKey = [this, post](const std::string& name) { post([this, name] { key(name); }); };
    listener.onWheel = [this, post](bool up) {
        post([this, up] { m_actions.command({"key", up ? "encoder-left" : "encoder-right"}); });
    };
    listener.onClosed = [this, post] { post([this] { m_actions.closed(); }); };
    return listener;
}

void Display::key(const std::string& name) {
    if (name == "MediaPlayPause") {
        m_actions.command({"key", m_actions.playing() ? "pause" : "play"});
    } else if (const auto* key = ctl::findShortcut(name)) {
        m_actions.command({"key", std::to_string(key->number)});
    }
    for (const auto& row : ctl::keyCommands()) {
        if (row.key == name) {
            const size_t space = row.command.find(' ');
            m_actions.command(
                {std::string(row.command.substr(0, space)), std::string(row.command.substr(space + 1))});
        }
    }
}

void Display::damaged(Rect area) {
    if (m_window && m_frame.put(m_compositor.compose(), area)) {
        m_window->wake();
    }
}

} // namespace zm::bench::display
