#pragma once

#include "base/Image.h"
#include "base/Rect.h"
#include "services/bench/display/Placement.h"

namespace zm::bench::display {

/** What the screen is drawn on inside a window. On the thread of the window. */
class Canvas {
public:
    virtual ~Canvas() = default;
    /** Takes over the pixels of the screen inside `damage`; `frame` is let go when this returns. */
    virtual void take(const Image& frame, Rect damage, const Placement& placement) = 0;
    /** Shows what was taken over. May wait for the window system. */
    virtual void show(const Placement& placement) = 0;
    /** The window has lost what was drawn on it: what is taken next is the whole screen. */
    virtual void lose() = 0;
};

} // namespace zm::bench::display
