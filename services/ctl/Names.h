#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zm::ctl {

/** A number that people call by a name. */
struct NamedNumber {
    int number;
    std::string_view name;
    std::string_view meaning;
    /** Of a hard key: the computer keys that stand for it, as browsers name them, with a space between; the first one is shown. */
    std::string_view shortcuts = {};
};

/** The hard keys of the head unit, by code. */
std::span<const NamedNumber> hardKeys();
/** The hard key for which that computer key stands ("n", "ArrowLeft"); null if it stands for none. */
const NamedNumber* findShortcut(std::string_view key);
/** A computer key that stands for a command of the head unit itself. */
struct KeyCommand {
    std::string_view key;     ///< as browsers name it
    std::string_view command; ///< its words, with a space between
};
std::span<const KeyCommand> keyCommands();
/** The vehicle's values that the application can read, by id. */
std::span<const NamedNumber> vehicleDevices();
/** The languages that the pages have texts. */
std::vector<std::string> languages();

std::vector<std::string> namesOf(std::span<const NamedNumber> rows);
/** The row of a number; null if there is none. */
const NamedNumber* findNumber(std::span<const NamedNumber> rows, int number);

/** The word of `known` that an unknown `word` most likely means; empty if none is near. */
std::string meantWord(std::string_view word, const std::vector<std::string>& known);
/** `there is no WHAT "nxt"; did you mean "next"?`, or with all of `known` if none of them is near. */
std::string unknownWord(std::string_view what, std::string_view word, const std::vector<std::string>& known);
/** `there is no WHAT 9; the nearest is 8 (bluetooth)`. */
std::string unknownNumber(std::string_view what, int number, std::span<const NamedNumber> known);
/** The same without names; "there is no WHAT 9" alone if nothing is known. */
std::string unknownNumber(std::string_view what, int number, const std::vector<int>& known);

} // namespace zm::ctl
