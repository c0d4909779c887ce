#pragma once

#include "platform/linux/toolkit/FontBook.h"
#include "platform/linux/toolkit/Resource.h"

#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

class CUI_BtList;

namespace zm {

struct Window;

struct ProgressValue {
    int minimum = 0;
    int maximum = 100;
    int position = 0;
    bool operator==(const ProgressValue&) const = default;
};

/** What stands in an item. */
struct Content {
    bool visible;
    bool enabled;
    int state;
    int textId;
    std::string text;
    std::map<int, int> icons;
    ProgressValue progress{};
    bool operator==(const Content&) const = default;

    /** Takes the next description's values, except where the application has changed those of `before`. */
    void follow(const ItemSpec& before, const ItemSpec& next);
    /** The picture for a button state: that state's own, else that for all; 0 for none. */
    int icon(int buttonState) const;
};

/** A text as it was last laid out, kept because laying out costs most of the drawing. */
struct KeptLayout {
    LayoutPtr layout;
    std::string text;
    bool bold = false;
    TextDirection direction = TextDirection::LeftToRight;
    int width = 0;
    int natural = -1; ///< width that it would like; -1 until it is asked for
};

/**
 * An item of a page. The application sets its content; the screen shows the content that was last drawn.
 */
struct Item {
    Item(const ItemSpec& itemSpec, Window& owner, Item* parentItem);
    ~Item();
    /** Takes another description. What the application has changed stays, the rest follows. */
    void redefine(const ItemSpec& next, Item* nextParent);

    ItemSpec spec;
    Window& window;
    Item* parent;
    std::vector<Item*> children;

    Content set;
    Content drawn;
    double progressShown = 0;         ///< follows the drawn position smoothly
    std::unique_ptr<CUI_BtList> list; ///< of a list item; its rows are set and drawn by themselves

    bool pressed = false;
    int fingerX = 0;    ///< where it is pressed
    bool dirty = false; ///< it, or a row of its list, was set since it was last drawn
    KeptLayout kept;
    int overhang = 0; ///< pixels of its text that do not fit, of one that may run; found when it is drawn

    /** Drawn visible together with everything it belongs to. */
    bool onPage() const { return drawn.visible && (!parent || parent->onPage()); }
    /** Set visible together with everything it belongs to. */
    bool setVisible() const { return set.visible && (!parent || parent->setVisible()); }
    /** It and everything that belongs to it. */
    Rect bounds() const;
};

/** A page of the resource. */
struct Window {
    explicit Window(WindowSpec windowSpec) { redefine(std::move(windowSpec)); }
    /** Takes another description. Items of the same id and kind stay, others come and go. */
    void redefine(WindowSpec next);

    WindowSpec spec;
    std::vector<std::unique_ptr<Item>> items; ///< in drawing order
    std::vector<Item*> rests;                 ///< texts that show what is left of a time

    Item* find(int id) const;

private:
    std::unordered_map<int, Item*> m_byId;
};

} // namespace zm
