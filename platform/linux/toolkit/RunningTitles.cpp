#include "platform/linux/toolkit/RunningTitles.h"

#include <algorithm>

namespace zm {

namespace {

constexpr int64_t beforeMs = 1500;
constexpr int64_t afterMs = 1500;
constexpr double pixelsPerMs = 0.06;

} // namespace

void RunningTitles::collect() {
    m_runs.clear();
    for (const auto& [id, window] : m_pages.windows()) {
        for (const auto& item : window->items) {
            if (m_pages.style(*item).runs && item->spec.kind == ItemKind::Text) {
                m_runs[item.get()];
            }
        }
    }
}

void RunningTitles::rest() {
    for (auto& [item, run] : m_runs) {
        if (run.offset > 0) {
            m_pages.damage(item->window, item->spec.rect);
        }
        run = {item->drawn.text, -1, true, 0};
    }
}

bool RunningTitles::waits(const Item& item, const Run& run) const {
    const bool begins = item.drawn.text != run.text && item.overhang > 0;
    return m_pages.isShown(item.window) && item.onPage() && (begins || !run.over);
}

bool RunningTitles::busy() const {
    return std::any_of(m_runs.begin(), m_runs.end(),
                       [&](const auto& entry) { return waits(*entry.first, entry.second); });
}

void RunningTitles::step(int64_t nowMs) {
    for (auto& [item, run] : m_runs) {
        if (!waits(*item, run)) {
            run.over = true;
            run.offset = 0;
            continue;
        }
        if (run.text != item->drawn.text) {
            run = {item->drawn.text, nowMs, false, 0};
        }
        const double way = std::max(0.0, static_cast<double>(nowMs - run.start - beforeMs) * pixelsPerMs);
        const double whole = item->overhang;
        const double before = run.offset;
        run.offset = std::min(way, whole);
        run.over = way >= whole + static_cast<double>(afterMs) * pixelsPerMs;
        if (run.over) {
            run.offset = 0;
        }
        if (run.offset != before) {
            m_pages.damage(item->window, item->spec.rect);
        }
    }
}

double RunningTitles::offset(const Item& item) const {
    const auto found = m_runs.find(&item);
    return found == m_runs.end() ? 0 : found->second.offset;
}

} // namespace zm
