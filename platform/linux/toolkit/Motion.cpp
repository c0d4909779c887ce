#include "platform/linux/toolkit/Motion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace zm {

namespace {

constexpr int64_t quickFrameMs = 16;
constexpr int64_t calmFrameMs = 33;
constexpr int64_t barsFrameMs = 66;
constexpr int64_t busyTurnMs = 1200;
constexpr double longestStepMs = 50;
constexpr double flingMs = 325; ///< in this time a flung list does all but 1/e of its way
constexpr double flingRestPixels = 0.5;
constexpr double walkMs = 120;
constexpr double walkRest = 0.02;   ///< of one unit of the range
constexpr double walkedPart = 0.05; ///< steps up to this part of the range are walked, larger ones jump
constexpr int listScrolling = 3;

struct LeavingStyle {
    int style;
    int slide;
};
constexpr std::array<LeavingStyle, 3> leavingStyles = {{{2, 0}, {4, 24}, {6, 48}}};

Rect bounds(const Window& window) {
    Rect area;
    for (const auto& item : window.items) {
        area = area.united(item->spec.rect);
    }
    return area;
}

} // namespace

Motion::Motion(Pages& pages, SceneListener& listener)
    : m_pages(pages), m_listener(listener), m_bars(pages), m_titles(pages) {
    m_pages.progressDrawn = [this](Item& item) { progressDrawn(item); };
    m_pages.groupChanged = [this](const Item& item) {
        fadeOver(item.bounds(), m_pages.resource().motion.popup);
    };
    collect();
}

void Motion::setLevel(MotionLevel level) {
    m_level = level;
    if (level != MotionLevel::Full) {
        finishFades();
        m_titles.rest();
        m_bars.rest();
    }
    if (level == MotionLevel::Off) {
        rest();
    }
}

void Motion::setSeen(bool seen) {
    if (seen && !m_seen && m_level == MotionLevel::Full) {
        m_fade.wantFromNothing(m_pages.screen(), m_pages.resource().motion.overlay);
    }
    m_seen = seen;
}

void Motion::fadeOver(const Rect& area, int ms) {
    if (m_level == MotionLevel::Full && m_seen) {
        m_fade.want(area, ms);
    }
}

void Motion::finishFades() {
    m_fade.finish();
    if (m_leaving) {
        damageLeaving();
        m_leaving.reset();
    }
}

void Motion::rest() {
    for (Item* item : m_walking) {
        item->progressShown = item->drawn.progress.position;
        m_pages.damage(item->window, m_pages.drawnRect(*item));
    }
    m_walking.clear();
    if (const auto run = std::exchange(m_fling, std::nullopt)) {
        run->list->scrollTo(run->to, run->list->end());
        report(*run->list, 5);
    }
    finishFades();
    m_titles.rest();
    m_triggered = nullptr;
}

void Motion::collect() {
    m_bars.collect();
    m_titles.collect();
    m_busyItems.clear();
    for (const auto& [id, window] : m_pages.windows()) {
        for (const auto& item : window->items) {
            if (item->spec.kind == ItemKind::Animation) {
                m_busyItems.push_back(item.get());
            }
        }
    }
}

void Motion::published() {
    if (!barsMove()) {
        m_bars.rest();
    }
}

bool Motion::busyShown() const {
    return m_level != MotionLevel::Off &&
           std::any_of(m_busyItems.begin(), m_busyItems.end(),
                       [&](const Item* item) { return m_pages.isShown(item->window) && item->onPage(); });
}

int64_t Motion::next() const {
    const bool quick = m_fling || fading();
    const bool calm = !m_walking.empty() || busyShown();
    const int64_t pace = quick || titlesRun() ? quickFrameMs
                         : calm               ? calmFrameMs
                         : barsMove()         ? barsFrameMs
                                              : -1;
    return pace < 0 ? -1 : m_lastTick < 0 ? 0 : m_lastTick + pace;
}

void Motion::tick(int64_t nowMs) {
    const int64_t due = next();
    const bool early = nowMs < due && nowMs >= m_lastTick; // a clock that went back starts anew
    if (due < 0 || early) {
        return;
    }
    const double elapsed =
        m_lastTick < 0 ? 0 : std::min(longestStepMs, static_cast<double>(nowMs - m_lastTick));
    m_lastTick = nowMs;
    stepBusy(nowMs);
    stepProgress(elapsed);
    stepFling(nowMs);
    stepLeaving(nowMs);
    m_fade.step(nowMs);
    if (m_level == MotionLevel::Full) {
        m_titles.step(nowMs);
        m_bars.step(nowMs);
    }
}

