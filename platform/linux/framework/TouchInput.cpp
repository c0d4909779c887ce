#include "platform/linux/framework/TouchInput.h"

#include "platform/linux/framework/Application.h"
#include "platform/linux/framework/ViewImpl.h"

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
    AppClock& clock = m_application.clock();
    clock.set({this, 0}, {clock.nowMs() + HoldMs, 0, AlarmKind::Handler, [this] { hold(); }});
}

void TouchInput::move(Point to) {
    if (std::abs(to.x - m_down.x) > RestPixels || std::abs(to.y - m_down.y) > RestPixels) {
        cancelHold();
    }
    moveTo(to, m_application.clock().nowMs());
}

void TouchInput::release(Point at) {
    releaseAt(at, m_application.clock().nowMs());
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
    int64_t now = m_application.clock().nowMs();
    for (int step = 1; step <= DragSteps; ++step) {
        now += DragStepMs;
        moveTo({from.x + (to.x - from.x) * step / DragSteps, from.y + (to.y - from.y) * step / DragSteps},
               now);
    }
    releaseAt(to, now + DragRestMs);
}

void TouchInput::letGo() {
    cancelHold();
    if (ViewImpl* view = std::exchange(m_view, nullptr)) {
        view->scene->letGo();
    }
}

void TouchInput::forget(const ViewImpl& view) {
    if (m_view == &view) {
        cancelHold();
        m_view = nullptr;
    }
}

// The joined view that is in front, shown and hit; else the main view.
void TouchInput::pressAt(Point at) {
    const auto& views = m_application.views();
    m_view = m_application.mainView();
    for (size_t i = 1; i < views.size(); ++i) {
        const bool hit = views[i]->spec.visible && views[i]->scene->hits(at.x, at.y);
        if (hit && (m_view == views.front() || views[i]->spec.order > m_view->spec.order)) {
            m_view = views[i];
        }
    }
    m_down = at;
    if (m_view) {
        m_view->view.OnLButtonDown(at.x, at.y);
        m_view->scene->press(at.x, at.y);
    }
}

void TouchInput::moveTo(Point to, int64_t nowMs) {
    if (m_view) {
        m_view->view.OnMouseMove(to.x, to.y);
        m_view->scene->move(to.x, to.y, nowMs);
    }
}

void TouchInput::releaseAt(Point at, int64_t nowMs) {
    cancelHold();
    if (ViewImpl* view = std::exchange(m_view, nullptr)) {
        view->view.OnLButtonUp(at.x, at.y);
        view->scene->release(at.x, at.y, nowMs);
    }
}

void TouchInput::hold() {
    if (m_view) {
        m_view->scene->hold();
    }
}

void TouchInput::cancelHold() {
    m_application.clock().cancel({this, 0});
}

} // namespace zm
