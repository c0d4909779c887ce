#include "services/bench/display/Painter.h"

#include "services/bench/screen/Compositor.h"

#include <SDL2/SDL.h>

#include <cstring>

namespace zm::bench::display {

namespace {

// Without a graphics card the drivers for one compute each pixel several times; SDL's own copying is far quicker.
bool drawsByComputing(SDL_Renderer* renderer) {
    SDL_RendererInfo info;
    if (SDL_GetRendererInfo(renderer, &info) != 0 || !std::strstr(info.name, "opengl")) {
        return false;
    }
    using GetString = const unsigned char* (*)(unsigned);
    const auto getString = reinterpret_cast<GetString>(SDL_GL_GetProcAddress("glGetString"));
    constexpr unsigned rendererName = 0x1F01;
    const auto* name = getString ? reinterpret_cast<const char*>(getString(rendererName)) : nullptr;
    return name &&
           (std::strstr(name, "llvmpipe") || std::strstr(name, "softpipe") || std::strstr(name, "swrast"));
}

} // namespace

void Painter::DestroyRenderer::operator()(SDL_Renderer* renderer) const {
    SDL_DestroyRenderer(renderer);
}
void Painter::DestroyTexture::operator()(SDL_Texture* texture) const {
    SDL_DestroyTexture(texture);
}

Painter::Painter(SDL_Window* window) : m_window(window) {}

Painter::~Painter() = default;

Status Painter::open() {
    m_renderer.reset(SDL_CreateRenderer(m_window, -1, SDL_RENDERER_ACCELERATED | SDL_RENDERER_PRESENTVSYNC));
    if (!m_renderer || drawsByComputing(m_renderer.get())) {
        m_renderer.reset();
        m_renderer.reset(SDL_CreateRenderer(m_window, -1, SDL_RENDERER_SOFTWARE));
    }
    if (m_renderer) {
        m_screen = makeTexture(SDL_TEXTUREACCESS_STREAMING, 1, "nearest");
    }
    if (!m_screen) {
        return Error{SDL_GetError()};
    }
    place();
    return ok();
}

Painter::Texture Painter::makeTexture(int access, int multiple, const char* quality) {
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, quality);
    Texture texture(SDL_CreateTexture(m_renderer.get(), SDL_PIXELFORMAT_ARGB8888, access,
                                      screen::Compositor::Width * multiple,
                                      screen::Compositor::Height * multiple));
    if (texture) {
        // The fourth byte of a composed frame says nothing.
        SDL_SetTextureBlendMode(texture.get(), SDL_BLENDMODE_NONE);
    }
    return texture;
}

void Painter::place() {
    int width = 0;
    int height = 0;
    SDL_GetRendererOutputSize(m_renderer.get(), &width, &height);
    m_placement = placeScreen(width, height);
    int windowWidth = 0;
    SDL_GetWindowSize(m_window, &windowWidth, nullptr);
    m_density = windowWidth > 0 ? static_cast<float>(width) / static_cast<float>(windowWidth) : 1.0F;
}

void Painter::upload(const Image& frame, Rect damage) {
    const SDL_Rect area{damage.x, damage.y, damage.w, damage.h};
    SDL_UpdateTexture(m_screen.get(), &area, frame.at(damage.x, damage.y), frame.stride);
}

void Painter::show() {
    place();
    SDL_Renderer* renderer = m_renderer.get();
    SDL_Texture* source = m_screen.get();
    if (!m_placement.exact) {
        if (m_enlargedBy != m_placement.multiple) {
            m_enlarged = makeTexture(SDL_TEXTUREACCESS_TARGET, m_placement.multiple, "linear");
            m_enlargedBy = m_enlarged ? m_placement.multiple : 0;
        }
        if (m_enlarged && SDL_SetRenderTarget(renderer, m_enlarged.get()) == 0) {
            SDL_RenderCopy(renderer, source, nullptr, nullptr);
            SDL_SetRenderTarget(renderer, nullptr);
            source = m_enlarged.get();
        }
    }
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, 255);
    SDL_RenderClear(renderer);
    const SDL_Rect area{m_placement.area.x, m_placement.area.y, m_placement.area.w, m_placement.area.h};
    SDL_RenderCopy(renderer, source, nullptr, &area);
    SDL_RenderPresent(renderer);
}

} // namespace zm::bench::display
