#include "services/filmer/Fingers.h"

#include <cairo.h>

#include <numbers>

namespace zm::filmer {

namespace {

// How long a finger is still seen where it was lifted: a touch may be over in no time.
constexpr film::Moment Fading = 500 * film::Millisecond;
constexpr double Radius = 22;

// Light with a dark rim, so that it is seen on any page.
void drawFinger(cairo_t* cairo, const film::Finger& finger, double strength) {
    if (finger.fromX != finger.x || finger.fromY != finger.y) {
        cairo_move_to(cairo, finger.fromX, finger.fromY);
        cairo_line_to(cairo, finger.x, finger.y);
        cairo_set_source_rgba(cairo, 0, 0, 0, 0.4 * strength);
        cairo_set_line_width(cairo, 9);
        cairo_stroke_preserve(cairo);
        cairo_set_source_rgba(cairo, 1, 1, 1, 0.9 * strength);
        cairo_set_line_width(cairo, 5);
        cairo_stroke(cairo);
    }
    cairo_arc(cairo, finger.x, finger.y, Radius, 0, 2 * std::numbers::pi);
    cairo_set_source_rgba(cairo, 1, 1, 1, 0.35 * strength);
    cairo_fill_preserve(cairo);
    cairo_set_source_rgba(cairo, 0, 0, 0, 0.6 * strength);
    cairo_set_line_width(cairo, 6);
    cairo_stroke_preserve(cairo);
    cairo_set_source_rgba(cairo, 1, 1, 1, 0.9 * strength);
    cairo_set_line_width(cairo, 3);
    cairo_stroke(cairo);
}

} // namespace

void drawFingers(Image& frame, const film::SharedScreen::Fingers& fingers, film::Moment moment) {
    cairo_surface_t* surface = cairo_image_surface_create_for_data(frame.pixels.data(), CAIRO_FORMAT_RGB24,
                                                                   frame.width, frame.height, frame.stride);
    cairo_t* cairo = cairo_create(surface);
    cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
    for (const auto& finger : fingers) {
        if (finger.lifted > moment) {
            drawFinger(cairo, finger, 1);
        } else if (finger.lifted != 0 && moment - finger.lifted < Fading) {
            drawFinger(cairo, finger,
                       1 - static_cast<double>(moment - finger.lifted) / static_cast<double>(Fading));
        }
    }
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}

} // namespace zm::filmer
