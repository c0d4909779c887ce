#pragma once

#include <optional>
#include <string_view>
#include <utility>

namespace zm::ctl {

/** What a word in capitals stands for in the usage of a command. */
struct WordKind {
    std::string_view name;
    std::string_view what; ///< "a whole number"; empty where the name says it all
    bool (*accepts)(std::string_view word);
};

/** The kind of that name; for an unknown name one that accepts every word. */
const WordKind& wordKind(std::string_view name);

/** Hour and minute of "23:05"; nothing if it is not a time. 24 is an hour, too. */
std::optional<std::pair<int, int>> parseTimeOfDay(std::string_view text);

} // namespace zm::ctl
