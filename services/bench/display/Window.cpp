#include "services/bench/display/Window.h"

#include "base/Threads.h"
#include "services/bench/display/Keyboard.h"
#include "services/bench/display/Painter.h"
#include "services/bench/display/SharedFrame.h"

#include <SDL2/SDL.h>

#include <atomic>
#include <future>
#include <optional>
#include <thread>

namespace zm::bench::display {

namespace {

// Codes of the events that other threads send.
enum class Wake : Sint32 { Frame, End };

std::string noWindow(const std::string& why) {
    return "no window can be opened: " + why +
           " (it needs X11 by DISPLAY, Wayland by WAYLAND_DISPLAY, or a graphics card of its own)";
}

} // namespace

struct Window::Impl {
    Impl(SharedFrame& shown, ScreenSize size, WindowListener reports)
        : frame(shown), screen(size), listener(std::move(reports)) {}

    SharedFrame& frame;
    const ScreenSize screen;
    WindowListener listener;
    std::thread thread;
    std::atomic<Uint32> eventType{0};
    SDL_Window* window = nullptr;
    std::optional<Painter> painter;
    bool fullScreen = false;
    bool pressed = false;
    /** The finger that presses; others are not counted. */
    std::optional<SDL_FingerID> finger;
    int x = 0;
    int y = 0;

    void run(bool full, std::promise<Status> opened);
    Status openHere(bool full);
    void closeHere();
    void send(Wake what);
    bool handle(const SDL_Event& event);
    void handleMouse(const SDL_Event& event);
    void handleFinger(const SDL_Event& event);
    void handleKey(const SDL_Event& event);
    void touch(const char* step, float windowX, float windowY);
    void draw(bool always);
};

Status Window::Impl::openHere(bool full) {
    // SIGTERM is the bench's; and a window beside others does not stop the desktop's compositor.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
    SDL_SetHint(SDL_HINT_TOUCH_MOUSE_EVENTS, "0");
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        return Error{noWindow(SDL_GetError())};
    }
    fullScreen = full;
    const Uint32 flags = SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI |
                         (full ? static_cast<Uint32>(SDL_WINDOW_FULLSCREEN_DESKTOP) : 0U);
    window = SDL_CreateWindow("Head unit", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, screen.width,
                              screen.height, flags);
    if (!window) {
        return Error{noWindow(SDL_GetError())};
    }
    painter.emplace(window, screen);
    if (auto made = painter->open(); !made) {
        return Error{noWindow(made.error())};
    }
    eventType = SDL_RegisterEvents(1);
    return ok();
}

void Window::Impl::closeHere() {
    painter.reset();
    if (window) {
        SDL_DestroyWindow(window);
    }
    SDL_Quit();
}

void Window::Impl::run(bool full, std::promise<Status> opened) {
    auto status = openHere(full);
    const bool good = bool(status);
    opened.set_value(std::move(status));
    SDL_Event event;
    // The first picture is shown once the window system asks for it.
    for (bool goOn = good; goOn && SDL_WaitEvent(&event);) {
        goOn = handle(event);
    }
    closeHere();
}

bool Window::Impl::handle(const SDL_Event& event) {
    if (event.type == eventType) {
        if (static_cast<Wake>(event.user.code) == Wake::End) {
            return false;
        }
        draw(false);
        return true;
    }
    switch (event.type) {
    case SDL_QUIT:
        listener.onClosed();
        break;
    case SDL_WINDOWEVENT:
        draw(true);
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
    case SDL_MOUSEMOTION:
    case SDL_MOUSEWHEEL:
        handleMouse(event);
        break;
    case SDL_FINGERDOWN:
    case SDL_FINGERUP:
    case SDL_FINGERMOTION:
        handleFinger(event);
        break;
    case SDL_KEYDOWN:
    case SDL_TEXTINPUT:
        handleKey(event);
        break;
    default:
        break;
    }
    return true;
}

