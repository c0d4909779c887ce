#pragma once

#include "platform/linux/toolkit/Fade.h"
#include "platform/linux/toolkit/ListControl.h"
#include "platform/linux/toolkit/MotionLevel.h"
#include "platform/linux/toolkit/PlayingBars.h"
#include "platform/linux/toolkit/RunningTitles.h"
#include "platform/linux/toolkit/SceneListener.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zm {

/**
 * What moves by itself: busy animations, progress bars on their way to a new position, lists that were flung
 * and pages that fade out or over. Every movement ends in the state that would be shown without it.
 */
class Motion {
public:
    Motion(Pages& pages, SceneListener& listener);
    /** At first it is reduced. What a lower level does not have ends where it leads. */
    void setLevel(MotionLevel level);
    MotionLevel level() const { return m_level; }
    /** Whether the pages are on the screen: what is not seen does not fade. */
    void setSeen(bool seen);
    /** Ends all movements where they lead; before the pages are redefined. */
    void rest();
    /** Takes up the items that move by themselves; after the pages have been redefined. */
    void collect();

    /** Something that others publish has changed: bars may have to stand. */
    void published();

    /** The moment of the next step, or -1; 0 when a movement waits for its first step. */
    int64_t next() const;
    void tick(int64_t nowMs);

    /** Lets the window leave with animation `from`..`to` when it is hidden next; false for an unknown one. */
    bool trigger(Window& window, int from, int to);
    void windowShown(Window& window);
    void windowHidden(Window& window);

    /** What is painted next looks different in `area` and fades over, if the level allows it. */
    void fadeOver(const Rect& area, int ms);
    Fade& fade() { return m_fade; }
    const Fade& fade() const { return m_fade; }
    const PlayingBars& bars() const { return m_bars; }
    const RunningTitles& titles() const { return m_titles; }
    /** Whether anything on the screen is on its way in or out. */
    bool fading() const { return m_fade.active() || m_leaving; }
    /** Ends that where it leads. */
    void finishFades();

    /** Lets a list run on with a speed in pixels a millisecond; it comes to rest on a whole row. */
    void fling(CUI_BtList::Impl& list, double speed, int64_t nowMs);
    /** Stops a running list where it is; gives its speed in pixels a millisecond, 0 if it did not run. */
    double stopFling(CUI_BtList::Impl& list);
    /** Tells the listener that a list begins (3) or ends (5) to scroll. */
    void report(CUI_BtList::Impl& list, int state);

    /** A window that is no longer shown but still fades. */
    struct Leaving {
        Window* window;
        int slide; ///< pixels downwards during the whole movement
        int64_t start = -1;
        double done = 0; ///< 0..1
    };
    const std::optional<Leaving>& leaving() const { return m_leaving; }
    /** Turn of the busy animation, 0..1. */
    double busyTurn() const { return m_busyTurn; }

private:
    struct Fling {
        CUI_BtList::Impl* list;
        double from;
        double to;
        double at; ///< where the last step left the list
        int64_t start;
    };

    bool busyShown() const;
    bool titlesRun() const { return m_level == MotionLevel::Full && m_titles.busy(); }
    bool barsMove() const { return m_level == MotionLevel::Full && m_bars.seen(); }
    /** Small steps of a progress bar on a shown page are walked smoothly. */
    void progressDrawn(Item& item);
    void stepBusy(int64_t nowMs);
    void stepProgress(double elapsedMs);
    void stepFling(int64_t nowMs);
    void stepLeaving(int64_t nowMs);
    void damageLeaving();

    Pages& m_pages;
    SceneListener& m_listener;
    std::vector<Item*> m_busyItems;
    std::vector<Item*> m_walking; ///< progress bars not yet at their position
    std::optional<Fling> m_fling;
    std::optional<Leaving> m_leaving;
    MotionLevel m_level = MotionLevel::Reduced;
    bool m_seen = true;
    Fade m_fade;
    PlayingBars m_bars;
    RunningTitles m_titles;
    const Window* m_triggered = nullptr;
    int m_triggeredSlide = 0;
    int64_t m_lastTick = -1;
    int64_t m_busyStart = -1;
    double m_busyTurn = 0;
};

} // namespace zm
