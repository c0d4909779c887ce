// Lists: only the rows in view are laid out and drawn.

#include "platform/linux/toolkit/Painter.h"

#include <algorithm>
#include <cmath>

namespace zm {

namespace {

constexpr int scrollBarWidth = 8;
constexpr int leastThumb = 40;
constexpr size_t kindSlot = 0;
constexpr size_t markSlot = 2;
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
    const bool playing = row.icons[markSlot] > 0;
    look.bold = look.bold || playing;
    const Rect place = list.rowRect(index);
    const Rect box{place.x, place.y, place.w - scrollBarWidth - 8, place.h - style.rowGap};
    paintBox(box, style, look);
    paintMarker(box, look, false); // rows keep their number on the left in every language

    const int icon = style.iconSize;
    const int left = box.x + style.padding;
    const int y = box.y + (box.h - icon) / 2 + look.nudge;
    m_pictures.draw(m_cairo, row.icons[kindSlot], left, y, icon, m_pages.color(look.icon));
    int right = box.x + box.w - style.padding;
    if (playing) {
        right -= icon;
        m_pictures.draw(m_cairo, row.icons[markSlot], right, y, icon,
                        m_pages.color(style.look(LookState::Selected).icon));
        right -= style.gap;
    }
    const int textLeft = left + icon + style.gap;
    paintText(keptRow(list, index), row.text, {textLeft, box.y + look.nudge, right - textLeft, box.h}, style,
              look, Align::Left);
}

void Painter::paintScrollBar(const CUI_BtList::Impl& list) {
    if (list.end() <= 0 && list.scroll <= 0) {
        return;
    }
    const Rect& view = list.item.spec.rect;
    const Look look = m_pages.style(list.item).look(LookState::Normal);
    const double whole = list.end() + view.h;
    const int thumb = std::max(leastThumb, static_cast<int>(view.h * view.h / whole));
    const double part = list.end() > 0 ? std::min(1.0, list.scroll / list.end()) : 1.0;
    const Rect track{view.x + view.w - scrollBarWidth, view.y, scrollBarWidth, view.h};
    roundedPath(track, scrollBarWidth / 2.0, 0);
    source(look.fill);
    cairo_fill(m_cairo);
    roundedPath({track.x, track.y + static_cast<int>(std::lround((view.h - thumb) * part)), track.w, thumb},
                scrollBarWidth / 2.0, 0);
    source(look.border);
    cairo_fill(m_cairo);
}

} // namespace zm
