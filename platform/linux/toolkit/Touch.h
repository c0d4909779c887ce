#pragma once

#include "platform/linux/toolkit/Motion.h"

#include <cstdint>

namespace zm {

/** Turns presses, moves and releases into clicks of items and scrolling of lists. */
class Touch {
public:
    Touch(Pages& pages, Motion& motion, SceneListener& listener)
        : m_pages(pages), m_motion(motion), m_listener(listener) {}

    /** Whether a shown window takes touches at that point. */
    bool covers(int x, int y) const;
    /** Whether a touch there belongs to that item. */
    bool reaches(int x, int y, const Item& item) const { return hit(x, y).item == &item; }
    void press(int x, int y);
    void move(int x, int y, int64_t nowMs);
    void hold();
    void release(int x, int y, int64_t nowMs);
    /** The rest of a touch that is under way does nothing; the end of what was reported as held is reported. */
    void letGo();

private:
    struct Hit {
        const Window* window = nullptr;
        Item* item = nullptr; ///< null: the window itself was hit
    };
    Hit hit(int x, int y) const;
    bool shown(int window) const;
    void report(int state);
    void pressItem(bool pressed);
    /** The item is let go; it gets its usual look again softly. */
    void releaseItem();
    void pressList(int x, int y);
    void startDrag(int y, int64_t nowMs);
    void drag(int y, int64_t nowMs);
    void endDrag(int64_t nowMs);

    Pages& m_pages;
    Motion& m_motion;
    SceneListener& m_listener;

    bool m_down = false;
    bool m_held = false;   ///< was reported as held, so its end is reported in any case
    bool m_silent = false; ///< this touch reports nothing (disabled item, stopped list, drag)
    int m_window = 0;
    int m_control = 0;
    Item* m_item = nullptr;
    int m_startX = 0;
    int m_startY = 0;

    CUI_BtList::Impl* m_list = nullptr; ///< the list under the finger
    bool m_dragging = false;
    int m_selectedBefore = -1;
    double m_scrollAtStart = 0;
    int m_dragStartY = 0;
    int m_lastY = 0;
    int64_t m_lastMove = 0;
    double m_speed = 0; ///< pixels a millisecond, positive towards the list's end
};

} // namespace zm
