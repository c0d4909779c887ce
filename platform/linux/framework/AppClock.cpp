#include "platform/linux/framework/AppClock.h"

#include <algorithm>
#include <chrono>
#include <tuple>

namespace zm {

namespace {

int64_t realNow() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

void AppClock::setManual(bool manual) {
    MutexLock lock(m_mutex);
    if (manual != m_manual) {
        m_manualNow = realNow();
        m_manual = manual;
    }
}

bool AppClock::manual() const {
    MutexLock lock(m_mutex);
    return m_manual;
}

int64_t AppClock::nowMs() const {
    MutexLock lock(m_mutex);
    return m_manual ? m_manualNow : realNow();
}

void AppClock::set(Key key, Alarm alarm) {
    {
        MutexLock lock(m_mutex);
        alarm.order = m_nextOrder++;
        m_alarms[key] = std::move(alarm);
    }
    armOnEventThread();
}

bool AppClock::cancel(Key key) {
    MutexLock lock(m_mutex);
    return m_alarms.erase(key) > 0;
}

void AppClock::cancelAll(const void* owner) {
    MutexLock lock(m_mutex);
    std::erase_if(m_alarms, [owner](const auto& entry) { return entry.first.first == owner; });
}

std::optional<int64_t> AppClock::due(Key key) const {
    MutexLock lock(m_mutex);
    const auto found = m_alarms.find(key);
    return found == m_alarms.end() ? std::nullopt : std::optional(found->second.dueMs);
}

bool AppClock::advanceToHandler(int64_t limitMs) {
    while (auto alarm = takeDue(limitMs)) {
        alarm->callback();
        if (alarm->kind == AlarmKind::Handler) {
            return true;
        }
    }
    MutexLock lock(m_mutex);
    m_manualNow = std::max(m_manualNow, limitMs);
    return false;
}

void AppClock::disarm() {
    m_wakeup.reset();
    m_armedFor.reset();
}

// Takes the earliest alarm that is due at `limitMs`; a periodic one is set for its next time.
std::optional<AppClock::Alarm> AppClock::takeDue(int64_t limitMs) {
    MutexLock lock(m_mutex);
    const auto earliest =
        std::min_element(m_alarms.begin(), m_alarms.end(), [](const auto& a, const auto& b) {
            return std::tie(a.second.dueMs, a.second.order) < std::tie(b.second.dueMs, b.second.order);
        });
    if (earliest == m_alarms.end() || earliest->second.dueMs > limitMs) {
        return std::nullopt;
    }
    Alarm taken = earliest->second;
    if (m_manual) {
        m_manualNow = std::max(m_manualNow, taken.dueMs);
    }
    if (taken.periodMs > 0) {
        Alarm& next = earliest->second;
        next.dueMs += next.periodMs;
        // Real time that was missed is not made up for by a burst.
        next.dueMs = m_manual ? next.dueMs : std::max(next.dueMs, limitMs + 1);
        next.order = m_nextOrder++;
    } else {
        m_alarms.erase(earliest);
    }
    return taken;
}

void AppClock::armOnEventThread() {
    if (m_events.isCurrent()) {
        arm();
    } else {
        m_events.post([this] { arm(); }, Counted::No);
    }
}

void AppClock::arm() {
    std::optional<int64_t> earliest;
    {
        MutexLock lock(m_mutex);
        for (const auto& [key, alarm] : m_alarms) {
            earliest = std::min(alarm.dueMs, earliest.value_or(alarm.dueMs));
        }
        if (m_manual) {
            earliest.reset();
        }
    }
    if (earliest == m_armedFor) {
        return;
    }
    const int64_t delay = std::max<int64_t>(0, earliest.value_or(0) - realNow());
    m_armedFor = earliest;
    m_wakeup = earliest ? afterDelay(m_events.loop(), std::chrono::milliseconds(delay), [this] { wake(); })
                        : SourceHandle();
}

void AppClock::wake() {
    m_armedFor.reset();
    const int64_t now = realNow();
    while (!m_events.stopped()) {
        const auto alarm = takeDue(now);
        if (!alarm) {
            break;
        }
        m_events.runEvent(alarm->callback, alarm->kind == AlarmKind::Handler ? Counted::Yes : Counted::No);
    }
    arm();
}

} // namespace zm
