#pragma once

#include "services/bench/display/Canvas.h"

#include <memory>

struct SDL_Renderer;
struct SDL_Texture;

namespace zm::bench::display {

/** Drawn by a renderer of SDL's: by the graphics card, with vertical sync. */
class RendererCanvas : public Canvas {
public:
    struct DestroyRenderer {
        void operator()(SDL_Renderer* renderer) const;
    };
    using Renderer = std::unique_ptr<SDL_Renderer, DestroyRenderer>;

    /** Null with SDL's error when the renderer makes no textures. */
    static std::unique_ptr<RendererCanvas> make(Renderer renderer, ScreenSize screen);
    void take(const Image& frame, Rect damage, const Placement& placement) override;
    void show(const Placement& placement) override;
    void lose() override {}

private:
    struct DestroyTexture {
        void operator()(SDL_Texture* texture) const;
    };
    using Texture = std::unique_ptr<SDL_Texture, DestroyTexture>;

    RendererCanvas(Renderer renderer, ScreenSize screen);
    Texture makeTexture(int access, int multiple, const char* quality);

    Renderer m_renderer;
    const ScreenSize m_size;
    Texture m_screen;
    Texture m_enlarged; ///< the screen at a whole multiple; only where it is shown between two of them
    int m_enlargedBy = 0;
};

} // namespace zm::bench::display
