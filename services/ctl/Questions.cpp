#include "services/ctl/Questions.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zm::ctl {

namespace {

using Words = std::vector<std::string>;

bool hasWord(const Words& words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/** A command that asks, always or only as `asks` says. */
struct Row {
    std::string_view name;
    bool (*asks)(const Words& words);
};

constexpr auto Always = [](const Words&) { return true; };

constexpr std::array Rows = {
    Row{"pps", [](const Words& words) { return !hasWord(words, "put"); }},
    Row{"requests", [](const Words& words) { return !hasWord(words, "--clear"); }},
    Row{"disc", [](const Words& words) { return !hasWord(words, "fault"); }},
    // Whoever advances by nothing wants to know whether the clock stands.
    Row{"clock", [](const Words& words) { return words.back() == "0"; }},
    Row{"vehicle", [](const Words& words) { return words.size() == 1; }},
    Row{"volume", [](const Words& words) { return words.size() == 1; }},
    Row{"screen", Always},
    Row{"drawn", Always},
    // The command inside it is noted as an input of its own.
    Row{"step", Always},
    Row{"shot", Always},
    Row{"log", Always},
    Row{"ps", Always},
    Row{"record", Always},
    Row{"film", Always},
    Row{"timeline", Always},
    Row{"snapshot", [](const Words& words) { return hasWord(words, "save"); }},
};

} // namespace

bool isQuestion(const Words& words) {
    return !words.empty() && std::any_of(Rows.begin(), Rows.end(), [&](const Row& row) {
        return row.name == words[0] && row.asks(words);
    });
}

} // namespace zm::ctl
