#pragma once

#include "platform/linux/toolkit/ListControl.h"
#include "platform/linux/toolkit/Motion.h"
#include "platform/linux/toolkit/Pictures.h"
#include "platform/linux/toolkit/ScaledPictures.h"

#include <cairo.h>

namespace zm {

/** Which content of the items stands on the pages. */
enum class Contents { Drawn, Set };

/** Draws pages; what it draws depends on nothing but their contents and the movements' present step. */
class Painter {
public:
    Painter(Pages& pages, const Motion& motion, FontBook& fonts)
        : m_pages(pages), m_motion(motion), m_fonts(fonts), m_pictures(pages, fonts) {}

    /** Draws all shown windows inside `area`. */
    void paint(cairo_t* cairo, const Rect& area, Contents contents);

private:
    /** How an item looks now, and the button state whose picture it takes. */
    struct Appearance {
        Look look;
        int buttonState;
    };
    /** A text and how it is read. */
    struct Line {
        std::string text;
        TextDirection direction;
    };
    Appearance appearance(const Item& item) const;
    /** The picture that it shows in a button state; 0 for none. */
    int pictureOf(const Item& item, int buttonState) const;
    const Content& of(const Item& item) const {
        return m_contents == Contents::Drawn ? item.drawn : item.set;
    }
    bool onPage(const Item& item) const;
    bool disabled(const Item& item) const;

    int pixels(int length) const { return m_pages.pixels(length); }
    void paintWindow(const Window& window, const Rect& area);
    void paintLeaving(const Motion::Leaving& leaving, const Rect& area);
    void paintItem(Item& item, const Rect& area);
    void paintLabel(Item& item);
    /** A text whose count and words stand in boxes of their own, one behind the other. */
    void paintChips(Item& item, Line line, const Style& style, const Look& look);
    void paintPicture(const Item& item, const PictureFilePtr& picture, const Look& look);
    void paintBackground(const WindowSpec& window);
    TextDirection ofLanguage() const {
        return m_pages.rightToLeft() ? TextDirection::RightToLeft : TextDirection::LeftToRight;
    }
    void paintProgress(Item& item);
    /** What shows where a finger touches a progress bar, and what time that is. */
    void paintKnob(Item& item, double x, double y, double part);
    void paintAnimation(const Item& item);
    void paintList(Item& item, const Rect& area);
    void paintRow(CUI_BtList::Impl& list, int index);
    /** The picture that tells which row plays, or bars that move in its place. */
    void paintMark(CUI_BtList::Impl& list, int picture, const Rect& box);
    void paintScrollBar(CUI_BtList::Impl& list);
    /** Which row stands on top, beside the scroll bar of a long list that moves. */
    void paintPlace(CUI_BtList::Impl& list, const Rect& thumb);

    void paintPanel(const Rect& box, const Style& style, const Look& look);
    void paintBox(const Rect& box, const Style& style, const Look& look);
    void paintMarker(const Rect& box, const Look& look, bool mirrored);
    Line lineOf(const Item& item) const;
    void paintText(KeptLayout& kept, const Line& line, const Rect& box, const Style& style, const Look& look,
                   Align align);
    /** A text that shows what is further on, where its run has come to. */
    void paintRunning(Item& item, const Line& line, const Rect& box, const Style& style, const Look& look);
    KeptLayout& keptRow(CUI_BtList::Impl& list, int index);
    void source(int color);
    void roundedPath(const Rect& box, double radius, double inset);
    int naturalWidth(KeptLayout& kept, const Line& line, const Style& style, bool bold);
    PangoLayout* prepare(KeptLayout& kept, const Line& line, const Style& style, bool bold);

    Pages& m_pages;
    const Motion& m_motion;
    FontBook& m_fonts;
    Pictures m_pictures;
    ScaledPictures m_scaled;
    cairo_t* m_cairo = nullptr;
    Contents m_contents = Contents::Drawn;
};

} // namespace zm
