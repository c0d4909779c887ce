#include "platform/linux/toolkit/Painter.h"
#include "platform/linux/toolkit/TimeText.h"

#include "platform/linux/toolkit/Backdrop.h"
#include "platform/linux/toolkit/Tint.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zm {

bool Painter::onPage(const Item& item) const {
    return of(item).visible && (!item.parent || onPage(*item.parent));
}

bool Painter::disabled(const Item& item) const {
    return !of(item).enabled || (item.parent && disabled(*item.parent));
}

void Painter::source(int color) {
    const Color c = m_pages.color(color);
    cairo_set_source_rgba(m_cairo, c.red, c.green, c.blue, c.alpha);
}

void Painter::paint(cairo_t* cairo, const Rect& area, Contents contents) {
    m_cairo = cairo;
    m_contents = contents;
    cairo_save(m_cairo);
    cairo_rectangle(m_cairo, area.x, area.y, area.w, area.h);
    cairo_clip(m_cairo);
    cairo_set_operator(m_cairo, CAIRO_OPERATOR_CLEAR);
    cairo_paint(m_cairo);
    cairo_set_operator(m_cairo, CAIRO_OPERATOR_OVER);
    for (const Window* window : m_pages.shown()) {
        paintWindow(*window, area);
    }
    if (const auto& leaving = m_motion.leaving()) {
        paintLeaving(*leaving, area);
    }
    cairo_restore(m_cairo);
}

void Painter::paintWindow(const Window& window, const Rect& area) {
    m_pages.paletteOf(window);
    if (window.spec.background != noColor) {
        paintBackground(window.spec);
    }
    for (const auto& item : window.items) {
        if (!item->spec.rect.intersected(area).empty() && onPage(*item)) {
            cairo_save(m_cairo);
            paintItem(*item, area);
            cairo_restore(m_cairo);
        }
    }
}

void Painter::paintBackground(const WindowSpec& window) {
    const Bound* tint = window.tint.empty() ? nullptr : m_pages.bound(window.tint);
    if (!tint || !tint->color) {
        source(window.background);
        cairo_paint(m_cairo);
        return;
    }
    const Color page = m_pages.color(window.background);
    const SurfacePtr surface = backdrop(tinted(page, *tint->color), page, m_pages.screen().h);
    cairo_set_source_surface(m_cairo, surface.get(), 0, 0);
    cairo_pattern_set_extend(cairo_get_source(m_cairo), CAIRO_EXTEND_REPEAT);
    cairo_paint(m_cairo);
}

void Painter::paintLeaving(const Motion::Leaving& leaving, const Rect& area) {
    m_contents = Contents::Drawn; // what is set on a hidden page is not to be seen
    cairo_push_group(m_cairo);
    paintWindow(*leaving.window, m_pages.screen());
    cairo_pop_group_to_source(m_cairo);
    cairo_pattern_t* picture = cairo_get_source(m_cairo);
    cairo_matrix_t back;
    cairo_matrix_init_translate(&back, 0, -std::round(leaving.slide * leaving.done));
    cairo_pattern_set_matrix(picture, &back);
    cairo_rectangle(m_cairo, area.x, area.y, area.w, area.h);
    cairo_clip(m_cairo);
    cairo_paint_with_alpha(m_cairo, 1 - leaving.done);
}

Painter::Appearance Painter::appearance(const Item& item) const {
    const Style& style = m_pages.style(item);
    const bool selected = of(item).state == StateSelected;
    if (disabled(item)) {
        return {style.look(LookState::Disabled), selected ? StateSelected : StateNormal};
    }
    if (item.pressed) {
        Appearance result{style.look(LookState::Pressed), StatePressed};
        result.look.marker = selected ? style.look(LookState::Selected).marker : result.look.marker;
        return result;
    }
    return selected ? Appearance{style.look(LookState::Selected), StateSelected}
                    : Appearance{style.look(LookState::Normal), StateNormal};
}

int Painter::pictureOf(const Item& item, int buttonState) const {
    const Bound* bound = item.spec.value.empty() ? nullptr : m_pages.bound(item.spec.value);
    const auto& pictures = item.spec.pictureOfValue;
    const auto found = bound ? pictures.find(bound->text) : pictures.end();
    return found == pictures.end() ? of(item).icon(buttonState) : found->second;
}

