#pragma once

#include "base/ScreenSize.h"
#include "platform/linux/toolkit/Resource.h"

namespace zm {

/**
 * Brings pages that are written for one size of screen onto another: everything grows with the height, what the
 * screen is wider than that goes where the items' anchors say. Nothing is stretched afterwards: texts and pictures are drawn
 * in the size that comes out.
 */
class ScreenFit {
public:
    ScreenFit(ScreenSize written, ScreenSize screen);

    const ScreenSize& written() const { return m_written; }
    const ScreenSize& screen() const { return m_screen; }
    /** Pixels of the screen for one of the file. */
    double scale() const { return m_scale; }
    /** A length of the file in pixels of the screen; what is not nothing does not become nothing. */
    int pixels(int length) const;
    Rect place(const Rect& rect, Anchor anchor) const;
    void apply(Resource& resource) const;

private:
    double across(int x) const;
    void apply(Style& style) const;

    ScreenSize m_written;
    ScreenSize m_screen;
    double m_scale;
    double m_wide; ///< of the screen, in lengths of the file
};

} // namespace zm
