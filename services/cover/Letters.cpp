#include "services/cover/Letters.h"

#include "services/cover/Output.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <memory>
#include <vector>

namespace zm::cover {

namespace {

struct Color {
    double red;
    double green;
    double blue;
};

std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> squareOf(int side) {
    return {cairo_image_surface_create(CAIRO_FORMAT_RGB24, side, side), cairo_surface_destroy};
}

Result<Color> colorOf(const std::string& text) {
    unsigned value = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value, 16);
    if (text.size() != 6 || parsed.ec != std::errc() || parsed.ptr != end) {
        return Error{text + ": expected a colour as RRGGBB"};
    }
    return Color{((value >> 16) & 255) / 255.0, ((value >> 8) & 255) / 255.0, (value & 255) / 255.0};
}

// The unit's own fonts, where it says which they are. Most letters are in a small one.
void useFonts(const std::string& letters) {
    const char* folder = std::getenv("ZM_FONT_PATH");
    if (!folder || !*folder) {
        return;
    }
    constexpr gunichar FirstOfOtherScripts = 0x0590;
    bool small = true;
    for (const char* at = letters.c_str(); *at; at = g_utf8_next_char(at)) {
        small = small && g_utf8_get_char(at) < FirstOfOtherScripts;
    }
    FcConfig* config = FcConfigCreate();
    const std::string font = std::string(folder) + "/NotoSans-Bold.ttf";
    const auto* name = reinterpret_cast<const FcChar8*>(small ? font.c_str() : folder);
    if (small ? FcConfigAppFontAddFile(config, name) : FcConfigAppFontAddDir(config, name)) {
        FcConfigSetCurrent(config);
    }
    FcConfigDestroy(config);
}

// Light comes from above, as on all that is round and lies flat.
void paintTile(cairo_t* cairo, int side, const Color& color) {
    cairo_set_source_rgb(cairo, color.red, color.green, color.blue);
    cairo_paint(cairo);
    cairo_pattern_t* shade = cairo_pattern_create_linear(0, 0, 0, side);
    cairo_pattern_add_color_stop_rgba(shade, 0, 1, 1, 1, 0.06);
    cairo_pattern_add_color_stop_rgba(shade, 1, 0, 0, 0, 0.18);
    cairo_set_source(cairo, shade);
    cairo_paint(cairo);
    cairo_pattern_destroy(shade);
    // The grooves of a record, which say that this is music.
    cairo_set_source_rgba(cairo, 1, 1, 1, 0.10);
    cairo_set_line_width(cairo, side / 160.0);
    for (const double radius : {0.62, 0.78, 0.94, 1.10}) {
        cairo_new_path(cairo);
        cairo_arc(cairo, side, side, side * radius, 0, 6.2832);
        cairo_stroke(cairo);
    }
}

void paintLetters(cairo_t* cairo, int side, const std::string& letters) {
    const std::unique_ptr<PangoLayout, decltype(&g_object_unref)> layout(pango_cairo_create_layout(cairo),
                                                                         g_object_unref);
    const std::unique_ptr<PangoFontDescription, decltype(&pango_font_description_free)> font(
        pango_font_description_from_string("Noto Sans, Noto Sans CJK SC, Noto Sans Arabic Bold"),
        pango_font_description_free);
    pango_font_description_set_absolute_size(font.get(), side * 0.42 * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_text(layout.get(), letters.data(), static_cast<int>(letters.size()));
    PangoRectangle ink;
    pango_layout_get_pixel_extents(layout.get(), &ink, nullptr);
    // Wide letters get smaller; what is seen of them stands in the middle.
    const double most = side * 0.72;
    const double scale = std::min(1.0, most / std::max({1, ink.width, ink.height}));
    cairo_translate(cairo, side / 2.0, side / 2.0);
    cairo_scale(cairo, scale, scale);
    cairo_move_to(cairo, -ink.x - ink.width / 2.0, -ink.y - ink.height / 2.0);
    cairo_set_source_rgb(cairo, 1, 1, 1);
    pango_cairo_show_layout(cairo, layout.get());
}

} // namespace

Status drawLetters(int side, const std::string& color, const std::string& letters) {
    const auto ground = colorOf(color);
    if (!ground) {
        return ground.failure();
    }
    if (!g_utf8_validate(letters.data(), static_cast<gssize>(letters.size()), nullptr)) {
        return Error{"letters that are no UTF-8"};
    }
    useFonts(letters);
    const auto surface = squareOf(side);
    cairo_t* cairo = cairo_create(surface.get());
    paintTile(cairo, side, *ground);
    paintLetters(cairo, side, letters);
    cairo_destroy(cairo);
    cairo_surface_flush(surface.get());
    const uint8_t* rows = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    std::vector<uint8_t> pixels;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const uint8_t* from = rows + static_cast<ptrdiff_t>(y) * stride + x * 4;
            pixels.insert(pixels.end(), {from[2], from[1], from[0], 255});
        }
    }
    return writePicture(static_cast<uint32_t>(side), static_cast<uint32_t>(side), pixels.data());
}

} // namespace zm::cover
