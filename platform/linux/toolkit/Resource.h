#pragma once

#include "base/Rect.h"
#include "base/Result.h"
#include "platform/linux/toolkit/Binding.h"

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zm {

/** Button states as the application numbers them. */
enum ButtonState : int { StatePressed = 1, StateNormal = 2, StateSelected = 3, StateAll = 4 };

enum class ItemKind { Text, Icon, Button, Progress, Animation, List, Panel };
inline constexpr int itemKinds = 7;
/** The kinds' names in resource texts and descriptions, in the order of ItemKind. */
inline constexpr std::array<const char*, itemKinds> itemKindNames = {
    "text", "icon", "button", "progress", "animation", "list", "panel"};

struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
};

inline constexpr int noColor = -1; ///< where a palette index may be missing: nothing is drawn

enum class Marker { None, Start, Bottom };
enum class Align { Left, Center, Right, Start, End }; ///< Start and End follow the language's direction
enum class IconAt { Center, Left, Start, Top };
/** What a screen that is wider than the file's does to an item: it takes its share of the width, keeps its distance to the
 * left or the right edge, keeps its width around the middle of its share, or its distance to both edges. */
enum class Anchor { Spread, Left, Right, Center, Stretch };
enum class LookState { Normal, Pressed, Selected, Disabled };
inline constexpr int lookStates = 4;

/** How an item is drawn in one state. Colours are indices into the theme's palette. */
struct Look {
    int text = noColor;
    int icon = noColor;
    int fill = noColor;
    int border = noColor;
    int borderWidth = 0;
    int nudge = 0; ///< pixels by which the content moves down
    bool dashed = false;
    bool bold = false;
    Marker marker = Marker::None;
};

struct Style {
    std::string name;
    int textSize = 24;
    int iconSize = 36;
    int lines = 1;
    int radius = 0;
    int padding = 0;
    int gap = 8;  ///< between icon and text
    int rows = 5; ///< of a list
    int rowGap = 0;
    int thickness = 8;  ///< of a progress bar or the busy animation
    int fadeTop = 0;    ///< so many pixels of a panel's fill fade in at its upper edge
    int fadeBottom = 0; ///< and out at its lower one
    int bubble = 0;     ///< of a progress bar: room above it for the time under the finger
    Align align = Align::Center;
    IconAt iconAt = IconAt::Center;
    std::string suffix; ///< drawn behind the text, e.g. a unit
    bool hugs = false;  ///< the box is as wide as the text, and not drawn behind a blank one
    bool runs = false;  ///< a text that does not fit runs through its place once
    bool chips = false; ///< a count that begins the text ("1/3 English") has a box of its own
    std::array<Look, lookStates> looks;

    const Look& look(LookState state) const { return looks[static_cast<size_t>(state)]; }
};

/** A picture: glyphs of the icon font or short texts one over the other. */
struct Picture {
    struct Layer {
        std::string text; ///< UTF-8
        bool glyph = true;
        double scale = 1; ///< of the picture's size
        double dx = 0;    ///< from the middle, in parts of the picture's size
        double dy = 0;
        bool flips = false;  ///< points the other way where reading begins on the right
        int color = noColor; ///< its own one; else the one that the item draws its picture with
    };
    std::vector<Layer> layers;
};

/** An item as the resource describes it. */
struct ItemSpec {
    int id = 0;
    ItemKind kind = ItemKind::Text;
    Rect rect;
    int style = 0;
    int parent = 0; ///< id of the item it belongs to; 0 for none
    int textId = 0;
    std::string text;
    std::map<int, int> icons;                 ///< picture per button state
    std::map<std::string, int> pictureOfText; ///< a state image: picture chosen by the item's text
    std::vector<int> whenText;                ///< seen only while its parent shows one of these texts
    bool whileEmpty = false;                  ///< seen only while its parent, a list, has no rows
    int total =
        0; ///< id of the item with the whole time: of a progress bar, or of a text that shows the rest
    int elapsed = 0;        ///< id of the item with the time that is over, of such a text
    Binding movesWhile;     ///< of a list: the mark of its playing row moves while this is `movesValue`
    std::string movesValue; ///< of a list
    Binding bound;          ///< names the file of the picture that it shows
    Binding value;          ///< chooses the picture that it shows
    std::map<std::string, int> pictureOfValue; ///< picture by that value; for others it is that of its state
    int state = 0;
    bool visible = true;
    bool enabled = true;
    bool touch = false;
    Anchor anchor = Anchor::Spread;
    bool mirrors = true; ///< stands on the other side of the screen where reading begins on the right
};

/** How long movements take, in milliseconds. */
struct MotionTimes {
    int page = 200;    ///< a page in the place of another one
    int popup = 180;   ///< what comes and goes over a page
    int overlay = 180; ///< bars over the picture
    int press = 150;   ///< a key that is let go
};

struct WindowSpec {
    int id = 0;
    std::string name;
    int background = noColor;
    std::string theme;     ///< whose colours it always has; empty for the present one
    Binding tint;          ///< a colour that the background takes on, more at the top than below
    bool stacked = false;  ///< lies above the others instead of replacing them
    bool returns = false;  ///< when hidden, gives way to the page that it replaced
    bool touchAll = false; ///< the whole window takes touches, not only its items
    std::vector<ItemSpec> items;
};

/** A loaded resource file: everything that does not change while the program runs. */
struct Resource {
    std::vector<std::string> files; ///< what it was read from, the outer one first
    std::vector<std::string> languages;
    std::vector<std::string> palette; ///< colour names
    std::map<std::string, std::vector<Color>> themes;
    std::vector<Style> styles;
    std::map<int, Picture> pictures;
    std::map<int, std::vector<std::string>> texts; ///< one per language, empty where there is none
    std::vector<WindowSpec> windows;
    MotionTimes motion;

    /** The text in a language (index into `languages`); the first language where
     * there is none in that one. */
    const std::string& text(int id, size_t language) const;
};

/** Reads and validates a resource file with everything it includes. Errors read "file:line: found ...,
 * expected ...". */
Result<Resource> loadResource(const std::string& file, int width, int height);

} // namespace zm
