#include "services/bench/display/Painter.h"

#include "services/bench/display/RendererCanvas.h"
#include "services/bench/display/SurfaceCanvas.h"

#include <SDL2/SDL.h>

#include <cstring>
#include <utility>

namespace zm::bench::display {

namespace {

using Renderer = RendererCanvas::Renderer;

// Without a graphics card the drivers for one compute each pixel several times; plain copying is far quicker.
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

std::unique_ptr<Canvas> makeCanvas(SDL_Window* window, ScreenSize screen) {
    Renderer renderer(SDL_CreateRenderer(window, -1, SDL_RENDERER_ACCELERATED | SDL_RENDERER_PRESENTVSYNC));
    if (renderer && !drawsByComputing(renderer.get())) {
        return RendererCanvas::make(std::move(renderer), screen);
    }
    renderer.reset();
    if (SurfaceCanvas::isPossible()) {
        return SurfaceCanvas::make(window, screen);
    }
    renderer.reset(SDL_CreateRenderer(window, -1, SDL_RENDERER_SOFTWARE));
    return renderer ? RendererCanvas::make(std::move(renderer), screen) : nullptr;
}

} // namespace

Painter::Painter(SDL_Window* window, ScreenSize screen) : m_window(window), m_size(screen) {}

Painter::~Painter() = default;

Status Painter::open() {
    m_canvas = makeCanvas(m_window, m_size);
    if (!m_canvas) {
        return Error{SDL_GetError()};
    }
    place();
    return ok();
}

void Painter::place() {
    int width = 0;
    int height = 0;
    SDL_GetWindowSizeInPixels(m_window, &width, &height);
    m_placement = placeScreen(width, height, m_size);
    int windowWidth = 0;
    SDL_GetWindowSize(m_window, &windowWidth, nullptr);
    m_density = windowWidth > 0 ? static_cast<float>(width) / static_cast<float>(windowWidth) : 1.0F;
}

void Painter::beginAnew() {
    place();
    m_canvas->lose();
}

void Painter::upload(const Image& frame, Rect damage) {
    m_canvas->take(frame, damage, m_placement);
}

void Painter::show() {
    m_canvas->show(m_placement);
}

} // namespace zm::bench::display
