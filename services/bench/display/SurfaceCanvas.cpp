#include "services/bench/display/SurfaceCanvas.h"

#include <SDL2/SDL.h>

#include <cstring>
#include <utility>

namespace zm::bench::display {

namespace {

constexpr Uint32 Format = SDL_PIXELFORMAT_RGB888; // B G R and one byte of no meaning, as in a composed frame
constexpr size_t PixelBytes = 4;

void copy(const Image& frame, const Rect& area, SDL_Surface* to, int left, int top) {
    auto* pixels = static_cast<uint8_t*>(to->pixels);
    for (int y = area.y; y < area.y + area.h; ++y) {
        std::memcpy(pixels + static_cast<ptrdiff_t>(top + y) * to->pitch + PixelBytes * (left + area.x),
                    frame.at(area.x, y), PixelBytes * area.w);
    }
}

// A surface may be newer than what is known of the window's size.
bool isPixelForPixel(const Image& frame, const Placement& placement, const SDL_Surface* surface) {
    const Rect& area = placement.area;
    return area.w == frame.width && area.h == frame.height && surface->format->format == Format &&
           area.intersected({0, 0, surface->w, surface->h}) == area;
}

} // namespace

void SurfaceCanvas::FreeSurface::operator()(SDL_Surface* surface) const {
    SDL_FreeSurface(surface);
}

bool SurfaceCanvas::isPossible() {
    const char* system = SDL_GetCurrentVideoDriver();
    return system && std::strcmp(system, "x11") == 0;
}

std::unique_ptr<SurfaceCanvas> SurfaceCanvas::make(SDL_Window* window, ScreenSize screen) {
    // Otherwise SDL shows what was copied by the very driver that is to be avoided.
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    return SDL_GetWindowSurface(window) ? std::unique_ptr<SurfaceCanvas>(new SurfaceCanvas(window, screen))
                                        : nullptr;
}

SurfaceCanvas::Surface SurfaceCanvas::makeSurface(int multiple) const {
    Surface surface(
        SDL_CreateRGBSurfaceWithFormat(0, m_size.width * multiple, m_size.height * multiple, 32, Format));
    if (surface) {
        SDL_SetSurfaceBlendMode(surface.get(), SDL_BLENDMODE_NONE);
    }
    return surface;
}

void SurfaceCanvas::take(const Image& frame, Rect damage, const Placement& placement) {
    m_surface = SDL_GetWindowSurface(m_window);
    if (!m_surface) {
        return;
    }
    const Rect whole{0, 0, m_surface->w, m_surface->h};
    if (std::exchange(m_lost, false)) {
        SDL_FillRect(m_surface, nullptr, 0);
        m_changed = whole;
    }
    if (isPixelForPixel(frame, placement, m_surface)) {
        const Rect& area = placement.area;
        copy(frame, damage, m_surface, area.x, area.y);
        m_changed = m_changed.united({area.x + damage.x, area.y + damage.y, damage.w, damage.h});
        m_screen.reset();
        return;
    }
    Rect taken = damage;
    if (!m_screen) {
        m_screen = makeSurface(1);
        taken = {0, 0, frame.width, frame.height};
    }
    if (m_screen) {
        copy(frame, taken, m_screen.get(), 0, 0);
        m_changed = whole;
    }
}

void SurfaceCanvas::enlarge(const Placement& placement) {
    SDL_Surface* source = m_screen.get();
    if (!placement.exact) {
        const int width = m_size.width * placement.multiple;
        if (!m_enlarged || m_enlarged->w != width) {
            m_enlarged = makeSurface(placement.multiple);
        }
        if (m_enlarged && SDL_BlitScaled(source, nullptr, m_enlarged.get(), nullptr) == 0) {
            source = m_enlarged.get();
        }
    }
    SDL_Rect area{placement.area.x, placement.area.y, placement.area.w, placement.area.h};
    const bool smooth = !placement.exact && m_surface->format->format == Format;
    if (!smooth || SDL_SoftStretchLinear(source, nullptr, m_surface, &area) != 0) {
        SDL_BlitScaled(source, nullptr, m_surface, &area);
    }
}

void SurfaceCanvas::show(const Placement& placement) {
    if (!m_surface || m_changed.empty()) {
        return;
    }
    if (m_screen) {
        enlarge(placement);
    }
    const Rect changed = std::exchange(m_changed, {});
    const SDL_Rect area{changed.x, changed.y, changed.w, changed.h};
    SDL_UpdateWindowSurfaceRects(m_window, &area, 1);
}

} // namespace zm::bench::display
