// A driver can read and hit what the resource files lay out: sizes, distances, contrast, whole words.

#include "SceneFixture.h"

#include "platform/linux/toolkit/FontBook.h"
#include "platform/linux/toolkit/Resource.h"

#include <pango/pango.h>

#include <cmath>
#include <map>

using namespace zmtest;

namespace {

constexpr int leastTouch = 60;
constexpr int leastDistance = 8;
constexpr int leastText = 24;
constexpr int leastStatusText = 20;
constexpr int leastTitle = 32;

struct File {
    const char* name;
};

class Legibility : public testing::TestWithParam<File> {
protected:
    Legibility()
        : m_loaded(zm::loadResource(resourceDir + GetParam().name + ".zmrc_device", width, height)) {}
    void SetUp() override { ASSERT_TRUE(m_loaded) << m_loaded.error(); }
    const zm::Resource& resource() const { return *m_loaded; }
    const zm::Style& style(const zm::ItemSpec& item) const {
        return resource().styles[static_cast<size_t>(item.style)];
    }
    std::string place(const zm::WindowSpec& window, const zm::ItemSpec& item) const {
        return "window " + std::to_string(window.id) + " item " + std::to_string(item.id);
    }
    /** A control that is seen and touched; areas that only click are not. */
    bool isControl(const zm::ItemSpec& item) const {
        return item.touch && item.kind == zm::ItemKind::Button && style(item).name != "none" &&
               item.id != 500;
    }

private:
    zm::Result<zm::Resource> m_loaded;
};

int distance(const zm::Rect& a, const zm::Rect& b) {
    const int across = std::max(a.x - b.x - b.w, b.x - a.x - a.w);
    const int down = std::max(a.y - b.y - b.h, b.y - a.y - a.h);
    return std::max(across, down);
}

TEST_P(Legibility, touchTargetsAreLargeEnough) {
    for (const zm::WindowSpec& window : resource().windows) {
        for (const zm::ItemSpec& item : window.items) {
            if (item.touch) {
                const int high =
                    item.kind == zm::ItemKind::List ? item.rect.h / style(item).rows : item.rect.h;
                EXPECT_GE(high, leastTouch) << place(window, item);
                EXPECT_GE(item.rect.w, leastTouch) << place(window, item);
            }
        }
    }
}

TEST_P(Legibility, controlsStandEightPixelsApart) {
    for (const zm::WindowSpec& window : resource().windows) {
        for (const zm::ItemSpec& one : window.items) {
            for (const zm::ItemSpec& other : window.items) {
                const bool both = isControl(one) && isControl(other) && one.id < other.id;
                // Those in the same place replace each other; the popup lies above the page.
                if (both && one.rect != other.rect && one.parent != 101 && other.parent != 101) {
                    EXPECT_GE(distance(one.rect, other.rect), leastDistance)
                        << place(window, one) << " and " << other.id;
                }
            }
        }
    }
}

TEST_P(Legibility, textsAreLargeEnough) {
    for (const zm::WindowSpec& window : resource().windows) {
        for (const zm::ItemSpec& item : window.items) {
            const bool inStatus = item.id == 8 || item.id == 11 || item.id == 12 || item.id == 20;
            const bool bearsText = item.kind == zm::ItemKind::Text || item.kind == zm::ItemKind::List ||
                                   (item.kind == zm::ItemKind::Button && (item.textId || !item.text.empty()));
            if (bearsText) {
                EXPECT_GE(style(item).textSize, inStatus ? leastStatusText : leastText)
                    << place(window, item);
            }
            for (const int title : {1012, 2065, 7004, 7034, 20121}) {
                if (item.id == title) {
                    EXPECT_GE(style(item).textSize, leastTitle) << place(window, item);
                }
            }
        }
    }
}

double luminance(const zm::Color& color) {
    const auto linear = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(const zm::Color& a, const zm::Color& b) {
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

/** A colour over the worst background that a veil can lie on: its opposite. */
zm::Color over(const zm::Color& top, double below) {
    return {top.red * top.alpha + below * (1 - top.alpha), top.green * top.alpha + below * (1 - top.alpha),
            top.blue * top.alpha + below * (1 - top.alpha), 1};
}

TEST_P(Legibility, coloursContrastInBothThemes) {
    for (const auto& [theme, colors] : resource().themes) {
        for (const zm::Style& style : resource().styles) {
            for (size_t state = 0; state < style.looks.size(); ++state) {
                const zm::Look& look = style.looks[state];
                const std::string what = theme + " " + style.name + " state " + std::to_string(state);
                std::vector<zm::Color> grounds;
                if (look.fill == zm::noColor) {
                    for (const char* ground : {"page", "bar"}) {
                        const auto at =
                            std::find(resource().palette.begin(), resource().palette.end(), ground);
                        grounds.push_back(colors[static_cast<size_t>(at - resource().palette.begin())]);
                    }
                } else {
                    grounds = {over(colors[static_cast<size_t>(look.fill)], 0),
                               over(colors[static_cast<size_t>(look.fill)], 1)};
                }
                for (const zm::Color& ground : grounds) {
                    if (look.text != zm::noColor && style.name != "progress") {
                        EXPECT_GE(contrast(colors[static_cast<size_t>(look.text)], ground), 4.5)
                            << what << " text";
                    }
                    if (look.icon != zm::noColor && style.name != "progress") {
                        EXPECT_GE(contrast(colors[static_cast<size_t>(look.icon)], ground), 3.0)
                            << what << " icon";
                    }
                }
                if (look.border != zm::noColor && style.name != "popup" && style.name != "cover") {
                    const auto page = std::find(resource().palette.begin(), resource().palette.end(), "page");
                    EXPECT_GE(contrast(colors[static_cast<size_t>(look.border)],
                                       colors[static_cast<size_t>(page - resource().palette.begin())]),
                              3.0)
                        << what << " border";
                }
            }
        }
    }
}

/** Texts that the application puts into items of the resource. */
const std::map<int, std::vector<int>> textsOfItems = {
    {5, {30, 107}},
    {7004, {33, 34, 110, 13067}},
    {7034, {13007}},
    {2003, {33, 70, 71, 72}},
    {527, {166, 167, 168, 14122}},
    {2155, {112, 113, 114, 129, 133, 154, 155, 156, 157, 160, 161, 162, 163, 164, 169, 170, 171}}};
const std::map<int, std::string> longestValues = {
    {8, "88:88"},         {20, "-40.0"}, {2067, "88:88:88"}, {2068, "88:88:88"},
    {510, "65535/65535"}, {11, "AM"},    {12, "PM"}};

int roomFor(const zm::ItemSpec& item, const zm::Style& style) {
    const bool beside = !item.icons.empty() && style.iconAt != zm::IconAt::Top;
    return item.rect.w - 2 * style.padding - (beside ? style.iconSize + style.gap : 0);
}

TEST_P(Legibility, noTextIsCutInAnyLanguage) {
    auto fonts = zm::FontBook::open(fontDir);
    ASSERT_TRUE(fonts) << fonts.error();
    const auto expectFits = [&](const std::string& text, const zm::WindowSpec& window,
                                const zm::ItemSpec& item) {
        const zm::Style& own = style(item);
        for (const zm::LookState state : {zm::LookState::Normal, zm::LookState::Selected}) {
            const zm::LayoutPtr layout =
                (*fonts)->layout(own.textSize, own.look(state).bold, zm::Reading::FromLeft);
            const std::string shown = text + own.suffix;
            (*fonts)->prepare(shown);
            pango_layout_set_text(layout.get(), shown.c_str(), -1);
            int wide = 0;
            pango_layout_get_pixel_size(layout.get(), &wide, nullptr);
            // A text of several lines is broken between words, which costs a part of each line.
            const int room = roomFor(item, own) * own.lines * (own.lines > 1 ? 8 : 10) / 10;
            EXPECT_LE(wide, room) << place(window, item) << ": " << shown;
            EXPECT_EQ(pango_layout_get_unknown_glyphs_count(layout.get()), 0) << shown;
        }
    };
    for (const zm::WindowSpec& window : resource().windows) {
        for (const zm::ItemSpec& item : window.items) {
            std::vector<int> ids = item.textId ? std::vector{item.textId} : std::vector<int>();
            if (const auto more = textsOfItems.find(item.id); more != textsOfItems.end()) {
                ids.insert(ids.end(), more->second.begin(), more->second.end());
            }
            for (const int id : ids) {
                for (size_t language = 0; language < resource().languages.size(); ++language) {
                    expectFits(resource().text(id, language), window, item);
                }
            }
            if (const auto longest = longestValues.find(item.id); longest != longestValues.end()) {
                expectFits(longest->second, window, item);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Files, Legibility, testing::Values(File{"DISC"}, File{"OVERLAY"}),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
