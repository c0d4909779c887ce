#pragma once

#include "platform/linux/toolkit/Damage.h"
#include "platform/linux/toolkit/Item.h"
#include "platform/linux/toolkit/PictureFile.h"
#include "platform/linux/toolkit/ScreenFit.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace zm {

/** A value that was published for pages, and what was made of it. */
struct Bound {
    std::string text;
    PictureFilePtr picture;     ///< of a picture's file, if it can be shown
    std::optional<Color> color; ///< if it is one
};

/** All windows of a resource, which of them are shown, and what of them has to be drawn anew. */
class Pages {
public:
    /** `fit` says which screen a resource is brought to. */
    Pages(Resource resource, const ScreenFit& fit);
    /**
     * Whether `redefine` may take that resource: one with the same pages, and in them the same lists, as the
     * application holds on to those.
     */
    Status fits(const Resource& next) const;
    /** Puts another resource in the place of the present one; what the application has set stays. */
    void redefine(Resource next);

    const Resource& resource() const { return m_resource; }
    const Rect& screen() const { return m_screen; }
    const ScreenFit& fit() const { return m_fit; }
    /** A length that is meant for the size of screen that the resource was written for. */
    int pixels(int length) const { return m_fit.pixels(length); }
    Window* window(int id) const;
    Item* item(int windowId, int itemId) const;
    const std::map<int, std::unique_ptr<Window>>& windows() const { return m_windows; }

    /** Whether that changed anything; a window that comes is drawn as it is set,
     * one that was there is not. */
    bool show(Window& window, bool show);
    bool isShown(const Window& window) const;
    const std::vector<Window*>& shown() const { return m_shown; } ///< bottom first
    /** Whether a shown page lets nothing through of what lies below the window on the screen. */
    bool opaque() const;
    /** The page that is to be shown again once this one is hidden, or null. */
    const Window* replacedBy(const Window& window) const {
        return window.spec.returns && isShown(window) ? m_replaced : nullptr;
    }

    /** Makes the changes of the item, and of what belongs to it, visible if its window is shown. */
    void draw(Item& item);
    void drawWindow(Window& window);
    void drawAll();
    /** Is told of each progress bar on a shown window whose content was drawn. */
    std::function<void(Item&)> progressDrawn;
    /** Is told of each panel or busy animation of a shown window that comes or goes. */
    std::function<void(const Item&)> groupChanged;
    /** Marks an area of a shown window as to be drawn. */
    void damage(const Window& window, const Rect& area);
    /** Draws everything anew. */
    void repaint();
    Damage& damaged() { return m_damage; }

    /** Takes a value and draws what shows it. */
    void publish(const Binding& binding, Bound value);
    /** The latest value; null if none came. */
    const Bound* bound(const Binding& binding) const;

    bool setLanguage(const std::string& code);
    bool rightToLeft() const { return m_rightToLeft; }
    /** Puts a text of the resource there, in the present language. */
    void setText(Content& content, int textId) const;

    bool setTheme(const std::string& name);
    /** The palette's color; a fully transparent one for `noColor`, which draws nothing. */
    Color color(int index) const {
        return index == noColor ? Color{0, 0, 0, 0} : (*m_palette)[static_cast<size_t>(index)];
    }
    /** The colours of the theme that the window names; of the present one for others. From now on. */
    void paletteOf(const Window& window);
    /** Where an item that nobody touches is drawn: a progress bar without its bubble. */
    Rect drawnRect(const Item& item) const;
    const Style& style(const Item& item) const {
        return m_resource.styles[static_cast<size_t>(item.spec.style)];
    }

private:
    void damageAll() { m_damage.add(m_screen); }
    void takeOver(Item& item);
    /** Puts the time that is left into a text that shows it. */
    void showRest(Item& rest);
    void translate();
    /** Puts all items where they belong in the present direction of reading. */
    void mirror();

    ScreenFit m_fit;
    Resource m_resource;
    std::map<Binding, Bound> m_bound;
    Rect m_screen;
    std::map<int, std::unique_ptr<Window>> m_windows;
    std::vector<Window*> m_shown;
    const Window* m_replaced = nullptr; ///< was shown before the present page
    Damage m_damage;
    std::string m_languageCode = "en";
    size_t m_language = 0;
    bool m_rightToLeft = false;
    bool m_mirrored = false; ///< the items stand where they belong when reading begins on the right
    std::string m_theme = "night";
    const std::vector<Color>* m_palette;
};

} // namespace zm
