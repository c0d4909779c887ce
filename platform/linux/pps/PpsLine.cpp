#include "platform/linux/pps/PpsLine.h"

#include "sys/pps.h"

#include <algorithm>

namespace zm {

namespace {

constexpr size_t LongestName = 255;

struct Marker {
    std::string_view text;
    PpsLineKind kind;
};
constexpr Marker ObjectMarkers[] = {
    {"@", PpsLineKind::Object},
    {"+@", PpsLineKind::ObjectCreated},
    {"-@", PpsLineKind::ObjectDeleted},
    {"#@", PpsLineKind::ObjectTruncated},
    {"|@", PpsLineKind::ObjectOverflowed},
    {"*@", PpsLineKind::ObjectPurged},
};

struct Qualifier {
    char letter;
    pps_options_t option;
};
constexpr Qualifier Qualifiers[] = {{'n', PPS_NOPERSIST}, {'i', PPS_ITEM}};

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// Takes "[n]", "[-n]", "[n,-i]" off the front of `line`; false if the brackets hold anything else.
bool takeQualifiers(std::string_view& line, PpsLine& result) {
    if (!line.starts_with('[')) {
        return true;
    }
    const size_t end = line.find(']');
    if (end == std::string_view::npos) {
        return false;
    }
    bool set = true;
    for (char c : line.substr(1, end - 1)) {
        if (c == '-') {
            set = false;
            continue;
        }
        if (c == ',') {
            set = true;
            continue;
        }
        const auto known = std::ranges::find(Qualifiers, c, &Qualifier::letter);
        if (known == std::end(Qualifiers)) {
            return false;
        }
        result.optionMask |= known->option;
        result.options = set ? result.options | known->option : result.options & ~known->option;
        set = true;
    }
    line.remove_prefix(end + 1);
    return true;
}

} // namespace

bool isAttributeName(std::string_view name) {
    return !name.empty() && name.size() <= LongestName && isLetter(name.front()) &&
           std::ranges::all_of(name,
                               [](char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '.'; });
}

bool isObjectName(std::string_view name) {
    return !name.empty() && name.size() <= LongestName &&
           name.find_first_of(std::string_view("@?/\n\0", 5)) == std::string_view::npos;
}

std::optional<PpsLine> parsePpsLine(std::string_view line) {
    PpsLine result;
    if (line.find_first_of(std::string_view("\n\0", 2)) != std::string_view::npos ||
        !takeQualifiers(line, result)) {
        return std::nullopt;
    }
    for (const auto& marker : ObjectMarkers) {
        if (line.starts_with(marker.text)) {
            result.kind = marker.kind;
            result.name = line.substr(marker.text.size());
            return isObjectName(result.name) ? std::optional(result) : std::nullopt;
        }
    }
    if (line.starts_with('-')) {
        result.kind = PpsLineKind::AttributeDeleted;
        result.name = line.substr(1);
        return isAttributeName(result.name) ? std::optional(result) : std::nullopt;
    }
    const size_t first = line.find(':');
    const size_t second = first == std::string_view::npos ? first : line.find(':', first + 1);
    if (second == std::string_view::npos || !isAttributeName(line.substr(0, first))) {
        return std::nullopt;
    }
    result.kind = PpsLineKind::Attribute;
    result.name = line.substr(0, first);
    result.encoding = line.substr(first + 1, second - first - 1);
    result.value = line.substr(second + 1);
    return result;
}

} // namespace zm
