#include "services/bench/display/RendererCanvas.h"

#include <SDL2/SDL.h>

#include <utility>

namespace zm::bench::display {

void RendererCanvas::DestroyRenderer::operator()(SDL_Renderer* renderer) const {
    SDL_DestroyRenderer(renderer);
}
void RendererCanvas::DestroyTexture::operator()(SDL_Texture* texture) const {
    SDL_DestroyTexture(texture);
}

std::unique_ptr<RendererCanvas> RendererCanvas::make(Renderer renderer, ScreenSize screen) {
    std::unique_ptr<RendererCanvas> canvas(new RendererCanvas(std::move(renderer), screen));
    return canvas->m_screen ? std::move(canvas) : nullptr;
}

RendererCanvas::RendererCanvas(Renderer renderer, ScreenSize screen)
    : m_renderer(std::move(renderer)), m_size(screen),
      m_screen(makeTexture(SDL_TEXTUREACCESS_STREAMING, 1, "nearest")) {}

RendererCanvas::Texture RendererCanvas::makeTexture(int access, int multiple, const char* quality) {
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, quality);
    Texture texture(SDL_CreateTexture(m_renderer.get(), SDL_PIXELFORMAT_ARGB8888, access,
                                      m_size.width * multiple, m_size.height * multiple));
    if (texture) {
        // The fourth byte of a composed frame says nothing.
        SDL_SetTextureBlendMode(texture.get(), SDL_BLENDMODE_NONE);
    }
    return texture;
}

void RendererCanvas::take(const Image& frame, Rect damage, const Placement&) {
    const SDL_Rect area{damage.x, damage.y, damage.w, damage.h};
    SDL_UpdateTexture(m_screen.get(), &area, frame.at(damage.x, damage.y), frame.stride);
}

void RendererCanvas::show(const Placement& placement) {
    SDL_Renderer* renderer = m_renderer.get();
    SDL_Texture* source = m_screen.get();
    if (!placement.exact) {
        if (m_enlargedBy != placement.multiple) {
            m_enlarged = makeTexture(SDL_TEXTUREACCESS_TARGET, placement.multiple, "linear");
            m_enlargedBy = m_enlarged ? placement.multiple : 0;
        }
        if (m_enlarged && SDL_SetRenderTarget(renderer, m_enlarged.get()) == 0) {
            SDL_RenderCopy(renderer, source, nullptr, nullptr);
            SDL_SetRenderTarget(renderer, nullptr);
            source = m_enlarged.get();
        }
    }
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, 255);
    SDL_RenderClear(renderer);
    const SDL_Rect area{placement.area.x, placement.area.y, placement.area.w, placement.area.h};
    SDL_RenderCopy(renderer, source, nullptr, &area);
    SDL_RenderPresent(renderer);
}

} // namespace zm::bench::display