void Painter::paintItem(Item& item, const Rect& area) {
    const Rect& box = item.spec.rect;
    switch (item.spec.kind) {
    case ItemKind::Progress:
        return paintProgress(item);
    case ItemKind::Animation:
        return paintAnimation(item);
    case ItemKind::List:
        return paintList(item, area);
    case ItemKind::Panel:
        return paintPanel(box, m_pages.style(item), appearance(item).look);
    case ItemKind::Text:
    case ItemKind::Icon:
    case ItemKind::Button:
        if (const Bound* bound = item.spec.bound.empty() ? nullptr : m_pages.bound(item.spec.bound);
            bound && bound->picture) {
            return paintPicture(item, bound->picture, appearance(item).look);
        }
        return paintLabel(item);
    }
}

void Painter::roundedPath(const Rect& box, double radius, double inset) {
    constexpr double quarter = std::numbers::pi / 2;
    const double left = box.x + inset;
    const double top = box.y + inset;
    const double right = box.x + box.w - inset;
    const double bottom = box.y + box.h - inset;
    const double r = std::clamp(radius - inset, 0.0, std::min(right - left, bottom - top) / 2);
    cairo_new_sub_path(m_cairo);
    if (r <= 0) {
        cairo_rectangle(m_cairo, left, top, right - left, bottom - top);
        return;
    }
    cairo_arc(m_cairo, right - r, top + r, r, -quarter, 0);
    cairo_arc(m_cairo, right - r, bottom - r, r, 0, quarter);
    cairo_arc(m_cairo, left + r, bottom - r, r, quarter, 2 * quarter);
    cairo_arc(m_cairo, left + r, top + r, r, 2 * quarter, 3 * quarter);
    cairo_close_path(m_cairo);
}

void Painter::paintBox(const Rect& box, const Style& style, const Look& look) {
    if (look.fill != noColor) {
        roundedPath(box, style.radius, 0);
        source(look.fill);
        cairo_fill(m_cairo);
    }
    if (look.border != noColor && look.borderWidth > 0) {
        roundedPath(box, style.radius, look.borderWidth / 2.0);
        source(look.border);
        cairo_set_line_width(m_cairo, look.borderWidth);
        const std::array<double, 2> dashes = {1.0 * pixels(8), 1.0 * pixels(6)};
        cairo_set_dash(m_cairo, dashes.data(), look.dashed ? static_cast<int>(dashes.size()) : 0, 0);
        cairo_stroke(m_cairo);
    }
}

void Painter::paintPanel(const Rect& box, const Style& style, const Look& look) {
    if ((style.fadeTop == 0 && style.fadeBottom == 0) || look.fill == noColor) {
        return paintBox(box, style, look);
    }
    const Color c = m_pages.color(look.fill);
    cairo_pattern_t* veil = cairo_pattern_create_linear(0, box.y, 0, box.y + box.h);
    const auto stop = [&](int pixels, double alpha) {
        cairo_pattern_add_color_stop_rgba(veil, static_cast<double>(pixels) / box.h, c.red, c.green, c.blue,
                                          alpha);
    };
    stop(0, style.fadeTop > 0 ? 0 : c.alpha);
    stop(style.fadeTop, c.alpha);
    stop(box.h - style.fadeBottom, c.alpha);
    stop(box.h, style.fadeBottom > 0 ? 0 : c.alpha);
    cairo_rectangle(m_cairo, box.x, box.y, box.w, box.h);
    cairo_set_source(m_cairo, veil);
    cairo_fill(m_cairo);
    cairo_pattern_destroy(veil);
}

// As large as its place allows, with the corners of its style and a thin line where it ends: a sleeve may be as black as
// the page.
void Painter::paintPicture(const Item& item, const PictureFilePtr& picture, const Look& look) {
    const Style& style = m_pages.style(item);
    const auto [surface, box] = m_scaled.fitted(picture, item.spec.rect);
    cairo_save(m_cairo);
    roundedPath(box, style.radius, 0);
    cairo_clip(m_cairo);
    cairo_set_source_surface(m_cairo, surface, box.x, box.y);
    cairo_paint(m_cairo);
    cairo_restore(m_cairo);
    if (look.border != noColor) {
        constexpr double edge = 0.4;
        const Color line = m_pages.color(look.border);
        const double thin = pixels(1);
        roundedPath(box, style.radius, thin / 2);
        cairo_set_source_rgba(m_cairo, line.red, line.green, line.blue, line.alpha * edge);
        cairo_set_line_width(m_cairo, thin);
        cairo_stroke(m_cairo);
    }
}

