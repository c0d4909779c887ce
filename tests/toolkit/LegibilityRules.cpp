#include "LegibilityRules.h"

#include "platform/linux/toolkit/Tint.h"

#include <pango/pango.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace zm::test {

using namespace zm;

namespace {

constexpr int head = 68; ///< the status bar's height, with the controls in it
constexpr int leastTouch = 60;
constexpr int wantedTouch = 76;
constexpr int leastDistance = 8;
constexpr int leastText = 24;
constexpr int leastStatusText = 20;
constexpr int leastTitle = 32;

/** Glyphs that other layers of a picture stand on: the rounded square and the disc. */
constexpr std::array<std::string_view, 2> filledGlyphs = {"\uF12E", "\uF12F"};
constexpr std::array statusTexts = {8, 11, 12, 20};
constexpr std::array titles = {1012, 2065, 7004, 7034, 20121, 20124};

template <typename List, typename Value>
bool holds(const List& list, const Value& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

const Style& styleOf(const Resource& resource, const ItemSpec& item) {
    return resource.styles[static_cast<size_t>(item.style)];
}

std::string place(const WindowSpec& window, const ItemSpec& item) {
    return "window " + std::to_string(window.id) + " item " + std::to_string(item.id) + ": ";
}

template <typename Visit>
void eachItem(const Resource& resource, Visit visit) {
    for (const WindowSpec& window : resource.windows) {
        for (const ItemSpec& item : window.items) {
            visit(window, item);
        }
    }
}

/**
 * Where there is no room for more than 60 pixels: five rows, a heading and a foot fill a list page, and the
 * row of times over the picture is kept low so that the picture is seen.
 */
bool isNarrow(const WindowSpec& window, const ItemSpec& item, const ScreenFit& fit) {
    const bool hasList = std::any_of(window.items.begin(), window.items.end(),
                                     [](const ItemSpec& one) { return one.kind == ItemKind::List; });
    const bool besideTimes = std::any_of(window.items.begin(), window.items.end(), [&](const ItemSpec& one) {
        return one.kind == ItemKind::Progress && one.rect.y == item.rect.y;
    });
    return item.rect.y < fit.pixels(head) || hasList || besideTimes || item.kind == ItemKind::Progress;
}

bool isFace(const Resource& resource, const ItemSpec& item) {
    return item.touch && item.kind == ItemKind::Button && styleOf(resource, item).name != "none";
}

int distance(const Rect& a, const Rect& b) {
    const int across = std::max(a.x - b.x - b.w, b.x - a.x - a.w);
    const int down = std::max(a.y - b.y - b.h, b.y - a.y - a.h);
    return std::max(across, down);
}

/** The part of an item that is seen as a control: a list ends with its last row. */
Rect seen(const Resource& resource, const ItemSpec& item) {
    Rect rect = item.rect;
    rect.h -= item.kind == ItemKind::List ? styleOf(resource, item).rowGap : 0;
    return rect;
}

double luminance(const Color& color) {
    const auto linear = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(const Color& a, const Color& b) {
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

Color over(const Color& top, double below) {
    return {top.red * top.alpha + below * (1 - top.alpha), top.green * top.alpha + below * (1 - top.alpha),
            top.blue * top.alpha + below * (1 - top.alpha), 1};
}

/** What can shine through a colour: nothing, or, through a veil, the darkest and the brightest picture. */
std::vector<Color> extremes(const Color& color) {
    return {over(color, 0), over(color, 1)};
}

/** The darkest and the brightest of what a page's colour can become by the pictures that tint it. */
std::vector<Color> tints(const Color& page) {
    std::vector<Color> found = {page};
    constexpr std::array steps = {0.0, 0.05, 0.25, 0.5, 0.75, 1.0};
    for (const double red : steps) {
        for (const double green : steps) {
            for (const double blue : steps) {
                found.push_back(tinted(page, {red, green, blue, 1}));
            }
        }
    }
    const auto [darkest, brightest] =
        std::minmax_element(found.begin(), found.end(),
                            [](const Color& a, const Color& b) { return luminance(a) < luminance(b); });
    return {*darkest, *brightest};
}

bool covers(const Rect& outer, const Rect& inner) {
    return outer.united(inner) == outer;
}

/** Where a panel has its whole colour. */
Rect unfaded(const Resource& resource, const ItemSpec& panel) {
    const Style& style = styleOf(resource, panel);
    return {panel.rect.x, panel.rect.y + style.fadeTop, panel.rect.w,
            panel.rect.h - style.fadeTop - style.fadeBottom};
}

/** The palette index of what an item's box lies on: the last filled item before it around it,
 * else the page. */
int groundBelow(const Resource& resource, const WindowSpec& window, const ItemSpec& item) {
    int ground = window.background;
    for (const ItemSpec& other : window.items) {
        if (&other == &item) {
            return ground;
        }
        const int fill = styleOf(resource, other).look(LookState::Normal).fill;
        const bool replaced = other.rect == item.rect; // controls that take turns in one place
        if (fill != noColor && !replaced && covers(unfaded(resource, other), item.rect) &&
            (other.parent == item.parent || other.id == item.parent)) {
            ground = fill;
        }
    }
    return ground;
}

struct Measured {
    const char* what;
    int color;
    int ground;
    double least;
};

/** The pairs of colours by which an item is seen in a state. */
std::vector<Measured> pairsOf(const ItemSpec& item, const Look& look, int below) {
    const int own = look.fill == noColor ? below : look.fill;
    switch (item.kind) {
    case ItemKind::Progress:
        return {{"part done", look.icon, below, 3.0},
                {"rest", look.fill, below, 3.0},
                {"time under the finger", look.border == noColor ? noColor : look.text, look.border, 4.5}};
    case ItemKind::Animation:
        return {{"ring", look.icon, below, 3.0}};
    case ItemKind::Panel:
        return {};
    case ItemKind::Text:
    case ItemKind::Icon:
    case ItemKind::Button:
    case ItemKind::List:
        return {{"text", look.text, own, 4.5},
                {"picture", look.icon, own, 3.0},
                {"border", look.border, below, 3.0}};
    }
    return {};
}

constexpr std::array<std::pair<LookState, const char*>, lookStates> stateNames = {
    {{LookState::Normal, "normal"},
     {LookState::Pressed, "pressed"},
     {LookState::Selected, "selected"},
     {LookState::Disabled, "disabled"}}};

/** Texts that the application puts into items of the resource. */
const std::map<int, std::vector<int>> textsOfItems = {
    {5, {30, 107}},
    {7004, {33, 34, 110, 13067}},
    {7034, {13007}},
    {2003, {33, 70, 71, 72}},
    {527, {166, 167, 168, 14122}},
    {2155, {112, 113, 114, 129, 133, 154, 155, 156, 157, 160, 161, 162, 163, 164, 169, 170, 171}}};

/** The longest values that the application formats; names and titles may end in an ellipsis. */
const std::map<int, std::vector<std::string>> longestValues = {
    {8, {"88:88"}},
    {11, {"AM"}},
    {12, {"PM"}},
    {20, {"-40.0"}},
    {510, {"65535/65535"}},
    {2067, {"88:88:88"}},
    {2068, {"88:88:88"}},
    {2075, {"65535/65535"}},
    {2154, {"99/99"}},
    {2155, {"x20", "9/9", "32/32  Portuguese (Brazil)", "8/8 MPEG-2 EXT 5.1 ch Portuguese"}}};
/** The counter of a DVD and VCD ends at 99, that of files and photos at 65535. */
const std::map<int, std::string> longestCounter = {
    {1, "99/99"}, {4, "99/99"}, {2, "65535/65535"}, {11, "65535/65535"}};

std::vector<std::string> textsOf(const Resource& resource, const WindowSpec& window, const ItemSpec& item) {
    std::vector<int> ids = item.textId ? std::vector{item.textId} : std::vector<int>();
    if (const auto more = textsOfItems.find(item.id); more != textsOfItems.end()) {
        ids.insert(ids.end(), more->second.begin(), more->second.end());
    }
    std::vector<std::string> texts;
    for (const int id : ids) {
        for (size_t language = 0; language < resource.languages.size(); ++language) {
            texts.push_back(resource.text(id, language));
        }
    }
    if (const auto longest = longestValues.find(item.id); longest != longestValues.end()) {
        texts.insert(texts.end(), longest->second.begin(), longest->second.end());
    }
    const auto counter = longestCounter.find(window.id);
    if (item.id == 2152 && counter != longestCounter.end()) {
        texts.push_back(counter->second);
    }
    if (!item.text.empty()) {
        texts.push_back(item.text);
    }
    return texts;
}

/** What discs call things, in the tall and deep letters of each script. */
const std::vector<std::string> tallNames = {"Ågy", "永鬱圀龍", "أغنية إلى ج"};
/** The same in the tallest: letters with two marks, and with vowels. */
const std::vector<std::string> tallestNames = {"ẤỆ Ỗ", "أُغنِيَّة إلىٰ"};
/** Items that show such names, a row of a list among them. */
constexpr std::array namedItems = {1012, 2000, 2061, 2063, 2065, 2073};

std::vector<std::string> namesOf(const ItemSpec& item) {
    std::vector<std::string> names = holds(namedItems, item.id) ? tallNames : std::vector<std::string>();
    if (!names.empty()) {
        names.insert(names.end(), tallestNames.begin(), tallestNames.end());
    }
    return names;
}

/** Where a text is drawn: its whole item, below its picture, or a row. */
Rect placeOfText(const ItemSpec& item, const Style& style) {
    Rect box = item.rect;
    if (item.kind == ItemKind::List) {
        box.h = box.h / style.rows - style.rowGap;
    } else if (style.iconAt == IconAt::Top) {
        const int high = style.lines * style.textSize * 4 / 3;
        box.y += (box.h - style.iconSize - style.gap - high) / 2 + style.iconSize + style.gap;
        box.h = high;
    }
    return box;
}

/** How far a text's ink leaves its item, or its row, above and below; negative: it does not. */
struct Beyond {
    int above;
    int below;
};
Beyond beyond(PangoLayout* layout, const ItemSpec& item, const Style& style) {
    // As the painter does: one line with its capitals in the middle, several as a block.
    constexpr double halfCapital = 0.357;
    PangoRectangle ink;
    PangoRectangle logical;
    pango_layout_get_pixel_extents(layout, &ink, &logical);
    const Rect box = placeOfText(item, style);
    const int top = style.lines > 1
                        ? (box.h - logical.height) / 2
                        : static_cast<int>(std::lround(box.h / 2.0 + halfCapital * style.textSize)) -
                              PANGO_PIXELS(pango_layout_get_baseline(layout));
    const bool row = item.kind == ItemKind::List;
    const Rect whole = row ? box : item.rect;
    const int first = box.y + top + ink.y;
    return {whole.y - first, first + ink.height - whole.y - whole.h};
}

/** Pictures of modes that the application puts into the keys of the music play page. */
const std::map<int, std::vector<int>> picturesOfItems = {{6503, {94, 95, 165, 166, 87, 88}},
                                                         {6504, {161, 162, 53, 54, 85, 86, 83, 84}}};

std::vector<int> picturesOf(const ItemSpec& item) {
    std::vector<int> pictures;
    for (const auto& [state, id] : item.icons) {
        pictures.push_back(id);
    }
    for (const auto& [value, id] : item.pictureOfValue) {
        pictures.push_back(id);
    }
    if (const auto more = picturesOfItems.find(item.id); more != picturesOfItems.end()) {
        pictures.insert(pictures.end(), more->second.begin(), more->second.end());
    }
    return pictures;
}

int roomFor(const ItemSpec& item, const Style& style) {
    const bool beside = !item.icons.empty() && style.iconAt != IconAt::Top;
    return item.rect.w - 2 * style.padding - (beside ? style.iconSize + style.gap : 0);
}

} // namespace

Findings touchTargets(const Resource& resource, const ScreenFit& fit) {
    Findings findings;
    eachItem(resource, [&](const WindowSpec& window, const ItemSpec& item) {
        if (!item.touch) {
            return;
        }
        const bool list = item.kind == ItemKind::List;
        const int high = list ? item.rect.h / styleOf(resource, item).rows : item.rect.h;
        const int least = fit.pixels(isNarrow(window, item, fit) ? leastTouch : wantedTouch);
        if (std::min(high, item.rect.w) < least) {
            findings.push_back(place(window, item) + std::to_string(item.rect.w) + " x " +
                               std::to_string(high) + " to touch, at least " + std::to_string(least));
        }
    });
    return findings;
}

Findings distances(const Resource& resource, const ScreenFit& fit) {
    Findings findings;
    eachItem(resource, [&](const WindowSpec& window, const ItemSpec& one) {
        if (!covers(fit.screen().area(), one.rect)) {
            findings.push_back(place(window, one) + "not on the screen");
        }
        for (const ItemSpec& other : window.items) {
            // Those in one place take turns; what belongs to another lies on it, as the popup does on the
            // page.
            const bool apart = one.rect != other.rect && other.parent != one.id && one.parent != other.id &&
                               (one.parent == other.parent || (one.parent != 101 && other.parent != 101));
            if (one.touch && other.touch && one.id < other.id && apart &&
                distance(seen(resource, one), seen(resource, other)) < fit.pixels(leastDistance)) {
                findings.push_back(place(window, one) + "too near to " + std::to_string(other.id));
            }
        }
    });
    return findings;
}

Findings textSizes(const Resource& resource, const ScreenFit& fit) {
    Findings findings;
    eachItem(resource, [&](const WindowSpec& window, const ItemSpec& item) {
        const bool bears = item.kind == ItemKind::Text || item.kind == ItemKind::List ||
                           (item.kind == ItemKind::Button && (item.textId || !item.text.empty()));
        const int least = fit.pixels(holds(statusTexts, item.id) ? leastStatusText
                                     : holds(titles, item.id)    ? leastTitle
                                                                 : leastText);
        const int size = styleOf(resource, item).textSize;
        if (bears && size < least) {
            findings.push_back(place(window, item) + "text of " + std::to_string(size) + ", at least " +
                               std::to_string(least));
        }
    });
    return findings;
}

Findings contrasts(const Resource& resource) {
    Findings findings;
    const auto compare = [&](const WindowSpec& window, const std::string& where, const std::string& theme,
                             const Measured& pair) {
        const std::vector<Color>& colors = resource.themes.at(theme);
        if (pair.color == noColor) {
            return;
        }
        if (pair.ground == noColor) {
            findings.push_back(where + pair.what + " without a ground");
            return;
        }
        const Color& own = colors[static_cast<size_t>(pair.ground)];
        const bool tinted = !window.tint.empty() && pair.ground == window.background;
        for (const Color& ground : tinted ? tints(own) : extremes(own)) {
            const double found = contrast(colors[static_cast<size_t>(pair.color)], ground);
            if (found < pair.least) {
                findings.push_back(where + pair.what + " contrasts " + std::to_string(found));
            }
        }
    };
    for (const auto& [theme, colors] : resource.themes) {
        eachItem(resource, [&, theme = theme](const WindowSpec& window, const ItemSpec& item) {
            const Style& style = styleOf(resource, item);
            if (!window.theme.empty() && window.theme != theme) {
                return; // this page always has the colours of its own
            }
            // Nothing is drawn of the video page; the drawn cover is an ornament.
            if ((window.background == noColor && window.touchAll) || style.name == "cover") {
                return;
            }
            const int below = groundBelow(resource, window, item);
            for (const auto& [state, name] : stateNames) {
                for (const Measured& pair : pairsOf(item, style.look(state), below)) {
                    compare(window, place(window, item) + theme + " " + name + " ", theme, pair);
                }
            }
            // Colours of a picture's own.
            for (const int id : picturesOf(item)) {
                const int fill = style.look(LookState::Normal).fill;
                int ground = fill == noColor ? below : fill;
                for (const Picture::Layer& layer : resource.pictures.at(id).layers) {
                    compare(window, place(window, item) + theme + " ", theme,
                            {"layer", layer.color, ground, 3.0});
                    if (holds(filledGlyphs, layer.text)) {
                        ground = layer.color;
                    }
                }
            }
        });
    }
    return findings;
}

Findings cutTexts(const Resource& resource, FontBook& fonts) {
    Findings findings;
    const auto check = [&](const std::string& text, const WindowSpec& window, const ItemSpec& item,
                           bool bold) {
        const Style& style = styleOf(resource, item);
        const LayoutPtr layout = fonts.layout(style.textSize, bold, directionOf(text));
        const std::string shown = text + style.suffix;
        fonts.prepare(shown);
        pango_layout_set_text(layout.get(), shown.c_str(), -1);
        const int room = roomFor(item, style);
        // A text of several lines is broken as it will be drawn; one line is measured.
        if (style.lines > 1) {
            pango_layout_set_width(layout.get(), room * PANGO_SCALE);
            pango_layout_set_height(layout.get(), -style.lines);
        }
        PangoRectangle ink;
        int wide = 0;
        pango_layout_get_pixel_extents(layout.get(), &ink, nullptr);
        pango_layout_get_pixel_size(layout.get(), &wide, nullptr);
        if (wide > room || pango_layout_is_ellipsized(layout.get())) {
            findings.push_back(place(window, item) + shown + " is " + std::to_string(wide) +
                               " wide, room for " + std::to_string(room));
        }
        if (const Beyond out = beyond(layout.get(), item, style); out.above > 0 || out.below > 0) {
            findings.push_back(place(window, item) + shown + " leaves its place by " +
                               std::to_string(std::max(out.above, out.below)));
        }
        if (pango_layout_get_unknown_glyphs_count(layout.get()) > 0) {
            findings.push_back(place(window, item) + shown + " has letters without a font");
        }
    };
    eachItem(resource, [&](const WindowSpec& window, const ItemSpec& item) {
        for (const std::string& text : textsOf(resource, window, item)) {
            check(text, window, item, styleOf(resource, item).look(LookState::Normal).bold);
            if (isFace(resource, item)) {
                check(text, window, item, styleOf(resource, item).look(LookState::Selected).bold);
            }
        }
    });
    return findings;
}

Findings highTexts(const Resource& resource, FontBook& fonts) {
    Findings findings;
    eachItem(resource, [&](const WindowSpec& window, const ItemSpec& item) {
        const Style& style = styleOf(resource, item);
        for (const std::string& name : namesOf(item)) {
            for (const bool bold : {false, true}) {
                const LayoutPtr layout = fonts.layout(style.textSize, bold, directionOf(name));
                fonts.prepare(name);
                pango_layout_set_text(layout.get(), name.c_str(), -1);
                const Beyond out = beyond(layout.get(), item, style);
                if (out.above > 0 || out.below > 0) {
                    findings.push_back(place(window, item) + name + " leaves its place by " +
                                       std::to_string(std::max(out.above, out.below)));
                }
            }
        }
    });
    return findings;
}

} // namespace zm::test
