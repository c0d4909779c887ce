#include "services/ctl/Completion.h"

#include "services/ctl/AnswerData.h"
#include "services/ctl/CommandForm.h"
#include "services/ctl/CommandTexts.h"
#include "services/ctl/Names.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>

namespace zm::ctl {

namespace {

using Words = std::vector<std::string>;

constexpr const char* Bash = R"(_zmctl() {
  local IFS=$'\n'
  COMPREPLY=($("${COMP_WORDS[0]}" complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null))
  # A folder is not the end of a path.
  [[ ${#COMPREPLY[@]} != 1 || ${COMPREPLY[0]} != */ ]] || compopt -o nospace 2>/dev/null || true
}
complete -o filenames -F _zmctl zmctl
)";

constexpr const char* Zsh = R"(#compdef zmctl
_zmctl() {
  local -a offers folders
  offers=("${(@f)$("${words[1]}" complete "${(@)words[2,CURRENT]}" 2>/dev/null)}")
  # A folder is not the end of a path.
  folders=("${(@M)offers:#*/}")
  offers=("${(@)${(@)offers:#*/}:#}")
  [[ ${#offers} = 0 ]] || compadd -- "${(@)offers}"
  [[ ${#folders} = 0 ]] || compadd -S '' -- "${(@)folders}"
}
compdef _zmctl zmctl
)";

constexpr const char* Fish = R"(function __zmctl_offers
    set -l words (commandline -opc)
    $words[1] complete $words[2..-1] (commandline -ct) 2>/dev/null
end
complete -c zmctl -f -a '(__zmctl_offers)'
)";

// The files and folders whose path begins with `current`; folders end with a slash.
Words files(const std::string& current, bool foldersOnly) {
    const size_t slash = current.rfind('/') + 1; // 0 without one
    const std::string folder = current.substr(0, slash);
    const std::string home = folder.starts_with("~/") && std::getenv("HOME") ? std::getenv("HOME") : "";
    Words found;
    std::error_code error;
    const std::string where = home.empty() ? folder : home + folder.substr(1);
    for (const auto& entry : std::filesystem::directory_iterator(where.empty() ? "." : where, error)) {
        const std::string name = entry.path().filename();
        const bool isFolder = entry.is_directory(error);
        const bool hidden = name.starts_with('.') && current.size() == slash;
        if (!hidden && (isFolder || !foldersOnly)) {
            found.push_back(folder + name + (isFolder ? "/" : ""));
        }
    }
    return found;
}

Words commandNames() {
    Words names;
    for (const auto& text : commandTexts()) {
        names.emplace_back(text.name);
    }
    return names;
}

/** What a kind of word can be; `command` limits it to that one. Choices that are not listed are numbers and texts. */
struct Choice {
    std::string_view command;
    std::string_view kind;
    Words (*offers)(const Client& client, const std::string& current);
};

Words objects(const Client& client, const std::string&) {
    return outputLines(client.run({"pps", "ls"}).out);
}

Words everyFile(const Client&, const std::string& current) {
    return files(current, false);
}

constexpr std::array<Choice, 13> Choices = {{
    {"", "OBJ", objects},
    {"", "COMMAND", [](const Client&, const std::string&) { return commandNames(); }},
    {"expect", "PATH",
     [](const Client&, const std::string&) {
         return Words{"screen.", "pps.", "requests.", "ps."};
     }},
    {"expect", "OP",
     [](const Client&, const std::string&) {
         return Words{"==", "!=", "<", "<=", ">", ">=", "contains", "matches"};
     }},
    {"insert", "DISC", everyFile},
    {"", "FILE", everyFile},
    {"shot", "FILE.png", everyFile},
    {"shot", "FILE.jpg", everyFile},
    {"film", "FILE.webm", everyFile},
    {"key", "NAME", [](const Client&, const std::string&) { return namesOf(hardKeys()); }},
    {"device", "NAME", [](const Client&, const std::string&) { return namesOf(vehicleDevices()); }},
    {"language", "LANGUAGE", [](const Client&, const std::string&) { return languages(); }},
    {"completion", "SHELL",
     [](const Client&, const std::string&) {
         return Words{"bash", "zsh", "fish"};
     }},
}};

Words offersAt(const Client& client, const Words& before, const std::string& current) {
    const auto place = placeBehind(before);
    Words offers = place.words;
    for (const auto& kind : place.kinds) {
        for (const auto& row : Choices) {
            if (row.kind == kind && (row.command.empty() || row.command == before[0])) {
                const Words more = row.offers(client, current);
                offers.insert(offers.end(), more.begin(), more.end());
            }
        }
    }
    return offers;
}

Words sortedBeginningWith(const std::string& current, Words offers) {
    std::erase_if(offers, [&](const std::string& each) { return !each.starts_with(current); });
    std::sort(offers.begin(), offers.end());
    offers.erase(std::unique(offers.begin(), offers.end()), offers.end());
    return offers;
}

} // namespace

Words completions(const Client& client, Words words) {
    const std::string current = words.empty() ? std::string() : words.back();
    words.resize(words.empty() ? 0 : words.size() - 1);
    const bool namesBench = !words.empty() && words[0] == "--runtime";
    if (namesBench && words.size() == 1) {
        return sortedBeginningWith(current, files(current, true));
    }
    const Client bench = namesBench ? Client(words[1]) : client;
    if (namesBench) {
        words.erase(words.begin(), words.begin() + 2);
    }
    Words offers = words.empty() ? commandNames() : offersAt(bench, words, current);
    if (words.empty() && !namesBench) {
        offers.push_back("--runtime");
    }
    return sortedBeginningWith(current, std::move(offers));
}

const char* completionScript(const std::string& shell) {
    return shell == "bash" ? Bash : shell == "zsh" ? Zsh : shell == "fish" ? Fish : nullptr;
}

} // namespace zm::ctl
