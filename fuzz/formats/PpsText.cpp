#include "fuzz/formats/PpsText.h"

#include "fuzz/formats/JsonText.h"

#include <algorithm>
#include <array>

namespace zm::fuzz {

namespace {

constexpr std::array<std::string_view, 6> encodings{"", "s", "n", "b", "json", "c"};
constexpr std::array<std::string_view, 8> qualifiers{"",    "",     "[n]",   "[-n]",
                                                     "[i]", "[-i]", "[n,i]", "[-n,-i]"};
constexpr std::array<std::string_view, 16> values{"",
                                                  "0",
                                                  "true",
                                                  "-1.5e3",
                                                  "2147483648",
                                                  R"({"t":0,"zmcmd":[1,-2.5,true,"x"]})",
                                                  R"({"zmcmd":{"t":"\u00e4\ud83d\ude00","@t":null}})",
                                                  R"([[[{"t":[]}]],"\"\\\/\b\f\n\r\t"])",
                                                  R"({"t":1e999})",
                                                  R"({"t":"\ud83d"})",
                                                  "[1,null]",
                                                  "a,b,",
                                                  "b,",
                                                  ",",
                                                  "two\\nlines",
                                                  "\\x41\\"};

/** `[qualifiers]name:encoding:value`, behind a vertical tab perhaps, and what ends it. */
struct Line {
    std::string tab;
    std::string qualifier;
    std::string name;
    std::string encoding;
    std::string value;
    std::string end;
    bool isAttribute = false;

    explicit Line(std::string_view text) {
        if (text.starts_with('\v')) {
            tab = take(text, 1);
        }
        if (!text.empty() && (text.back() == '\n' || text.back() == '\f')) {
            end = text.back();
            text.remove_suffix(1);
        }
        if (text.starts_with('[') && text.find(']') != text.npos) {
            qualifier = take(text, text.find(']') + 1);
        }
        const size_t first = text.find(':');
        const size_t second = first == text.npos ? text.npos : text.find(':', first + 1);
        isAttribute = second != text.npos;
        name = text.substr(0, first);
        if (isAttribute) {
            encoding = text.substr(first + 1, second - first - 1);
            value = text.substr(second + 1);
        }
    }
    static std::string take(std::string_view& text, size_t count) {
        const std::string part(text.substr(0, count));
        text.remove_prefix(count);
        return part;
    }
    bool isObject() const { return name.starts_with('@'); }
    std::string text() const {
        return tab + qualifier + name + (isAttribute ? ":" + encoding + ":" + value : "") + end;
    }
};

std::string changedValue(const std::string& value, Random& random) {
    if (!value.empty() && (value.front() == '{' || value.front() == '[')) {
        return withChangedValue(value, random);
    }
    if (random.oneIn(2)) {
        return std::string(random.pick(values));
    }
    std::string changed = withChangedBytes(value, random);
    std::erase_if(changed, [](char c) { return c == '\n' || c == '\f' || c == '\0'; });
    return changed;
}

void changeAttribute(Line& line, const Line& other, Random& random) {
    switch (random.below(8)) {
    case 0:
        line.name = other.isAttribute ? other.name : line.name;
        break;
    case 1:
        line.encoding = random.pick(encodings);
        break;
    case 2:
        line.value = other.value;
        break;
    case 3:
        line.qualifier = random.pick(qualifiers);
        if (line.qualifier.find('i') != std::string::npos) {
            line.value = random.oneIn(2) ? "a,b," : "b,";
        }
        break;
    case 4:
        line = Line("-" + line.name + line.end);
        break;
    default:
        line.value = changedValue(line.value, random);
        break;
    }
}

class PpsText : public Format {
public:
    Pieces split(std::string_view input) const override { return splitLines(input, "\n\f"); }

    void change(Pieces& pieces, size_t at, Random& random) const override {
        Line line(pieces[at]);
        if (random.oneIn(20)) {
            line.tab = line.tab.empty() ? "\v" : "";
        } else if (random.oneIn(5)) {
            line.end = line.end == "\f" ? "\n" : "\f";
        } else if (line.isObject()) {
            line.qualifier = random.pick(qualifiers).substr(0, 3);
        } else if (line.isAttribute) {
            changeAttribute(line, Line(random.pick(pieces)), random);
        } else {
            line =
                Line(random.oneIn(2) ? "a:json:{\"t\":1}" + line.end : withChangedBytes(pieces[at], random));
        }
        pieces[at] = line.text();
    }

    // Each line ends, and what names the object stands in front of a write's other lines.
    void mend(Pieces& pieces) const override {
        endLines(pieces, "\n\f");
        for (size_t i = 1; i < pieces.size(); ++i) {
            if (Line(pieces[i]).isObject()) {
                pieces[i - 1].back() = '\f';
            }
        }
    }
};

} // namespace

const Format& ppsText() {
    static const PpsText text;
    return text;
}

} // namespace zm::fuzz
