#include "services/bench/PlainPage.h"

#include <cairo.h>

#include <array>
#include <memory>

namespace zm {

namespace {

struct Name {
    const char* application;
    const char* title;
};

constexpr std::array<Name, 9> Names = {{
    {"zmhome", "Home"},
    {"zmradio", "Radio"},
    {"zmusb", "USB"},
    {"zmbttel", "Telephone"},
    {"zmnavi", "Navigation"},
    {"zmasr", "Voice"},
    {"zmaux1", "AUX"},
    {"zmaircond", "Climate"},
    {"zmeq", "Equaliser"},
}};

std::string title(const std::string& application) {
    for (const auto& name : Names) {
        if (application == name.application) {
            return name.title;
        }
    }
    return application;
}

void centred(cairo_t* context, const std::string& text, double x, double y, double size) {
    cairo_set_font_size(context, size);
    cairo_text_extents_t extents;
    cairo_text_extents(context, text.c_str(), &extents);
    cairo_move_to(context, x - extents.width / 2 - extents.x_bearing,
                  y - extents.height / 2 - extents.y_bearing);
    cairo_show_text(context, text.c_str());
}

} // namespace

Image drawPlainPage(const std::string& application) {
    Image page(Compositor::Width, Compositor::Height);
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_for_data(page.pixels.data(), CAIRO_FORMAT_ARGB32, page.width, page.height,
                                            page.stride),
        cairo_surface_destroy);
    const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                                     cairo_destroy);
    cairo_t* c = context.get();
    cairo_set_source_rgb(c, 0.07, 0.08, 0.10);
    cairo_paint(c);
    cairo_select_font_face(c, "Noto Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_source_rgb(c, 0.92, 0.94, 0.96);
    centred(c, title(application), page.width / 2.0, 180, 56);
    const Rect& area = PlainPageReturn;
    cairo_rectangle(c, area.x, area.y, area.w, area.h);
    cairo_set_source_rgb(c, 0.16, 0.36, 0.56);
    cairo_fill(c);
    cairo_set_source_rgb(c, 1, 1, 1);
    centred(c, "Disc", area.x + area.w / 2.0, area.y + area.h / 2.0, 32);
    cairo_surface_flush(surface.get());
    return page;
}

} // namespace zm