void Painter::paintMarker(const Rect& box, const Look& look, bool mirrored) {
    const int thickness = pixels(6);
    const int inset = pixels(4);
    Rect bar;
    switch (look.marker) {
    case Marker::None:
        return;
    case Marker::Start:
        bar = {mirrored ? box.x + box.w - thickness - inset : box.x + inset, box.y + box.h / 5, thickness,
               box.h - 2 * (box.h / 5)};
        break;
    case Marker::Bottom:
        bar = {box.x + box.w / 4, box.y + box.h - thickness - inset, box.w - 2 * (box.w / 4), thickness};
        break;
    }
    roundedPath(bar, thickness / 2.0, 0);
    source(look.icon);
    cairo_fill(m_cairo);
}

void Painter::paintProgress(Item& item) {
    const Style& style = m_pages.style(item);
    const Look look = appearance(item).look;
    const Rect box{item.spec.rect.x, item.spec.rect.y + style.bubble, item.spec.rect.w,
                   item.spec.rect.h - style.bubble};
    // The part done is thicker than the rest: seen without colour, too.
    const Rect track{box.x + style.padding, box.y + (box.h - style.thickness) / 2, box.w - 2 * style.padding,
                     style.thickness};
    roundedPath(track, style.thickness / 2.0, style.thickness / 4.0);
    source(look.fill);
    cairo_fill(m_cairo);
    const ProgressValue& value = of(item).progress;
    const double shown = value == item.drawn.progress ? item.progressShown : value.position;
    const double range = std::max(1, value.maximum - value.minimum);
    const double part = std::clamp((shown - value.minimum) / range, 0.0, 1.0);
    const double end = style.thickness / 2.0;
    const double y = box.y + box.h / 2.0;
    const double way = track.w - style.thickness;
    const double begin = track.x + end;
    const bool backwards = m_pages.rightToLeft() && item.spec.mirrors;
    const auto at = [&](double done) { return begin + way * (backwards ? 1 - done : done); };
    cairo_set_line_width(m_cairo, style.thickness);
    cairo_set_line_cap(m_cairo, CAIRO_LINE_CAP_ROUND);
    cairo_move_to(m_cairo, at(0), y);
    cairo_line_to(m_cairo, at(part), y);
    source(look.icon);
    cairo_stroke(m_cairo);
    if (item.pressed) {
        const double finger = std::clamp((item.fingerX - begin) / way, 0.0, 1.0);
        paintKnob(item, begin + way * finger, y, backwards ? 1 - finger : finger);
    }
}

void Painter::paintKnob(Item& item, double x, double y, double part) {
    const Style& style = m_pages.style(item);
    const Look& look = style.look(LookState::Pressed);
    cairo_new_path(m_cairo);
    cairo_arc(m_cairo, x, y, style.thickness * 1.25, 0, 2 * std::numbers::pi);
    source(look.icon);
    cairo_fill(m_cairo);
    const Item* total = item.window.find(item.spec.total);
    const int whole = total ? secondsOf(of(*total).text) : 0;
    if (whole == 0) {
        return;
    }
    const Line line{timeText(static_cast<int>(whole * part)), TextDirection::LeftToRight};
    const int wide = naturalWidth(item.kept, line, style, look.bold) + 2 * style.gap;
    const Rect& rect = item.spec.rect;
    const int left = std::clamp(static_cast<int>(x) - wide / 2, rect.x, rect.x + rect.w - wide);
    const Rect box{left, rect.y, wide, style.bubble};
    paintBox(box, style, {.fill = look.border});
    paintText(item.kept, line, box, style, look, Align::Center);
}

void Painter::paintAnimation(const Item& item) {
    const Style& style = m_pages.style(item);
    const Look look = appearance(item).look;
    const Rect& box = item.spec.rect;
    const double radius = (std::min(box.w, box.h) - style.thickness) / 2.0;
    const double x = box.x + box.w / 2.0;
    const double y = box.y + box.h / 2.0;
    cairo_set_line_width(m_cairo, style.thickness);
    cairo_set_line_cap(m_cairo, CAIRO_LINE_CAP_ROUND);
    cairo_new_path(m_cairo);
    cairo_arc(m_cairo, x, y, radius, 0, 2 * std::numbers::pi);
    source(look.fill);
    cairo_stroke(m_cairo);
    const double start = (m_motion.busyTurn() * 2 - 0.5) * std::numbers::pi;
    cairo_arc(m_cairo, x, y, radius, start, start + std::numbers::pi / 2);
    source(look.icon);
    cairo_stroke(m_cairo);
}

} // namespace zm
