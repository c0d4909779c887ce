#include "platform/linux/toolkit/Touch.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zm {

namespace {

constexpr int dragPixels = 12;
constexpr int64_t flingPauseMs = 80;  ///< a finger that rested so long before it left flings nothing
constexpr double slowestFling = 0.15; ///< pixels a millisecond
constexpr double stoppingSpeed = 0.3; ///< a touch on a list that runs faster only stops it
constexpr double newSpeedWeight = 0.6;
constexpr int scrollStarts = 3;
constexpr int scrollEnds = 5;

bool enabled(const Item& item) {
    return item.set.enabled && (!item.parent || enabled(*item.parent));
}

} // namespace

Touch::Hit Touch::hit(int x, int y) const {
    const auto& shown = m_pages.shown();
    for (auto window = shown.rbegin(); window != shown.rend(); ++window) {
        const auto& items = (*window)->items;
        for (auto entry = items.rbegin(); entry != items.rend(); ++entry) {
            Item& item = **entry;
            const bool blocks = item.spec.kind == ItemKind::Panel &&
                                m_pages.style(item).look(LookState::Normal).fill != noColor;
            if ((!item.spec.touch && !blocks) || !m_pages.drawnRect(item).contains(x, y) ||
                !item.setVisible()) {
                continue;
            }
            return {*window, item.spec.touch ? &item : nullptr};
        }
        if ((*window)->spec.touchAll) {
            return {*window, nullptr};
        }
    }
    return {};
}

bool Touch::covers(int x, int y) const {
    return hit(x, y).window != nullptr;
}

bool Touch::shown(int window) const {
    const auto& pages = m_pages.shown();
    return pages.empty()
               ? window == 0
               : std::ranges::any_of(pages, [&](const Window* page) { return page->spec.id == window; });
}

void Touch::report(int state) {
    if (!m_silent) {
        m_listener.itemClicked(m_window, m_control, state);
    }
}

void Touch::pressItem(bool pressed) {
    if (m_item && m_item->pressed != pressed) {
        m_item->pressed = pressed;
        m_pages.damage(m_item->window, m_item->spec.rect);
    }
}

void Touch::releaseItem() {
    const bool soft = m_item && m_item->pressed && !m_dragging && m_pages.isShown(m_item->window);
    if (soft) {
        const Rect row = m_list ? m_list->rowRect(m_list->current) : m_item->spec.rect;
        m_motion.fadeOver(row.intersected(m_item->spec.rect), m_pages.resource().motion.press);
    }
    pressItem(false);
}

void Touch::press(int x, int y) {
    m_motion.fade().finish(); // what is touched is what is seen, and what is pressed shows it at once
    pressItem(false);         // a second press without a release ends the first one silently
    const Hit target = hit(x, y);
    const int topmost = m_pages.shown().empty() ? 0 : m_pages.shown().back()->spec.id;
    m_down = true;
    m_held = false;
    m_dragging = false;
    m_startX = x;
    m_startY = y;
    m_window = target.window ? target.window->spec.id : topmost;
    m_silent = target.item && !enabled(*target.item);
    m_item = m_silent ? nullptr : target.item;
    m_control = m_item ? m_item->spec.id : 0;
    m_list = nullptr;
    if (m_item) {
        m_item->fingerX = x;
    }
    if (m_item && m_item->list) {
        pressList(x, y);
    }
    pressItem(!m_silent);
    report(0);
}

void Touch::pressList(int x, int y) {
    m_list = &m_item->list->impl();
    m_selectedBefore = m_list->current;
    m_silent = m_motion.stopFling(*m_list) > stoppingSpeed * m_pages.fit().scale();
    const int row = m_list->rowAt(x, y);
    if (row < 0) {
        m_control = 0; // below the last row: nothing was chosen
    } else if (!m_silent) {
        m_list->select(row);
    }
}

void Touch::move(int x, int y, int64_t nowMs) {
    if (m_down && m_item && m_item->pressed && m_item->spec.kind == ItemKind::Progress &&
        m_item->fingerX != x) {
        m_item->fingerX = x;
        m_pages.damage(m_item->window, m_item->spec.rect);
    }
    if (!m_down || !m_list) {
        return;
    }
    if (!m_dragging &&
        std::max(std::abs(x - m_startX), std::abs(y - m_startY)) >= m_pages.pixels(dragPixels)) {
        startDrag(y, nowMs);
    } else if (m_dragging) {
        drag(y, nowMs);
    }
}

void Touch::startDrag(int y, int64_t nowMs) {
    m_dragging = true;
    m_silent = true;
    m_scrollAtStart = m_list->scroll;
    m_dragStartY = m_startY;
    m_lastY = y;
    m_lastMove = nowMs;
    m_speed = 0;
    pressItem(false);
    m_list->select(m_list->has(m_selectedBefore) ? m_selectedBefore : -1);
    m_motion.report(*m_list, scrollStarts);
    drag(y, nowMs);
}

void Touch::drag(int y, int64_t nowMs) {
    // A list that was put beyond its end may be pulled back, never further out.
    const double furthest = std::max(m_list->end(), std::min(m_scrollAtStart, m_list->scroll));
    m_list->scrollTo(m_scrollAtStart + m_dragStartY - y, furthest);
    if (nowMs > m_lastMove) {
        const double now = static_cast<double>(m_lastY - y) / static_cast<double>(nowMs - m_lastMove);
        m_speed = newSpeedWeight * now + (1 - newSpeedWeight) * m_speed;
        m_lastY = y;
        m_lastMove = nowMs;
    }
}

void Touch::endDrag(int64_t nowMs) {
    m_dragging = false;
    const bool rested = nowMs - m_lastMove > flingPauseMs;
    if (!rested && std::abs(m_speed) >= slowestFling * m_pages.fit().scale()) {
        m_motion.fling(*m_list, m_speed, nowMs);
        return;
    }
    const double row = m_list->rowHeight();
    m_list->scrollTo(std::round(m_list->scroll / row) * row, std::max(m_list->end(), m_list->scroll));
    m_motion.report(*m_list, scrollEnds);
}

void Touch::hold() {
    if (m_down) {
        m_held = true;
        report(4);
    }
}

void Touch::release(int, int, int64_t nowMs) {
    if (!m_down) {
        return;
    }
    m_down = false;
    releaseItem();
    if (m_dragging) {
        endDrag(nowMs);
    } else if (m_held || shown(m_window)) { // no click on a page that has gone meanwhile
        report(1);
    }
}

void Touch::letGo() {
    pressItem(false);
    if (m_dragging) {
        m_motion.report(*m_list, scrollEnds);
    } else if (m_down && m_held) {
        report(1);
    }
    m_down = false;
    m_dragging = false;
    m_item = nullptr;
    m_list = nullptr;
}

} // namespace zm