void Motion::stepBusy(int64_t nowMs) {
    if (!busyShown()) {
        m_busyStart = -1;
        m_busyTurn = 0;
        return;
    }
    if (m_busyStart < 0) {
        m_busyStart = nowMs;
    }
    m_busyTurn = static_cast<double>((nowMs - m_busyStart) % busyTurnMs) / static_cast<double>(busyTurnMs);
    for (const Item* item : m_busyItems) {
        if (item->onPage()) {
            m_pages.damage(item->window, m_pages.drawnRect(*item));
        }
    }
}

void Motion::progressDrawn(Item& item) {
    const ProgressValue& value = item.drawn.progress;
    const double range = value.maximum - value.minimum;
    const double step = std::abs(value.position - item.progressShown);
    const bool walks = step > 0 && step <= range * walkedPart && item.onPage() && m_level != MotionLevel::Off;
    std::erase(m_walking, &item);
    if (walks) {
        m_walking.push_back(&item);
    } else {
        item.progressShown = value.position;
    }
}

void Motion::stepProgress(double elapsedMs) {
    std::erase_if(m_walking, [&](Item* item) {
        const double position = item->drawn.progress.position;
        double& shown = item->progressShown;
        shown += (position - shown) * (1 - std::exp(-elapsedMs / walkMs));
        const bool arrived = std::abs(position - shown) < walkRest || !m_pages.isShown(item->window);
        if (arrived) {
            shown = position;
        }
        if (item->onPage()) {
            m_pages.damage(item->window, m_pages.drawnRect(*item));
        }
        return arrived;
    });
}

void Motion::fling(CUI_BtList::Impl& list, double speed, int64_t nowMs) {
    const double row = list.rowHeight();
    const double wanted = std::round((list.scroll + speed * flingMs) / row) * row;
    const double target = std::clamp(wanted, 0.0, list.end());
    if (m_level == MotionLevel::Off) {
        list.scrollTo(target, list.end());
        return report(list, 5);
    }
    m_fling = Fling{&list, list.scroll, target, list.scroll, nowMs};
}

double Motion::stopFling(CUI_BtList::Impl& list) {
    if (!m_fling || m_fling->list != &list) {
        return 0;
    }
    const double speed = std::abs(m_fling->to - list.scroll) / flingMs;
    m_fling.reset();
    report(list, 5);
    return speed;
}

void Motion::stepFling(int64_t nowMs) {
    if (!m_fling) {
        return;
    }
    const Fling run = *m_fling;
    const double left = (run.to - run.from) * std::exp(-static_cast<double>(nowMs - run.start) / flingMs);
    const bool movedByOthers = run.list->scroll != run.at;
    const bool gone = !m_pages.isShown(run.list->item.window);
    const bool arrived = gone || std::abs(left) < flingRestPixels;
    if (!movedByOthers) {
        run.list->scrollTo(arrived ? run.to : run.to - left, run.list->end());
        m_fling->at = run.list->scroll;
    }
    if (arrived || movedByOthers) {
        m_fling.reset();
        report(*run.list, 5);
    }
}

void Motion::report(CUI_BtList::Impl& list, int state) {
    list.moving = state == listScrolling;
    list.drawList();
    _tagList_Info info{list.item.spec.id, state, list.top()};
    m_listener.listScrolled(list.item.window.spec.id, listScrolling, info);
}

bool Motion::trigger(Window& window, int from, int to) {
    const auto style =
        std::find_if(leavingStyles.begin(), leavingStyles.end(),
                     [&](const LeavingStyle& known) { return known.style == from && known.style == to; });
    if (style == leavingStyles.end()) {
        return false;
    }
    m_triggered = &window;
    m_triggeredSlide = style->slide;
    return true;
}

void Motion::windowShown(Window& window) {
    std::erase_if(m_walking, [&](const Item* item) { return &item->window == &window; });
    if (m_triggered == &window) {
        m_triggered = nullptr;
    }
    if (m_leaving && m_leaving->window == &window) {
        m_leaving.reset();
        m_pages.damaged().add(m_pages.screen());
    }
}

void Motion::windowHidden(Window& window) {
    if (m_triggered == &window) {
        m_triggered = nullptr;
        if (m_level != MotionLevel::Off) {
            m_leaving = Leaving{&window, m_pages.pixels(m_triggeredSlide)};
        }
    }
}

void Motion::damageLeaving() {
    Rect area = bounds(*m_leaving->window);
    area.h += m_leaving->slide;
    m_pages.damaged().add(area);
}

void Motion::stepLeaving(int64_t nowMs) {
    if (!m_leaving) {
        return;
    }
    if (m_leaving->start < 0) {
        m_leaving->start = nowMs;
    }
    m_leaving->done =
        eased(static_cast<double>(nowMs - m_leaving->start) / m_pages.resource().motion.overlay);
    damageLeaving();
    if (m_leaving->done >= 1) {
        m_leaving.reset();
    }
}

} // namespace zm
