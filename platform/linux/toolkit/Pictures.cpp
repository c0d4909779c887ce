#include "platform/linux/toolkit/Pictures.h"

#include <pango/pangocairo.h>

#include <cmath>

namespace zm {

void Pictures::draw(cairo_t* cairo, int id, int x, int y, int size, const Color& color) {
    if (cairo_surface_t* surface = mask(id, size)) {
        cairo_set_source_rgba(cairo, color.red, color.green, color.blue, color.alpha);
        cairo_mask_surface(cairo, surface, x, y);
    }
}

cairo_surface_t* Pictures::mask(int id, int size) {
    const auto picture = m_resource.pictures.find(id);
    if (picture == m_resource.pictures.end()) {
        return nullptr;
    }
    SurfacePtr& surface = m_masks[{id, size}];
    if (surface) {
        return surface.get();
    }
    surface.reset(cairo_image_surface_create(CAIRO_FORMAT_A8, size, size));
    cairo_t* cairo = cairo_create(surface.get());
    for (const Picture::Layer& layer : picture->second.layers) {
        const double pixels = size * layer.scale;
        LayoutPtr layout;
        if (layer.glyph) {
            layout = m_fonts.glyph(layer.text, pixels);
        } else {
            layout = m_fonts.layout(static_cast<int>(std::lround(pixels)), true);
            pango_layout_set_text(layout.get(), layer.text.c_str(), -1);
        }
        PangoRectangle ink;
        pango_layout_get_pixel_extents(layout.get(), &ink, nullptr);
        PangoRectangle box;
        pango_layout_get_pixel_extents(layout.get(), nullptr, &box);
        // Glyphs of the icon font are centred by their cell, texts by what is seen of them.
        const double middleX = layer.glyph ? box.x + box.width / 2.0 : ink.x + ink.width / 2.0;
        const double middleY = layer.glyph ? box.y + box.height / 2.0 : ink.y + ink.height / 2.0;
        cairo_move_to(cairo, std::round(size * (0.5 + layer.dx) - middleX),
                      std::round(size * (0.5 + layer.dy) - middleY));
        pango_cairo_show_layout(cairo, layout.get());
    }
    cairo_destroy(cairo);
    cairo_surface_flush(surface.get());
    return surface.get();
}

} // namespace zm
