#pragma once

#include "base/Result.h"
#include "base/ScreenSize.h"

#include <functional>
#include <memory>
#include <string>

namespace zm::bench::display {

class SharedFrame;

/** What a window reports; every call comes on the window's own thread. */
struct WindowListener {
    /** A finger or the mouse's left button: "press", "move" or "release" at a pixel of the screen. */
    std::function<void(const char* step, int x, int y)> onTouch;
    /** A key by its name (`pressedKey`). */
    std::function<void(const std::string& key)> onKey;
    /** The mouse wheel by one step. */
    std::function<void(bool up)> onWheel;
    /** The user has closed the window. */
    std::function<void()> onClosed;
};

/**
 * A window that shows the frame and takes touches, mouse and keyboard: on X11 or Wayland, without a desktop the whole
 * screen of the graphics card. It has a thread of its own, as drawing waits for the screen.
 */
class Window {
public:
    /** `frame` has the size of the screen. */
    Window(SharedFrame& frame, ScreenSize screen, WindowListener listener);
    /** Closes it and waits for its thread. */
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /** Opens it, hidden by nothing; an error says why there is none. */
    Status open(bool fullScreen);
    /** The frame has changed. From any thread. */
    void wake();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace zm::bench::display
