#include "platform/linux/toolkit/Pictures.h"

#include <pango/pangocairo.h>

#include <cmath>

namespace zm {

void Pictures::draw(cairo_t* cairo, int id, int x, int y, int size, int color) {
    const auto& pictures = m_pages.resource().pictures;
    const auto found = pictures.find(id);
    if (found == pictures.end() || color == noColor) {
        return;
    }
    const Picture& picture = found->second;
    const std::vector<SurfacePtr>& layers = masks(id, picture, size);
    for (size_t i = 0; i < layers.size(); ++i) {
        const int own = picture.layers[i].color;
        const Color c = m_pages.color(own == noColor ? color : own);
        cairo_set_source_rgba(cairo, c.red, c.green, c.blue, c.alpha);
        if (picture.layers[i].flips && m_pages.rightToLeft()) {
            cairo_save(cairo);
            cairo_translate(cairo, 2 * x + size, 0);
            cairo_scale(cairo, -1, 1);
            cairo_mask_surface(cairo, layers[i].get(), x, y);
            cairo_restore(cairo);
            continue;
        }
        cairo_mask_surface(cairo, layers[i].get(), x, y);
    }
}

const std::vector<SurfacePtr>& Pictures::masks(int id, const Picture& picture, int size) {
    std::vector<SurfacePtr>& layers = m_masks[{id, size}];
    if (layers.empty()) {
        for (const Picture::Layer& layer : picture.layers) {
            layers.push_back(mask(layer, size));
        }
    }
    return layers;
}

SurfacePtr Pictures::mask(const Picture::Layer& layer, int size) {
    SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_A8, size, size));
    cairo_t* cairo = cairo_create(surface.get());
    const double pixels = size * layer.scale;
    LayoutPtr layout;
    if (layer.glyph) {
        layout = m_fonts.glyph(layer.text, pixels);
    } else {
        layout = m_fonts.layout(static_cast<int>(std::lround(pixels)), true, TextDirection::LeftToRight);
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
    cairo_destroy(cairo);
    cairo_surface_flush(surface.get());
    return surface;
}

} // namespace zm
