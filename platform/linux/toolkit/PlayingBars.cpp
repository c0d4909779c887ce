#include "platform/linux/toolkit/PlayingBars.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zm {

namespace {

constexpr int64_t turnMs = 2400;

/** A bar as the picture shows it, in parts of the picture, and how often it rises in a turn. */
struct Bar {
    double height;
    int rises;
};
constexpr std::array<Bar, 3> bars = {{{8.0 / 24, 3}, {16.0 / 24, 2}, {11.0 / 24, 4}}};
constexpr double middle = 10.0 / 24;
constexpr double swing = 6.0 / 24;

} // namespace

void PlayingBars::collect() {
    m_lists.clear();
    for (const auto& [id, window] : m_pages.windows()) {
        for (const auto& item : window->items) {
            if (!item->spec.movesWhile.empty()) {
                m_lists.push_back(item.get());
            }
        }
    }
}

bool PlayingBars::moves(const Item& list) const {
    const Bound* bound = list.spec.movesWhile.empty() ? nullptr : m_pages.bound(list.spec.movesWhile);
    return bound && bound->text == list.spec.movesValue;
}

Rect PlayingBars::mark(const CUI_BtList::Impl& list) {
    const Rect& view = list.item.spec.rect;
    for (int row = static_cast<int>(list.scroll / list.rowHeight()); list.has(row); ++row) {
        const Rect place = list.rowRect(row);
        if (place.y >= view.y + view.h) {
            break;
        }
        if (list.rows[static_cast<size_t>(row)].icons[CUI_BtList::Impl::markSlot] > 0) {
            return list.markRect(row).intersected(view);
        }
    }
    return {};
}

bool PlayingBars::seen() const {
    return std::any_of(m_lists.begin(), m_lists.end(), [&](const Item* item) {
        return m_pages.isShown(item->window) && item->onPage() && moves(*item) &&
               !mark(item->list->impl()).empty();
    });
}

void PlayingBars::step(int64_t nowMs) {
    if (!seen()) {
        return rest();
    }
    if (m_start < 0) {
        m_start = nowMs;
    }
    m_turn = static_cast<double>((nowMs - m_start) % turnMs) / static_cast<double>(turnMs);
    damage();
}

void PlayingBars::rest() {
    if (m_start >= 0) {
        m_start = -1;
        damage();
    }
}

void PlayingBars::damage() {
    for (const Item* item : m_lists) {
        if (item->onPage()) {
            m_pages.damage(item->window, mark(item->list->impl()));
        }
    }
}

// They begin as the picture has them.
std::optional<std::array<double, 3>> PlayingBars::heights(const Item& list) const {
    if (m_start < 0 || !moves(list)) {
        return std::nullopt;
    }
    std::array<double, 3> high{};
    for (size_t i = 0; i < bars.size(); ++i) {
        const double begin = std::asin((bars[i].height - middle) / swing);
        high[i] = middle + swing * std::sin(begin + 2 * std::numbers::pi * m_turn * bars[i].rises);
    }
    return high;
}

} // namespace zm
