#pragma once

#include "base/Rect.h"
#include "base/Result.h"
#include "base/ScreenSize.h"
#include "platform/linux/toolkit/Binding.h"
#include "platform/linux/toolkit/MotionLevel.h"
#include "platform/linux/toolkit/PictureFile.h"
#include "platform/linux/toolkit/SceneListener.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CUIWndMng;

namespace zm {

/**
 * All pages of one resource file: their items, what stands in them, their drawing and their touches. It knows
 * nothing of sockets, views or threads; everything belongs to one thread.
 */
class Scene {
public:
    /**
     * Loads and validates a resource file that is written for so many pixels; the error gives file, line and what
     * was expected. Its pages are drawn for `screen`, and touched there.
     */
    static Result<std::unique_ptr<Scene>> load(const std::string& resourceFile, const std::string& fontDir,
                                               int width, int height, SceneListener& listener,
                                               std::optional<ScreenSize> screen = {});
    ~Scene();

    /**
     * Reads the resource again and shows it in the place of the old one: positions, looks, wordings and
     * colours change, items may come and go, what the application has put into them stays. A faulty resource,
     * or one with other pages or without one of their lists, changes nothing and gives the error.
     */
    Status reload();
    /** The files that the pages were read from. */
    const std::vector<std::string>& files() const;

    CUIWndMng& wndMng();

    /** Shows or hides a page. Pages marked "stacked" in the resource lie above the others; of the rest one at
     * a time is shown. What is set on a page that was shown before still has to be drawn. */
    bool showWindow(int window, bool show);
    /** Makes every change of a shown page visible. */
    void drawWindow(int window);
    /** Shown pages, bottom first. */
    std::vector<int> shownWindows() const;
    /** The page that is to be shown again once page `id` is hidden; 0 if there is none. */
    int replacedBy(int id) const;
    /** The stacked pages that go when page `id` is shown, top first. */
    std::vector<int> droppedBy(int id) const;

    /** Whether a touch at that point belongs to this scene: some shown window covers it. */
    bool hits(int x, int y) const;
    void press(int x, int y);
    /** A drag of a list begins once the finger has moved 12 pixels; the touch then reports no hold and no
     * release click. */
    void move(int x, int y, int64_t nowMs);
    /** The finger has rested for 800 ms. */
    void hold();
    void release(int x, int y, int64_t nowMs);
    /** The touch ends here; only of what was reported as held is the release reported. */
    void letGo();

    /** How much moves by itself; Reduced at first. */
    void setMotion(MotionLevel level);
    MotionLevel motion() const;
    /** Whether the pages are on the screen, as they are at first: those that come fade in. */
    void setSeen(bool seen);
    /** Whether something is on its way in or out: what `paint` gives is not yet what the pages say. */
    bool fading() const;
    /** The next `paint` gives what the pages say. */
    void finishFades();

    /** The next moment at which `tick` has something to do (animation, momentum), or -1. */
    int64_t nextTick() const;
    void tick(int64_t nowMs);

    /** Draws what was made visible since the last call into premultiplied ARGB32 pixels; gives the areas
     * drawn. */
    std::vector<Rect> paint(uint8_t* pixels, int stride);
    /** Makes everything visible that was set, and marks all of it as to be drawn. */
    void invalidate();
    /**
     * Whether the pixels that `paint` left are those of the pages drawn anew as they were set. An empty text,
     * or one that names the area where they differ and the items that were set and not drawn.
     */
    std::string staleness(const uint8_t* pixels, int stride);

    /** What the pages show of what others publish. */
    std::map<Binding, BoundAs> bindings() const;
    /** Such a value is now that; `picture` is that of the file that it names, null if there is none. */
    void publish(const Binding& binding, const std::string& text, PictureFilePtr picture);

    /** Codes "en", "de", "zh", "ar"; unknown ones fall back to English. False if the code is not in the
     * resource. */
    bool setLanguage(const std::string& code);
    /** One of the resource's themes; "night" is the one at start. */
    bool setTheme(const std::string& name);

    /** The pages' contents: {"6":{"items":{...}}}; only `window` when one is named. */
    nlohmann::json describe(std::optional<int> window = {}) const;

    /**
     * What the user sees of the shown pages, in drawing order: items with a text and those that can be touched,
     * of a list its rows in view. {"window","item","kind","text","rect","enabled"} and, of what can be touched,
     * "touch": a point that reaches it. What a panel or a page above covers is left out.
     */
    nlohmann::json describeSeen() const;

    struct Impl;

private:
    explicit Scene(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};

} // namespace zm
