#include "services/ctl/WordKinds.h"

#include "services/ctl/Numbers.h"

#include <algorithm>
#include <array>
#include <climits>

namespace zm::ctl {

namespace {

constexpr int LastHour = 24;
constexpr int LastMinute = 59;
constexpr double MillisecondsPerSecond = 1000;

constexpr std::string_view Whole = "a whole number";
constexpr std::string_view WholeFromZero = "a whole number, 0 or more";
constexpr std::string_view Seconds = "seconds, 0 or more";

bool anything(std::string_view) {
    return true;
}

bool whole(std::string_view word) {
    return parseNumber<int>(word).has_value();
}

template <int Least>
bool wholeFrom(std::string_view word) {
    return parseNumber<int>(word).value_or(Least - 1) >= Least;
}

bool seconds(std::string_view word) {
    const auto value = parseNumber<double>(word);
    return value && *value >= 0 && *value * MillisecondsPerSecond <= INT_MAX;
}

// What begins with two minus signs is an option that is not there; a file of that name is "./--name".
bool name(std::string_view word) {
    return !word.empty() && !word.starts_with("--");
}

constexpr std::array<WordKind, 30> Kinds = {{
    {"X", Whole, whole},
    {"Y", Whole, whole},
    {"X1", Whole, whole},
    {"Y1", Whole, whole},
    {"X2", Whole, whole},
    {"Y2", Whole, whole},
    {"ID", Whole, whole},
    {"CODE", Whole, whole},
    {"NUMBER", Whole, whole},
    {"WINDOW", Whole, whole},
    {"CONTROL", Whole, whole},
    {"STATE", Whole, whole},
    {"LEVEL", "a whole number from 0 to 100",
     [](std::string_view word) {
         return parseNumber<int>(word).value_or(-1) >= 0 && *parseNumber<int>(word) <= 100;
     }},
    {"N", WholeFromZero, wholeFrom<0>},
    {"MS", WholeFromZero, wholeFrom<0>},
    {"ROWS", WholeFromZero, wholeFrom<0>},
    {"COUNT", "a whole number, 1 or more", wholeFrom<1>},
    {"SECONDS", Seconds, seconds},
    {"S", Seconds, seconds},
    {"FACTOR", "a number above 0",
     [](std::string_view word) { return parseNumber<double>(word).value_or(0) > 0; }},
    {"KMH", "km/h, 0 to 400",
     [](std::string_view word) { return parseNumber<double>(word).value_or(-1) >= 0; }},
    {"LUX", "a whole number, 0 or more", wholeFrom<0>},
    {"HH:MM", "a time such as 23:05", [](std::string_view word) { return parseTimeOfDay(word).has_value(); }},
    {"NAME", "", name},
    {"OBJ", "an object such as zelmar/disc/status", name},
    {"DISC", "a folder, image or file", name},
    {"FILE", "a path", name},
    {"FILE.png", "a path", name},
    {"FILE.jpg", "a path", name},
    {"FILE.webm", "a path", name},
}};

constexpr WordKind Anything = {"", "", anything};

// Of one or two digits.
std::optional<int> shortNumber(std::string_view text) {
    const bool digits = text.find_first_not_of("0123456789") == std::string_view::npos;
    return digits && text.size() <= 2 ? parseNumber<int>(text) : std::nullopt;
}

} // namespace

const WordKind& wordKind(std::string_view kind) {
    const auto found =
        std::find_if(Kinds.begin(), Kinds.end(), [&](const WordKind& each) { return each.name == kind; });
    return found == Kinds.end() ? Anything : *found;
}

std::optional<std::pair<int, int>> parseTimeOfDay(std::string_view text) {
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto hour = shortNumber(text.substr(0, colon));
    const auto minute = shortNumber(text.substr(colon + 1));
    if (!hour || !minute || *hour > LastHour || *minute > LastMinute) {
        return std::nullopt;
    }
    return std::pair(*hour, *minute);
}

} // namespace zm::ctl
