#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace zm {

class AppClock;

/** A point of the screen, in pixels. */
struct Point {
    int x = 0;
    int y = 0;
};

/** The item of a shown page that a finger was lifted from; control 0: none. */
struct LiftedFrom {
    std::string view; ///< "main" or "osd"
    int page = 0;
    int control = 0;
};

/** What a finger can lie on. Event thread. */
class Touchable {
public:
    virtual ~Touchable() = default;
    virtual void fingerDown(Point at) = 0;
    virtual void fingerMoved(Point to, int64_t nowMs) = 0;
    /** The finger has rested long enough to count as held. */
    virtual void fingerRested() = 0;
    virtual void fingerUp(Point at, int64_t nowMs) = 0;
    /** The rest of this touch has no effect. */
    virtual void fingerIgnored() = 0;
};

/**
 * Turns what a finger does into the calls of the view under it: OnLButtonDown, the press report, after 800 ms
 * the held report, OnLButtonUp and the release report. One finger; event thread only.
 */
class TouchInput {
public:
    /** `under` gives what lies at a point, null if nothing does. */
    TouchInput(AppClock& clock, std::function<Touchable*(Point)> under)
        : m_clock(clock), m_under(std::move(under)) {}

    /** A press while the finger is down means that its release got lost: the earlier touch ends without a
     * report. */
    void press(Point at);
    void move(Point to);
    void release(Point at);
    /** A whole touch; of `holdMs` it is reported as held at once if it lasts long enough. */
    void touch(Point at, int holdMs);
    /** Press, moves, a rest and release: never held, and a list does not go on by itself. */
    void drag(Point from, Point to);
    /** The launcher puts something else under the finger: the touch ends. That is reported only if it had been
     * reported as held. */
    void letGo();
    /** Notes the item of a release that its view is about to be told. */
    void lifted(LiftedFrom item) { m_lifted = std::move(item); }
    /** What `lifted` has noted since the last call. */
    std::optional<LiftedFrom> takeLifted() { return std::exchange(m_lifted, std::nullopt); }
    /** `target` goes away. */
    void forget(const Touchable& target);

private:
    void pressAt(Point at);
    void moveTo(Point to, int64_t nowMs);
    void releaseAt(Point at, int64_t nowMs);
    void hold();
    void cancelHold();

    AppClock& m_clock;
    std::function<Touchable*(Point)> m_under;
    Touchable* m_target = nullptr; ///< under the finger since the press
    Point m_down;
    std::optional<LiftedFrom> m_lifted;
};

} // namespace zm
