// Languages, themes, texts and pictures of a resource.

#include "platform/linux/toolkit/ResourceHint.h"
#include "platform/linux/toolkit/ResourceReader.h"

#include <algorithm>
#include <cstdlib>

namespace zm {

namespace {

std::string utf8(long codePoint) {
    const auto part = [&](int shift, int lead, int mask) {
        return static_cast<char>(lead | ((codePoint >> shift) & mask));
    };
    if (codePoint < 0x800) {
        return {part(6, 0xC0, 0x1F), part(0, 0x80, 0x3F)};
    }
    return {part(12, 0xE0, 0x0F), part(6, 0x80, 0x3F), part(0, 0x80, 0x3F)};
}

} // namespace

const std::string& Resource::text(int id, size_t language) const {
    static const std::string none;
    const auto found = texts.find(id);
    if (found == texts.end()) {
        return none;
    }
    const std::string& own = found->second[language];
    return own.empty() ? found->second.front() : own;
}

void ResourceReader::readLanguages() {
    const Node& list = *m_sections.find("languages");
    for (const Node& node : array(list, "language codes").items) {
        const std::string& code = string(node, "a language code");
        auto& known = m_resource.languages;
        if (code.empty() || std::find(known.begin(), known.end(), code) != known.end()) {
            fail(node, "a language code such as \"de\", each one once");
        }
        known.push_back(code);
    }
    if (m_resource.languages.empty() || m_resource.languages.front() != "en") {
        failFound(list, "languages without \"en\" in front", "[\"en\", ...]");
    }
}

void ResourceReader::readThemes() {
    const Node& themes = *m_sections.find("themes");
    if (themes.kind != Node::Kind::Object || !themes.find("night")) {
        failFound(themes, "themes without \"night\"", "an object of themes, \"night\" among them");
    }
    readTheme("night", *themes.find("night"), true);
    for (const auto& [name, theme] : themes.members) {
        if (name != "night") {
            readTheme(name, theme, false);
        }
    }
}

void ResourceReader::readTheme(const std::string& name, const Node& node, bool first) {
    objectOf(node, "colours");
    for (const auto& [colorName, value] : node.members) {
        auto& known = m_resource.palette;
        if (first && colorName == "none") {
            failFound(value, "a colour \"none\"", "another name: that one stands for no colour");
        } else if (first) {
            known.push_back(colorName);
        } else if (std::find(known.begin(), known.end(), colorName) == known.end()) {
            failFound(value, "the colour \"" + colorName + "\"",
                      "the names of the theme \"night\" only" + didYouMean(colorName, known));
        }
    }
    std::vector<Color>& colors = m_resource.themes[name];
    for (const std::string& colorName : m_resource.palette) {
        const Node* value = node.find(colorName);
        if (!value) {
            failFound(node, "no colour \"" + colorName + "\"", "every colour of the theme \"night\"");
        }
        colors.push_back(color(*value));
    }
}

Color ResourceReader::color(const Node& node) const {
    const std::string expected = "a colour \"#RRGGBB\" or \"#RRGGBBAA\"";
    const std::string& text = string(node, expected);
    if ((text.size() != 7 && text.size() != 9) || text[0] != '#' ||
        text.find_first_not_of("0123456789abcdefABCDEF", 1) != std::string::npos) {
        fail(node, expected);
    }
    const auto channel = [&](size_t at) {
        return at < text.size()
                   ? static_cast<double>(std::strtol(text.substr(at, 2).c_str(), nullptr, 16)) / 255.0
                   : 1.0;
    };
    return {channel(1), channel(3), channel(5), channel(7)};
}

void ResourceReader::readMotion() {
    const Node* times = section("motion");
    if (!times) {
        return;
    }
    constexpr int longestMs = 10000;
    static constexpr std::array<std::pair<MemberName, int MotionTimes::*>, 4> members = {
        {{{"page"}, &MotionTimes::page},
         {{"popup"}, &MotionTimes::popup},
         {{"overlay"}, &MotionTimes::overlay},
         {{"press"}, &MotionTimes::press}}};
    std::vector<MemberName> names;
    for (const auto& [name, member] : members) {
        names.push_back(name);
    }
    object(*times, names);
    for (const auto& [name, member] : members) {
        if (const Node* time = times->find(name.name)) {
            m_resource.motion.*member = integer(*time, 1, longestMs, "a time in milliseconds");
        }
    }
}

void ResourceReader::readTexts() {
    const Node* texts = section("texts");
    if (!texts) {
        return;
    }
    std::vector<MemberName> names;
    for (const std::string& code : m_resource.languages) {
        names.push_back({code.c_str(), code == "en"});
    }
    for (const auto& [name, node] : texts->members) {
        const int id = idOf(name, node, "a text id");
        object(node, names);
        std::vector<std::string>& versions = m_resource.texts[id];
        for (const std::string& code : m_resource.languages) {
            const Node* version = node.find(code);
            versions.push_back(version ? string(*version, "a text") : "");
        }
    }
}

std::string ResourceReader::glyph(const Node& node) const {
    const std::string& name = string(node, "the name of a glyph");
    const Node* glyphs = section("glyphs");
    const Node* code = glyphs ? glyphs->find(name) : nullptr;
    if (!code) {
        fail(node, "the name of a glyph from the section \"glyphs\"" +
                       (glyphs ? didYouMean(name, glyphs->names()) : ""));
    }
    const std::string& digits = string(*code, "a code point such as \"F40A\"");
    char* end = nullptr;
    const long codePoint = std::strtol(digits.c_str(), &end, 16);
    if (digits.size() != 4 || *end != '\0' || codePoint < 0x80 ||
        (codePoint >= 0xD800 && codePoint < 0xE000)) {
        fail(*code, "a code point such as \"F40A\"");
    }
    return utf8(codePoint);
}

Picture::Layer ResourceReader::pictureLayer(const Node& node) const {
    static constexpr std::array<MemberName, 6> names = {
        {{"glyph"}, {"text"}, {"percent"}, {"at"}, {"color"}, {"flips"}}};
    object(node, names);
    const Node* glyphName = node.find("glyph");
    const Node* text = node.find("text");
    if (!glyphName == !text) {
        failFound(node, "a layer with both or none of \"glyph\" and \"text\"", "one of them");
    }
    Picture::Layer layer;
    layer.glyph = glyphName != nullptr;
    layer.text = glyphName ? glyph(*glyphName) : string(*text, "a short text");
    if (const Node* percent = node.find("percent")) {
        layer.scale = integer(*percent, 5, 200, "the layer's size in percent of the picture") / 100.0;
    }
    if (const Node* at = node.find("at")) {
        if (at->kind != Node::Kind::Array || at->items.size() != 2) {
            fail(*at, "[right, down] in percent of the picture");
        }
        layer.dx = integer(at->items[0], -100, 100, "an offset in percent") / 100.0;
        layer.dy = integer(at->items[1], -100, 100, "an offset in percent") / 100.0;
    }
    if (const Node* flips = node.find("flips")) {
        layer.flips = boolean(*flips);
    }
    if (const Node* own = node.find("color")) {
        layer.color = colorIndex(*own);
    }
    return layer;
}

void ResourceReader::readPictures() {
    const Node* pictures = section("pictures");
    if (!pictures) {
        return;
    }
    for (const auto& [name, node] : pictures->members) {
        Picture& picture = m_resource.pictures[idOf(name, node, "a picture id")];
        if (node.kind == Node::Kind::String) {
            picture.layers.push_back({.text = glyph(node)});
            continue;
        }
        for (const Node& layer : array(node, "layers, or the name of a glyph").items) {
            picture.layers.push_back(pictureLayer(layer));
        }
        if (picture.layers.empty()) {
            failFound(node, "a picture without layers", "at least one");
        }
    }
}

} // namespace zm
