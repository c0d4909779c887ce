#pragma once

#include "base/EventLoop.h"
#include "base/Mailbox.h"
#include "base/Rect.h"
#include "base/Result.h"
#include "services/bench/display/SharedFrame.h"
#include "services/bench/display/Window.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zm::bench::screen {
class Compositor;
} // namespace zm::bench::screen

namespace zm::bench::display {

/** The screen in a window of this machine: the frames to it, what the user does there back. On the loop's thread. */
class Display {
public:
    /**
     * `command` carries out one command of the bench ("press", "100", "200"), `playing` tells whether something plays, for the
     * one key that plays and pauses; `closed` hears that the user has closed the window.
     */
    struct Actions {
        std::function<void(std::vector<std::string>)> command;
        std::function<bool()> playing;
        std::function<void()> closed;
    };
    Display(EventLoop& loop, screen::Compositor& compositor, Actions actions);
    ~Display();

    /** Opens the window; an error says why there is none. */
    Status open(bool fullScreen);
    /** The composed frame will change inside `area`. */
    void damaged(Rect area);

private:
    WindowListener listener();
    void key(const std::string& name);

    screen::Compositor& m_compositor;
    Actions m_actions;
    std::shared_ptr<Mailbox> m_mailbox;
    SharedFrame m_frame;
    std::unique_ptr<Window> m_window;
};

} // namespace zm::bench::display
