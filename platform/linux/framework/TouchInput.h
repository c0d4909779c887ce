#pragma once

#include <cstdint>

namespace Oro::ZMCAR {
struct ViewImpl;
}

namespace zm {

class Application;

/** A point of the screen, in pixels. */
struct Point {
    int x = 0;
    int y = 0;
};

/**
 * Turns what a finger does into the calls of the view under it: OnLButtonDown, the press report, after 800 ms
 * the held report, OnLButtonUp and the release report. One finger; event thread only.
 */
class TouchInput {
public:
    explicit TouchInput(Application& application) : m_application(application) {}

    /** A press while the finger is down means that its release got lost: the earlier touch ends without a
     * report. */
    void press(Point at);
    void move(Point to);
    void release(Point at);
    /** A whole touch; of `holdMs` it is reported as held at once if it lasts long enough. */
    void touch(Point at, int holdMs);
    /** Press, moves, a rest and release: never held, and a list does not go on by itself. */
    void drag(Point from, Point to);
    /** The view goes away. */
    void forget(const Oro::ZMCAR::ViewImpl& view);

private:
    void pressAt(Point at);
    void moveTo(Point to, int64_t nowMs);
    void releaseAt(Point at, int64_t nowMs);
    void hold();
    void cancelHold();

    Application& m_application;
    Oro::ZMCAR::ViewImpl* m_view = nullptr; ///< under the finger since the press
    Point m_down;
};

} // namespace zm
