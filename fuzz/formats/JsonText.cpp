#include "fuzz/formats/JsonText.h"

#include "fuzz/support/Format.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace zm::fuzz {

namespace {

/** A value, or the name in front of one, in a text. */
struct Span {
    size_t begin = 0;
    size_t end = 0;
    size_t depth = 0;
    size_t nameBegin = 0; ///< of a member: where its name begins; else the same as `begin`
    bool isName = false;
};

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

size_t behindString(std::string_view text, size_t at) {
    for (++at; at < text.size() && text[at] != '"'; ++at) {
        at += text[at] == '\\';
    }
    return std::min(at + 1, text.size());
}

size_t behindComment(std::string_view text, size_t at) {
    const bool line = text[at + 1] == '/';
    const size_t end = text.find(line ? "\n" : "*/", at + 2);
    return end == std::string_view::npos ? text.size() : end + (line ? 1 : 2);
}

size_t behindBlanks(std::string_view text, size_t at) {
    while (at < text.size()) {
        if (isBlank(text[at])) {
            ++at;
        } else if (text[at] == '/' && at + 1 < text.size() && (text[at + 1] == '/' || text[at + 1] == '*')) {
            at = behindComment(text, at);
        } else {
            break;
        }
    }
    return at;
}

std::vector<Span> spansOf(std::string_view text) {
    std::vector<Span> spans;
    std::vector<size_t> open;
    size_t name = spans.max_size(); // the name that waits for its value
    const auto add = [&](size_t begin, size_t end) {
        const bool named = name < spans.size();
        spans.push_back({begin, end, open.size(), named ? spans[name].begin : begin, false});
        name = spans.max_size();
    };
    for (size_t at = behindBlanks(text, 0); at < text.size(); at = behindBlanks(text, at)) {
        const char c = text[at];
        if (c == '{' || c == '[') {
            add(at, text.size());
            open.push_back(spans.size() - 1);
            ++at;
        } else if (c == '}' || c == ']') {
            ++at;
            if (!open.empty()) {
                spans[open.back()].end = at;
                open.pop_back();
            }
        } else if (c == ',') {
            ++at;
        } else if (c == ':') {
            ++at;
            if (!spans.empty() && spans.back().end < at && text[spans.back().begin] == '"') {
                spans.back().isName = true;
                name = spans.size() - 1;
            }
        } else if (c == '"') {
            const size_t end = behindString(text, at);
            add(at, end);
            at = end;
        } else {
            const size_t end =
                std::max(at + 1, std::min(text.find_first_of(",:]}[{\" \t\r\n", at), text.size()));
            add(at, end);
            at = end;
        }
    }
    return spans;
}

char kindOf(std::string_view value) {
    const char c = value.empty() ? ' ' : value.front();
    return (c >= '0' && c <= '9') || c == '-' ? '0' : c == 't' || c == 'f' ? 't' : c;
}

constexpr std::array<std::string_view, 24> numbers{
    "0",     "1",      "-1",         "2",           "3",          "7",
    "10",    "100",    "255",        "256",         "480",        "481",
    "800",   "801",    "32768",      "65536",       "2147483647", "2147483648",
    "1e300", "-1e300", "1073741823", "-2147483648", "0.5",        "-9223372036854775808"};
constexpr std::array<std::string_view, 8> others{"null", "true", "false", "\"\"", "[]", "{}", "[[]]", "0"};

std::string changedString(const std::string& value, Random& random) {
    const std::string inside = value.size() < 2 ? "" : value.substr(1, value.size() - 2);
    std::string changed = withChangedBytes(inside, random);
    std::erase_if(changed,
                  [](char c) { return c == '"' || c == '\\' || static_cast<unsigned char>(c) < ' '; });
    return "\"" + changed + "\"";
}

std::string changedNumber(const std::string& value, Random& random) {
    const long number = std::strtol(value.c_str(), nullptr, 10);
    switch (random.below(4)) {
    case 0:
        return std::to_string(static_cast<unsigned long>(number) + 1);
    case 1:
        return std::to_string(static_cast<long>(static_cast<unsigned long>(number) - 1));
    case 2:
        return std::to_string(static_cast<long>(static_cast<unsigned long>(number) * 2));
    default:
        return std::string(random.pick(numbers));
    }
}

std::string changedValue(const std::string& value, Random& random) {
    switch (kindOf(value)) {
    case '"':
        return changedString(value, random);
    case '0':
        return changedNumber(value, random);
    case 't':
        return value == "true" ? "false" : "true";
    case '[':
        return random.oneIn(2) ? "[" + value + "]" : value.substr(0, value.size() - 1) + ",0]";
    default:
        return std::string(random.pick(others));
    }
}

/** A value of `from` that could stand for `span` of `text`; itself if there is none. */
std::string standIn(std::string_view text, const Span& span, std::string_view from,
                    const std::vector<Span>& candidates, bool sameKind, Random& random) {
    const std::string_view value = text.substr(span.begin, span.end - span.begin);
    std::vector<std::string_view> fitting;
    for (const auto& each : candidates) {
        const auto other = from.substr(each.begin, each.end - each.begin);
        if (each.isName == span.isName && (!sameKind || kindOf(other) == kindOf(value))) {
            fitting.push_back(other);
        }
    }
    return std::string(fitting.empty() ? value : random.pick(fitting));
}

// Where a comma belongs to the value: the one behind it, or else the one in front.
std::string without(const std::string& text, const Span& span) {
    size_t begin = span.nameBegin;
    size_t end = behindBlanks(text, span.end);
    if (end < text.size() && text[end] == ',') {
        return text.substr(0, begin) + text.substr(end + 1);
    }
    while (begin > 0 && isBlank(text[begin - 1])) {
        --begin;
    }
    begin -= begin > 0 && text[begin - 1] == ',';
    return text.substr(0, begin) + text.substr(span.end);
}

std::string replaced(const std::string& text, const Span& span, const std::string& value) {
    return text.substr(0, span.begin) + value + text.substr(span.end);
}

} // namespace

std::string withChangedValue(const std::string& text, Random& random) {
    const auto spans = spansOf(text);
    if (spans.empty()) {
        return withChangedBytes(text, random);
    }
    const Span& span = random.pick(spans);
    const std::string value = text.substr(span.begin, span.end - span.begin);
    const size_t choice = random.below(10);
    if (choice < 4) {
        return replaced(text, span, standIn(text, span, text, spans, choice > 0, random));
    }
    if (choice < 7 || span.isName || span.depth == 0) {
        return replaced(text, span, changedValue(value, random));
    }
    if (choice == 7) {
        return without(text, span);
    }
    if (choice == 8) {
        return replaced(text, span, value + ", " + text.substr(span.nameBegin, span.end - span.nameBegin));
    }
    return replaced(text, span, std::string(random.pick(others)));
}

std::string withForeignValue(const std::string& text, std::string_view other, Random& random) {
    const auto spans = spansOf(text);
    if (spans.empty()) {
        return std::string(other);
    }
    const Span& span = random.pick(spans);
    return replaced(text, span, standIn(text, span, other, spansOf(other), true, random));
}

} // namespace zm::fuzz