void Window::Impl::handleMouse(const SDL_Event& event) {
    SDL_ShowCursor(SDL_ENABLE);
    if (event.type == SDL_MOUSEWHEEL) {
        for (int steps = event.wheel.y; steps != 0; steps += steps > 0 ? -1 : 1) {
            listener.onWheel(steps > 0);
        }
    } else if (event.type == SDL_MOUSEMOTION) {
        if (pressed && !finger) {
            touch("move", static_cast<float>(event.motion.x), static_cast<float>(event.motion.y));
        }
    } else if (event.button.button == SDL_BUTTON_LEFT && !finger) {
        touch(event.type == SDL_MOUSEBUTTONDOWN ? "press" : "release", static_cast<float>(event.button.x),
              static_cast<float>(event.button.y));
    }
}

void Window::Impl::handleFinger(const SDL_Event& event) {
    SDL_ShowCursor(SDL_DISABLE);
    int width = 0;
    int height = 0;
    SDL_GetWindowSize(window, &width, &height);
    const float windowX = event.tfinger.x * static_cast<float>(width);
    const float windowY = event.tfinger.y * static_cast<float>(height);
    if (event.type == SDL_FINGERDOWN) {
        if (!pressed) {
            finger = event.tfinger.fingerId;
            touch("press", windowX, windowY);
        }
    } else if (finger == event.tfinger.fingerId) {
        const bool up = event.type == SDL_FINGERUP;
        touch(up ? "release" : "move", windowX, windowY);
        if (up) {
            finger.reset();
        }
    }
}

void Window::Impl::touch(const char* step, float windowX, float windowY) {
    const bool press = step[0] == 'p';
    if (!press && !pressed) {
        return; // it began beside the screen
    }
    const float density = painter->density();
    const auto point = screenPoint(painter->placement(), windowX * density, windowY * density, !press);
    if (!point) {
        return;
    }
    const bool moved = *point != std::pair(x, y);
    if (step[0] == 'm' && !moved) {
        return;
    }
    std::tie(x, y) = *point;
    pressed = step[0] != 'r';
    listener.onTouch(step, x, y);
}

void Window::Impl::handleKey(const SDL_Event& event) {
    const bool toggle = event.type == SDL_KEYDOWN && !event.key.repeat && event.key.keysym.sym == SDLK_F11;
    if (toggle) {
        fullScreen = !fullScreen;
        SDL_SetWindowFullscreen(window, fullScreen ? static_cast<Uint32>(SDL_WINDOW_FULLSCREEN_DESKTOP) : 0U);
        return;
    }
    if (const auto key = pressedKey(event); !key.empty()) {
        listener.onKey(key);
    }
}

void Window::Impl::draw(bool always) {
    bool changed = false;
    if (always) {
        painter->beginAnew();
    }
    frame.take([&](const Image& image, Rect damage) {
        const Rect part = always ? Rect{0, 0, image.width, image.height} : damage;
        changed = !part.empty();
        if (changed) {
            painter->upload(image, part);
        }
    });
    if (changed) {
        painter->show();
    }
}

void Window::Impl::send(Wake what) {
    SDL_Event event{};
    event.type = eventType;
    event.user.code = static_cast<Sint32>(what);
    SDL_PushEvent(&event);
}

Window::Window(SharedFrame& frame, ScreenSize screen, WindowListener listener)
    : m_impl(std::make_unique<Impl>(frame, screen, std::move(listener))) {}

Window::~Window() {
    if (m_impl->thread.joinable()) {
        m_impl->send(Wake::End);
        m_impl->thread.join();
    }
}

Status Window::open(bool fullScreen) {
    std::promise<Status> opened;
    auto answer = opened.get_future();
    auto thread =
        startThread("the window",
                    [this, fullScreen, promise = std::make_shared<std::promise<Status>>(std::move(opened))] {
                        m_impl->run(fullScreen, std::move(*promise));
                    });
    if (!thread) {
        return thread.failure();
    }
    m_impl->thread = std::move(*thread);
    auto status = answer.get();
    if (!status) {
        m_impl->thread.join();
    }
    return status;
}

void Window::wake() {
    m_impl->send(Wake::Frame);
}

} // namespace zm::bench::display
