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
    double shown = 0; ///< follows the position smoothly
};

/** A text as it was last laid out, kept because laying out costs most of the drawing. */
struct KeptLayout {
    LayoutPtr layout;
    std::string text;
    bool bold = false;
    Reading reading = Reading::FromLeft;
    int width = 0;
};

/** An item of a page and what the application has put into it. */
struct Item {
    Item(const ItemSpec& itemSpec, Window& owner, Item* parentItem);
    ~Item();
    /** Takes another description. What the application has changed stays, the rest follows. */
    void redefine(const ItemSpec& next, Item* nextParent);

    ItemSpec spec;
    Window& window;
    Item* parent;
    std::vector<Item*> children;

    bool visible;
    bool enabled;
    int state;
    int textId;
    std::string text;
    std::map<int, int> icons;
    ProgressValue progress;
    std::unique_ptr<CUI_BtList> list; ///< of a list item

    bool pressed = false;
    bool dirty = false; ///< changed since it was last made visible
    KeptLayout kept;

    /** Visible together with everything it belongs to. */
    bool onPage() const;
    /** The picture for a button state: that state's own, else that for all; 0 for none. */
    int icon(int buttonState) const;
    /** Marks it and what belongs to it. */
    void markTree();
};

/** A page of the resource. */
struct Window {
    explicit Window(WindowSpec windowSpec) { redefine(std::move(windowSpec)); }
    /** Takes another description. Items of the same id and kind stay, others come and go. */
    void redefine(WindowSpec next);

    WindowSpec spec;
    std::vector<std::unique_ptr<Item>> items; ///< in drawing order

    Item* find(int id) const;

private:
    std::unordered_map<int, Item*> m_byId;
};

} // namespace zm
