#pragma once

#include "platform/linux/toolkit/FontBook.h"
#include "platform/linux/toolkit/Resource.h"

#include <cairo.h>

#include <map>
#include <memory>
#include <utility>

namespace zm {

struct SurfaceDelete {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, SurfaceDelete>;

/** The pictures of a resource as masks, drawn once for each size and then filled with any colour. */
class Pictures {
public:
    Pictures(const Resource& resource, FontBook& fonts) : m_resource(resource), m_fonts(fonts) {}

    /** Draws into the square at (x, y); an unknown picture draws nothing. */
    void draw(cairo_t* cairo, int id, int x, int y, int size, const Color& color);

private:
    cairo_surface_t* mask(int id, int size);

    const Resource& m_resource;
    FontBook& m_fonts;
    std::map<std::pair<int, int>, SurfacePtr> m_masks;
};

} // namespace zm
