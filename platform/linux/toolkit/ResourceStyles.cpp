// Styles of a resource: each may be based on an earlier one and changes what it names.

#include "platform/linux/toolkit/ResourceChoice.h"
#include "platform/linux/toolkit/ResourceHint.h"
#include "platform/linux/toolkit/ResourceReader.h"

#include <algorithm>

namespace zm {

namespace {

constexpr std::array<std::pair<const char*, Align>, 5> alignments = {{{"left", Align::Left},
                                                                      {"center", Align::Center},
                                                                      {"right", Align::Right},
                                                                      {"start", Align::Start},
                                                                      {"end", Align::End}}};
constexpr std::array<std::pair<const char*, IconAt>, 4> iconPlaces = {
    {{"center", IconAt::Center}, {"left", IconAt::Left}, {"start", IconAt::Start}, {"top", IconAt::Top}}};
constexpr std::array<std::pair<const char*, Marker>, 3> markers = {
    {{"none", Marker::None}, {"start", Marker::Start}, {"bottom", Marker::Bottom}}};

struct SizeMember {
    const char* name;
    int Style::*member;
    int least;
    int most;
};

constexpr std::array<SizeMember, 12> sizes = {{{"textSize", &Style::textSize, 8, 200},
                                               {"iconSize", &Style::iconSize, 8, 400},
                                               {"lines", &Style::lines, 1, 10},
                                               {"radius", &Style::radius, 0, 240},
                                               {"padding", &Style::padding, 0, 200},
                                               {"gap", &Style::gap, 0, 200},
                                               {"rows", &Style::rows, 1, 20},
                                               {"rowGap", &Style::rowGap, 0, 40},
                                               {"thickness", &Style::thickness, 1, 60},
                                               {"fadeTop", &Style::fadeTop, 0, 200},
                                               {"fadeBottom", &Style::fadeBottom, 0, 200},
                                               {"bubble", &Style::bubble, 0, 100}}};

struct ColorMember {
    const char* name;
    int Look::*member;
};

constexpr std::array<ColorMember, 4> colors = {
    {{"color", &Look::text}, {"iconColor", &Look::icon}, {"fill", &Look::fill}, {"border", &Look::border}}};

constexpr std::array<LookState, 4> allLooks = {LookState::Normal, LookState::Pressed, LookState::Selected,
                                               LookState::Disabled};
constexpr std::array<std::pair<const char*, LookState>, 3> ownLooks = {
    {{"pressed", LookState::Pressed}, {"selected", LookState::Selected}, {"disabled", LookState::Disabled}}};

constexpr std::array<MemberName, 9> lookNames = {{{"color"},
                                                  {"iconColor"},
                                                  {"fill"},
                                                  {"border"},
                                                  {"borderWidth"},
                                                  {"nudge"},
                                                  {"dashed"},
                                                  {"bold"},
                                                  {"marker"}}};

std::vector<MemberName> styleNames() {
    std::vector<MemberName> names = {{"base"}, {"align"}, {"iconAt"}, {"suffix"},
                                     {"hugs"}, {"chips"}, {"runs"}};
    for (const SizeMember& size : sizes) {
        names.push_back({size.name});
    }
    names.insert(names.end(), lookNames.begin(), lookNames.end());
    for (const auto& [name, state] : ownLooks) {
        names.push_back({name});
    }
    return names;
}

} // namespace

int ResourceReader::colorIndex(const Node& node) const {
    const std::string& name = string(node, "the name of a colour of the themes, or \"none\"");
    if (name.starts_with('#')) {
        fail(node, "the name of a colour; what colour it is stands in the themes only");
    }
    const auto found = std::find(m_resource.palette.begin(), m_resource.palette.end(), name);
    if (found == m_resource.palette.end() && name != "none") {
        fail(node, "the name of a colour of the themes, or \"none\"" + didYouMean(name, m_resource.palette));
    }
    return name == "none" ? noColor : static_cast<int>(found - m_resource.palette.begin());
}

int ResourceReader::styleIndex(const Node& node) const {
    const std::string& name = string(node, "the name of a style");
    std::vector<std::string> above;
    for (size_t i = 0; i < m_resource.styles.size(); ++i) {
        if (m_resource.styles[i].name == name) {
            return static_cast<int>(i);
        }
        above.push_back(m_resource.styles[i].name);
    }
    fail(node, "the name of a style that stands above" + didYouMean(name, above));
}

void ResourceReader::readLook(const Node& node, std::span<const LookState> states, Style& style) {
    const auto apply = [&](auto change) {
        for (const LookState state : states) {
            change(style.looks[static_cast<size_t>(state)]);
        }
    };
    for (const ColorMember& color : colors) {
        if (const Node* value = node.find(color.name)) {
            apply([&, index = colorIndex(*value)](Look& look) { look.*color.member = index; });
        }
    }
    if (const Node* value = node.find("borderWidth")) {
        apply([width = integer(*value, 0, 20, "a line width")](Look& look) { look.borderWidth = width; });
    }
    if (const Node* value = node.find("nudge")) {
        apply([pixels = integer(*value, 0, 20, "a shift in pixels")](Look& look) { look.nudge = pixels; });
    }
    if (const Node* value = node.find("dashed")) {
        apply([dashed = boolean(*value)](Look& look) { look.dashed = dashed; });
    }
    if (const Node* value = node.find("bold")) {
        apply([bold = boolean(*value)](Look& look) { look.bold = bold; });
    }
    if (const Node* value = node.find("marker")) {
        apply([marker = choice(*value, markers)](Look& look) { look.marker = marker; });
    }
}

void ResourceReader::readStyle(const std::string& name, const Node& node) {
    static const std::vector<MemberName> names = styleNames();
    object(node, names);
    Style style;
    if (const Node* base = node.find("base")) {
        style = m_resource.styles[static_cast<size_t>(styleIndex(*base))];
    }
    style.name = name;
    for (const SizeMember& size : sizes) {
        if (const Node* value = node.find(size.name)) {
            style.*size.member = integer(*value, size.least, size.most, "a size");
        }
    }
    if (const Node* value = node.find("align")) {
        style.align = choice(*value, alignments);
    }
    if (const Node* value = node.find("iconAt")) {
        style.iconAt = choice(*value, iconPlaces);
    }
    if (const Node* value = node.find("suffix")) {
        style.suffix = string(*value, "a text");
    }
    if (const Node* value = node.find("runs")) {
        style.runs = boolean(*value);
    }
    if (const Node* value = node.find("hugs")) {
        style.hugs = boolean(*value);
    }
    if (const Node* value = node.find("chips")) {
        style.chips = boolean(*value);
    }
    readLook(node, allLooks, style);
    for (const auto& [stateName, state] : ownLooks) {
        if (const Node* own = node.find(stateName)) {
            object(*own, lookNames);
            readLook(*own, std::array{state}, style);
        }
    }
    m_resource.styles.push_back(std::move(style));
}

void ResourceReader::readStyles() {
    for (const auto& [name, node] : section("styles")->members) {
        readStyle(name, node);
    }
}

} // namespace zm
