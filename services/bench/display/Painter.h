#pragma once

#include "base/Image.h"
#include "base/Rect.h"
#include "base/Result.h"
#include "services/bench/display/Canvas.h"

#include <memory>

struct SDL_Window;

namespace zm::bench::display {

/**
 * Draws the screen into a window: pixel for pixel at a whole multiple of its size, else sharp, first at the next whole multiple
 * and then smoothly smaller. By the graphics card where there is one, with vertical sync. On the thread that made it.
 */
class Painter {
public:
    Painter(SDL_Window* window, ScreenSize screen);
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    /** Must be called first; the error is SDL's. */
    Status open();
    /** What was shown is lost, or the window has another size: what is uploaded next is all. */
    void beginAnew();
    /** Takes over the pixels inside `damage`; nothing is shown yet. */
    void upload(const Image& frame, Rect damage);
    /** Shows all. Waits for the screen's vertical sync where a graphics card has one. */
    void show();
    /** Where the screen lies; in the pixels of the window's surface. */
    const Placement& placement() const { return m_placement; }
    /** Pixels of the surface for one of the window's own units. */
    float density() const { return m_density; }

private:
    void place();

    SDL_Window* m_window;
    const ScreenSize m_size;
    std::unique_ptr<Canvas> m_canvas;
    Placement m_placement;
    float m_density = 1;
};

} // namespace zm::bench::display
