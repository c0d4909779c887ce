#pragma once

#include "platform/linux/toolkit/FontBook.h"
#include "platform/linux/toolkit/Pages.h"

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
    Pictures(const Pages& pages, FontBook& fonts) : m_pages(pages), m_fonts(fonts) {}

    /**
     * Draws into the square at (x, y), layers without a colour of their own in `color`. An unknown picture
     * and the colour `noColor` draw nothing.
     */
    void draw(cairo_t* cairo, int id, int x, int y, int size, int color);

private:
    const std::vector<SurfacePtr>& masks(int id, const Picture& picture, int size);
    SurfacePtr mask(const Picture::Layer& layer, int size);

    const Pages& m_pages;
    FontBook& m_fonts;
    std::map<std::pair<int, int>, std::vector<SurfacePtr>> m_masks; ///< by picture and size: its layers
};

} // namespace zm
