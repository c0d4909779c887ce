// Labels: boxes with a picture and a text.

#include "platform/linux/toolkit/Painter.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>

namespace zm {

namespace {

/**
 * Where a text begins in a box of that height. One line stands with its capitals in the middle, whatever the
 * script, so that texts side by side share a line; several lines are centred as a block.
 */
int topOfText(PangoLayout* layout, int boxHeight, const Style& style) {
    constexpr double halfCapital = 0.357;
    if (style.lines > 1) {
        int height = 0;
        pango_layout_get_pixel_size(layout, nullptr, &height);
        return (boxHeight - height) / 2;
    }
    const int baseline = PANGO_PIXELS(pango_layout_get_baseline(layout));
    return static_cast<int>(std::lround(boxHeight / 2.0 + halfCapital * style.textSize)) - baseline;
}

/** Of a text such as "1/3 English" the bytes of "1/3"; 0 where it begins otherwise or nothing follows. */
size_t lengthOfCount(const std::string& text) {
    const size_t end = text.find_first_not_of("0123456789/");
    const size_t slash = text.find('/');
    const bool counts = end != std::string::npos && text[end] == ' ' && slash != std::string::npos &&
                        slash > 0 && slash + 1 < end;
    return counts && text.find_first_not_of(' ', end) != std::string::npos ? end : 0;
}

} // namespace

PangoLayout* Painter::prepare(KeptLayout& kept, const Line& line, const Style& style, bool bold) {
    if (!kept.layout || kept.bold != bold || kept.direction != line.direction) {
        kept = {m_fonts.layout(style.textSize, bold, line.direction), {}, bold, line.direction};
    }
    if (kept.text != line.text) {
        kept.text = line.text;
        const std::string shown = drawable(line.text + style.suffix);
        m_fonts.prepare(shown);
        pango_layout_set_text(kept.layout.get(), shown.c_str(), static_cast<int>(shown.size()));
        kept.width = 0;
        kept.natural = -1;
    }
    return kept.layout.get();
}

int Painter::naturalWidth(KeptLayout& kept, const Line& line, const Style& style, bool bold) {
    PangoLayout* layout = prepare(kept, line, style, bold);
    pango_layout_set_width(layout, -1);
    kept.width = 0;
    int width = 0;
    pango_layout_get_pixel_size(layout, &width, nullptr);
    return width;
}

void Painter::paintText(KeptLayout& kept, const Line& line, const Rect& box, const Style& style,
                        const Look& look, Align align) {
    if (line.text.empty() || look.text == noColor || box.empty()) {
        return;
    }
    PangoLayout* layout = prepare(kept, line, style, look.bold);
    if (kept.width != box.w) {
        kept.width = box.w;
        pango_layout_set_width(layout, box.w * PANGO_SCALE);
        pango_layout_set_height(layout, style.lines == 1 ? 0 : -style.lines);
        pango_layout_set_single_paragraph_mode(layout, TRUE);
    }
    const bool right = align == Align::Right || align == (m_pages.rightToLeft() ? Align::Start : Align::End);
    pango_layout_set_alignment(layout, align == Align::Center ? PANGO_ALIGN_CENTER
                                       : right                ? PANGO_ALIGN_RIGHT
                                                              : PANGO_ALIGN_LEFT);
    source(look.text);
    cairo_move_to(m_cairo, box.x, box.y + topOfText(layout, box.h, style));
    pango_cairo_show_layout(m_cairo, layout);
}

void Painter::paintRunning(Item& item, const Line& line, const Rect& box, const Style& style,
                           const Look& look) {
    PangoLayout* layout = prepare(item.kept, line, style, look.bold);
    if (item.kept.natural < 0) {
        item.kept.natural = naturalWidth(item.kept, line, style, look.bold);
    }
    item.overhang = std::max(0, item.kept.natural - box.w);
    const double offset = m_motion.titles().offset(item);
    if (offset <= 0) {
        return paintText(item.kept, line, box, style, look, style.align);
    }
    if (item.kept.width != -1) {
        item.kept.width = -1;
        pango_layout_set_width(layout, -1);
        pango_layout_set_alignment(layout, PANGO_ALIGN_LEFT);
    }
    source(look.text);
    const bool backwards = line.direction == TextDirection::RightToLeft;
    cairo_move_to(m_cairo, backwards ? box.x - item.overhang + offset : box.x - offset,
                  box.y + topOfText(layout, box.h, style));
    pango_cairo_show_layout(m_cairo, layout);
}

Painter::Line Painter::lineOf(const Item& item) const {
    if (item.spec.kind == ItemKind::Icon) {
        return {{}, TextDirection::LeftToRight};
    }
    // Texts of the resource belong to the language; names and numbers that the application sets do not.
    const Content& content = of(item);
    return {content.text, content.textId != 0 ? ofLanguage() : directionOf(content.text)};
}

void Painter::paintChips(Item& item, Line line, const Style& style, const Look& look) {
    const size_t count = lengthOfCount(line.text);
    const size_t words = line.text.find_first_not_of(' ', count);
    Rect box = item.spec.rect;
    const bool backwards = m_pages.rightToLeft() && item.spec.mirrors;
    int room = box.w;
    const auto chip = [&](KeptLayout& kept, const Line& part) {
        const int width = naturalWidth(kept, part, style, look.bold) + 1 + 2 * style.padding;
        const Rect& whole = item.spec.rect;
        const int done = whole.w - room;
        box.w = std::min(width, room);
        box.x = backwards ? whole.x + room - box.w : whole.x + done;
        paintBox(box, style, look);
        const Rect inner{box.x + style.padding, box.y, box.w - 2 * style.padding, box.h};
        paintText(kept, part, inner, style, look, style.align);
        room = std::max(0, room - box.w - style.gap);
    };
    KeptLayout first;
    chip(first, {line.text.substr(0, count), TextDirection::LeftToRight});
    chip(item.kept, {line.text.substr(words), line.direction});
}

void Painter::paintLabel(Item& item) {
    const Style& style = m_pages.style(item);
    const auto [look, buttonState] = appearance(item);
    Rect box = item.spec.rect;
    const bool rtl = m_pages.rightToLeft();
    const Line line = lineOf(item);
    const std::string& text = line.text;
    if (style.chips && lengthOfCount(text) > 0) {
        return paintChips(item, line, style, look);
    }
    if (style.hugs) {
        const bool blank = text.find_first_not_of(' ') == std::string::npos;
        const int width = blank ? 0 : naturalWidth(item.kept, line, style, look.bold) + 1 + 2 * style.padding;
        const int hugging = std::min(box.w, width);
        box.x += rtl && item.spec.mirrors ? box.w - hugging : 0;
        box.w = hugging;
    }
    if (box.empty()) {
        return;
    }
    paintBox(box, style, look);
    paintMarker(box, look, rtl);

    Rect inner{box.x + style.padding, box.y + look.nudge, box.w - 2 * style.padding, box.h};
    if (!item.spec.pictureOfText.empty()) {
        const auto found = item.spec.pictureOfText.find(of(item).text);
        if (found != item.spec.pictureOfText.end()) {
            m_pictures.draw(m_cairo, found->second, inner.x + (inner.w - style.iconSize) / 2,
                            inner.y + (inner.h - style.iconSize) / 2, style.iconSize, look.icon);
        }
        return;
    }
    const int picture = look.icon == noColor ? 0 : pictureOf(item, buttonState);
    if (picture == 0 && style.iconAt != IconAt::Top) {
        cairo_rectangle(m_cairo, box.x, box.y, box.w, box.h);
        cairo_clip(m_cairo);
        return style.runs ? paintRunning(item, line, inner, style, look)
                          : paintText(item.kept, line, inner, style, look, style.align);
    }
    const int icon = style.iconSize;
    int x = inner.x + (inner.w - icon) / 2;
    int y = inner.y + (inner.h - icon) / 2;
    Align align = style.align;
    if (style.iconAt == IconAt::Start || style.iconAt == IconAt::Left) {
        const bool mirrored = rtl && style.iconAt == IconAt::Start;
        x = mirrored ? inner.x + inner.w - icon : inner.x;
        const int taken = icon + style.gap;
        inner = {mirrored ? inner.x : inner.x + taken, inner.y, inner.w - taken, inner.h};
    } else if (style.iconAt == IconAt::Top && !text.empty()) {
        const int lines = style.lines * style.textSize * 4 / 3;
        const int top = inner.y + (inner.h - icon - style.gap - lines) / 2;
        y = top;
        inner = {inner.x, top + icon + style.gap, inner.w, lines};
    } else if (!text.empty()) {
        const int room = inner.w - icon - style.gap;
        const int width = std::min(room, naturalWidth(item.kept, line, style, look.bold) + 1);
        const int left = inner.x + (room - width) / 2;
        x = rtl ? left + width + style.gap : left;
        inner = {rtl ? left : left + icon + style.gap, inner.y, width, inner.h};
        align = Align::Start;
    }
    m_pictures.draw(m_cairo, picture, x, y, icon, look.icon);
    paintText(item.kept, line, inner, style, look, align);
}

} // namespace zm
