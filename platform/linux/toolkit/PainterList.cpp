// Lists: only the rows in view are laid out and drawn.

#include "platform/linux/toolkit/Painter.h"

#include <algorithm>
#include <cmath>

namespace zm {

namespace {

constexpr int scrollBar = CUI_BtList::Impl::barWidth;
constexpr int leastThumb = 40;
constexpr int shortList = 3; ///< a list of less views needs no number while it moves
constexpr int placeHeight = 56;
/** Rows that were drawn last are kept, so that a list that is scrolled lays out only the new ones. */
constexpr size_t rowsKept = 16;

} // namespace

KeptLayout& Painter::keptRow(CUI_BtList::Impl& list, int index) {
    auto& kept = list.keptRows;
    const auto found =
        std::find_if(kept.begin(), kept.end(), [&](const auto& row) { return row.index == index; });
    if (found != kept.end()) {
        return found->kept;
    }
    if (kept.size() == rowsKept) {
        kept.erase(kept.begin());
    }
    return kept.emplace_back(CUI_BtList::Impl::KeptRow{index, {}}).kept;
}

void Painter::paintList(Item& item, const Rect& area) {
    CUI_BtList::Impl& list = item.list->impl();
    const Rect& view = item.spec.rect;
    cairo_rectangle(m_cairo, view.x, view.y, view.w, view.h);
    cairo_clip(m_cairo);
    for (int index = static_cast<int>(list.scroll / list.rowHeight()); list.has(index); ++index) {
        const Rect row = list.rowRect(index);
        if (row.y >= view.y + view.h) {
            break;
        }
        if (!row.intersected(area).empty()) {
            paintRow(list, index);
        }
    }
    paintScrollBar(list);
}

void Painter::paintRow(CUI_BtList::Impl& list, int index) {
    const Style& style = m_pages.style(list.item);
    const CUI_BtList::Impl::Row& row = list.rows[static_cast<size_t>(index)];
    const bool selected = index == list.current;
    const LookState state = !selected           ? LookState::Normal
                            : list.item.pressed ? LookState::Pressed
                                                : LookState::Selected;
    Look look = style.look(state);
    const bool playing = row.icons[CUI_BtList::Impl::markSlot] > 0;
    look.bold = look.bold || playing;
    const bool rtl = m_pages.rightToLeft();
    const Rect box = list.faceRect(index);
    paintBox(box, style, look);
    paintMarker(box, look, rtl);

    // Picture, number and name, mark: from the side where reading begins.
    const int icon = style.iconSize;
    const int y = box.y + (box.h - icon) / 2 + look.nudge;
    const int taken = icon + style.gap;
    Rect inner{box.x + style.padding, box.y + look.nudge, box.w - 2 * style.padding, box.h};
    const int first = rtl ? inner.x + inner.w - icon : inner.x;
    const int last = rtl ? inner.x : inner.x + inner.w - icon;
    m_pictures.draw(m_cairo, row.icons[CUI_BtList::Impl::kindSlot], first, y, icon, look.icon);
    inner = {rtl ? inner.x : inner.x + taken, inner.y, inner.w - taken, inner.h};
    if (playing) {
        paintMark(list, row.icons[CUI_BtList::Impl::markSlot], {last, y, icon, icon});
        inner = {rtl ? inner.x + taken : inner.x, inner.y, inner.w - taken, inner.h};
    }
    paintText(keptRow(list, index), {list.text(row), ofLanguage()}, inner, style, look, Align::Start);
}

// The three bars stand where the picture has them, on the same line.
void Painter::paintMark(CUI_BtList::Impl& list, int picture, const Rect& box) {
    const int color = m_pages.style(list.item).look(LookState::Selected).icon;
    const auto heights = m_motion.bars().heights(list.item);
    if (!heights) {
        return m_pictures.draw(m_cairo, picture, box.x, box.y, box.w, color);
    }
    constexpr std::array<double, 3> lefts = {4.0 / 24, 10.0 / 24, 16.0 / 24};
    constexpr double wide = 4.0 / 24;
    constexpr double foot = 20.0 / 24;
    source(color);
    for (size_t i = 0; i < lefts.size(); ++i) {
        cairo_rectangle(m_cairo, box.x + lefts[i] * box.w, box.y + (foot - (*heights)[i]) * box.h,
                        wide * box.w, (*heights)[i] * box.h);
    }
    cairo_fill(m_cairo);
}

void Painter::paintScrollBar(CUI_BtList::Impl& list) {
    if (list.end() <= 0 && list.scroll <= 0) {
        return;
    }
    const Rect& view = list.item.spec.rect;
    const Look look = m_pages.style(list.item).look(LookState::Normal);
    const double whole = list.end() + view.h;
    const double part = list.end() > 0 ? std::min(1.0, list.scroll / list.end()) : 1.0;
    const int width = pixels(scrollBar);
    const int left = m_pages.rightToLeft() ? view.x : view.x + view.w - width;
    const Rect track{left, view.y, width, view.h - m_pages.style(list.item).rowGap};
    const int thumb = std::max(pixels(leastThumb), static_cast<int>(track.h * view.h / whole));
    roundedPath(track, width / 2.0, 0);
    source(look.fill);
    cairo_fill(m_cairo);
    const Rect handle{track.x, track.y + static_cast<int>(std::lround((track.h - thumb) * part)), track.w,
                      thumb};
    roundedPath(handle, width / 2.0, 0);
    source(look.icon);
    cairo_fill(m_cairo);
    if (list.moving && whole > shortList * view.h) {
        paintPlace(list, handle);
    }
}

void Painter::paintPlace(CUI_BtList::Impl& list, const Rect& thumb) {
    const Style& style = m_pages.style(list.item);
    const Look& look = style.look(LookState::Selected);
    const Rect& view = list.item.spec.rect;
    const int row = std::clamp(list.top(), 0, static_cast<int>(list.rows.size()) - 1) + 1;
    const Line line{std::to_string(row) + " / " + std::to_string(list.rows.size()),
                    TextDirection::LeftToRight};
    const int wide = naturalWidth(list.place, line, style, true) + 2 * style.padding;
    const int beside = pixels(scrollBar);
    const int high = pixels(placeHeight);
    const int left = m_pages.rightToLeft() ? thumb.x + 2 * beside : thumb.x - beside - wide;
    const int top = std::clamp(thumb.y + (thumb.h - high) / 2, view.y, view.y + view.h - high);
    const Rect box{left, top, wide, high};
    paintBox(box, style, look);
    Look text = look;
    text.bold = true;
    paintText(list.place, line, box, style, text, Align::Center);
}

} // namespace zm
