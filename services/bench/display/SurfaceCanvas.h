#pragma once

#include "services/bench/display/Canvas.h"

#include <memory>

struct SDL_Surface;
struct SDL_Window;

namespace zm::bench::display {

/** Drawn by copying into the memory that the window system shows, without any graphics card. */
class SurfaceCanvas : public Canvas {
public:
    /** Whether the window system of `window` has such memory; where it has not, SDL would draw it by a card's driver. */
    static bool isPossible();
    /** Null with SDL's error when there is no such memory. */
    static std::unique_ptr<SurfaceCanvas> make(SDL_Window* window, ScreenSize screen);
    void take(const Image& frame, Rect damage, const Placement& placement) override;
    void show(const Placement& placement) override;
    void lose() override { m_lost = true; }

private:
    struct FreeSurface {
        void operator()(SDL_Surface* surface) const;
    };
    using Surface = std::unique_ptr<SDL_Surface, FreeSurface>;

    SurfaceCanvas(SDL_Window* window, ScreenSize screen) : m_window(window), m_size(screen) {}
    Surface makeSurface(int multiple) const;
    void enlarge(const Placement& placement);

    SDL_Window* m_window;
    const ScreenSize m_size;
    SDL_Surface* m_surface = nullptr; ///< SDL's, until the window gets another size
    Surface m_screen;                 ///< the screen; only where it is not shown pixel for pixel
    Surface m_enlarged; ///< the screen at a whole multiple; only where it is shown between two of them
    bool m_lost = true;
    Rect m_changed; ///< of the surface; to be shown
};

} // namespace zm::bench::display
