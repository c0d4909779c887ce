#pragma once

#include "base/Image.h"
#include "base/Rect.h"
#include "base/Result.h"
#include "services/bench/display/Placement.h"

#include <memory>
#include <string>

struct SDL_Window;
struct SDL_Renderer;
struct SDL_Texture;

namespace zm::bench::display {

/**
 * Draws the screen into a window: pixel for pixel at a whole multiple of its size, else sharp, first at the next whole multiple
 * and then smoothly smaller. By the graphics card where there is one, with vertical sync. On the thread that made it.
 */
class Painter {
public:
    explicit Painter(SDL_Window* window);
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    /** Must be called first; the error is SDL's. */
    Status open();
    /** Takes over the pixels inside `damage`; nothing is shown yet. */
    void upload(const Image& frame, Rect damage);
    /** Shows all. Waits for the screen's vertical sync where a graphics card has one. */
    void show();
    /** Where the screen lies; in the pixels of the window's surface. */
    const Placement& placement() const { return m_placement; }
    /** Pixels of the surface for one of the window's own units. */
    float density() const { return m_density; }

private:
    struct DestroyRenderer {
        void operator()(SDL_Renderer* renderer) const;
    };
    struct DestroyTexture {
        void operator()(SDL_Texture* texture) const;
    };
    using Texture = std::unique_ptr<SDL_Texture, DestroyTexture>;

    void place();
    Texture makeTexture(int access, int multiple, const char* quality);

    SDL_Window* m_window;
    std::unique_ptr<SDL_Renderer, DestroyRenderer> m_renderer;
    Texture m_screen;
    Texture m_enlarged; ///< the screen at a whole multiple; only where it is shown between two of them
    int m_enlargedBy = 0;
    Placement m_placement;
    float m_density = 1;
};

} // namespace zm::bench::display
