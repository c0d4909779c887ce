#include "platform/linux/framework/TouchInput.h"

#include "platform/linux/framework/AppClock.h"

#include <cstdlib>
#include <utility>

namespace zm {

namespace {

constexpr int HoldMs = 800;
// A finger that strays no farther than this still rests.
constexpr int RestPixels = 12;
constexpr int DragSteps = 10;
constexpr int DragStepMs = 16;
// Long enough that a list does not go on by itself.
constexpr int DragRestMs = 300;

} // namespace

void TouchInput::press(Point at) {
    pressAt(at);
    m_clock.set({this, 0}, {m_clock.nowMs() + HoldMs, 0, AlarmKind::Handler, [this] { hold(); }});
}

void TouchInput::move(Point to) {
    if (std::abs(to.x - m_down.x) > RestPixels || std::abs(to.y - m_down.y) > RestPixels) {
        cancelHold();
    }
    moveTo(to, m_clock.nowMs());
}

void TouchInput::release(Point at) {
    releaseAt(at, m_clock.nowMs());
}

void TouchInput::touch(Point at, int holdMs) {
    press(at);
    cancelHold();
    if (holdMs >= HoldMs) {
        hold();
    }
    release(at);
}

void TouchInput::drag(Point from, Point to) {
    press(from);
    cancelHold();
    int64_t now = m_clock.nowMs();
    for (int step = 1; step <= DragSteps; ++step) {
        now += DragStepMs;
        moveTo({from.x + (to.x - from.x) * step / DragSteps, from.y + (to.y - from.y) * step / DragSteps},
               now);
    }
    releaseAt(to, now + DragRestMs);
}

void TouchInput::letGo() {
    cancelHold();
    if (Touchable* target = std::exchange(m_target, nullptr)) {
        target->fingerIgnored();
    }
}

void TouchInput::forget(const Touchable& target) {
    if (m_target == &target) {
        cancelHold();
        m_target = nullptr;
    }
}

void TouchInput::pressAt(Point at) {
    m_down = at;
    m_target = m_under(at);
    if (m_target) {
        m_target->fingerDown(at);
    }
}

void TouchInput::moveTo(Point to, int64_t nowMs) {
    if (m_target) {
        m_target->fingerMoved(to, nowMs);
    }
}

void TouchInput::releaseAt(Point at, int64_t nowMs) {
    cancelHold();
    if (Touchable* target = std::exchange(m_target, nullptr)) {
        target->fingerUp(at, nowMs);
    }
}

void TouchInput::hold() {
    if (m_target) {
        m_target->fingerRested();
    }
}

void TouchInput::cancelHold() {
    m_clock.cancel({this, 0});
}

} // namespace zm
