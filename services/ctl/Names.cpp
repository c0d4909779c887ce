#include "services/ctl/Names.h"

#include "base/Nearest.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace zm::ctl {

namespace {

// Words that begin with so many equal letters are taken for each other: "parked" for "parking".
constexpr size_t AlikeLetters = 4;

constexpr std::array Keys = {
    NamedNumber{17, "play", "plays", "p"},
    NamedNumber{18, "pause", "pauses", "s MediaStop"},
    NamedNumber{20, "next", "next item", "n MediaTrackNext"},
    NamedNumber{21, "previous", "previous item", "b MediaTrackPrevious"},
    NamedNumber{22, "forward", "fast forward, each press faster", "f MediaFastForward"},
    NamedNumber{23, "backward", "fast backward, each press faster", "r MediaRewind"},
    NamedNumber{44, "number-pad", "opens the pad for a track's number", "g"},
    NamedNumber{45, "up", "one row up in a list", "ArrowUp"},
    NamedNumber{46, "down", "one row down in a list", "ArrowDown"},
    NamedNumber{47, "left", "to the left", "ArrowLeft"},
    NamedNumber{48, "right", "to the right", "ArrowRight"},
    NamedNumber{49, "enter", "press of the encoder: takes the selected row", "Enter"},
    NamedNumber{50, "return", "one page back", "Escape"},
    NamedNumber{64, "preset-up", "two items back", "PageUp"},
    NamedNumber{65, "preset-down", "next item", "PageDown"},
    NamedNumber{87, "encoder-right", "the encoder turns by one step to the right", "+"},
    NamedNumber{88, "encoder-left", "the encoder turns by one step to the left", "-"},
    NamedNumber{160, "shuffle-folder", "shuffle on, repeat the folder"},
    NamedNumber{161, "repeat-all", "repeat the whole disc"},
    NamedNumber{162, "shuffle-off", "shuffle off"},
    NamedNumber{163, "again", "the current item from its start"},
};

constexpr std::array Commands = {
    KeyCommand{"AudioVolumeUp", "volume up"},
    KeyCommand{"AudioVolumeDown", "volume down"},
    KeyCommand{"AudioVolumeMute", "volume mute"},
};

constexpr std::array Devices = {
    NamedNumber{2, "parking", "0 while the car drives, else it is parked"},
    NamedNumber{6, "mute", "255 muted, else not"},
    NamedNumber{7, "temperature", "outside, in tenths of a degree"},
    NamedNumber{86, "bluetooth", "0 off, 1 on, 2 connected"},
};

/** What people say for a word that the commands have. */
struct OtherWord {
    std::string_view said;
    std::string_view meant;
};

constexpr std::array OtherWords = {
    OtherWord{"dark", "night"},      OtherWord{"light", "day"},     OtherWord{"bright", "day"},
    OtherWord{"english", "en"},      OtherWord{"german", "de"},     OtherWord{"deutsch", "de"},
    OtherWord{"chinese", "zh"},      OtherWord{"arabic", "ar"},     OtherWord{"stop", "quit"},
    OtherWord{"exit", "quit"},       OtherWord{"close", "quit"},    OtherWord{"player", "app"},
    OtherWord{"screenshot", "shot"}, OtherWord{"picture", "shot"},  OtherWord{"status", "disc"},
    OtherWord{"driving", "parking"}, OtherWord{"speed", "parking"}, OtherWord{"catalog", "catalogue"},
    OtherWord{"processes", "ps"},    OtherWord{"text", "--text"},   OtherWord{"back", "return"},
    OtherWord{"ok", "enter"},
};

std::string thereIsNo(std::string_view what, const std::string& which) {
    return "there is no " + std::string(what) + " " + which;
}

// Of `known`, which has some.
int nearestNumber(int number, const std::vector<int>& known) {
    const auto far = [&](int other) { return std::llabs(static_cast<long long>(other) - number); };
    return *std::min_element(known.begin(), known.end(), [&](int a, int b) { return far(a) < far(b); });
}

} // namespace

std::span<const NamedNumber> hardKeys() {
    return Keys;
}

const NamedNumber* findShortcut(std::string_view key) {
    const auto standsFor = [&](std::string_view shortcuts) {
        while (!shortcuts.empty()) {
            const auto end = std::min(shortcuts.find(' '), shortcuts.size());
            if (shortcuts.substr(0, end) == key) {
                return true;
            }
            shortcuts.remove_prefix(std::min(end + 1, shortcuts.size()));
        }
        return false;
    };
    const auto row = std::ranges::find_if(Keys, standsFor, &NamedNumber::shortcuts);
    return row == Keys.end() ? nullptr : &*row;
}

std::span<const KeyCommand> keyCommands() {
    return Commands;
}

std::span<const NamedNumber> vehicleDevices() {
    return Devices;
}

std::vector<std::string> languages() {
    return {"en", "de", "zh", "ar"};
}

std::vector<std::string> namesOf(std::span<const NamedNumber> rows) {
    std::vector<std::string> names;
    for (const auto& row : rows) {
        names.emplace_back(row.name);
    }
    return names;
}

const NamedNumber* findNumber(std::span<const NamedNumber> rows, int number) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.number == number; });
    return found == rows.end() ? nullptr : &*found;
}

std::string meantWord(std::string_view word, const std::vector<std::string>& known) {
    const auto isKnown = [&](std::string_view each) {
        return std::find(known.begin(), known.end(), each) != known.end();
    };
    for (const auto& row : OtherWords) {
        if (row.said == word && isKnown(row.meant)) {
            return std::string(row.meant);
        }
    }
    std::string nearest = nearestWord(word, known);
    for (const auto& each : known) {
        if (nearest.empty() && word.size() >= AlikeLetters &&
            each.starts_with(word.substr(0, AlikeLetters))) {
            nearest = each;
        }
    }
    return nearest;
}

std::string unknownWord(std::string_view what, std::string_view word, const std::vector<std::string>& known) {
    std::string beginning = thereIsNo(what, "\"");
    beginning.append(word).append("\"; ");
    const std::string nearest = meantWord(word, known);
    if (!nearest.empty()) {
        return beginning + "did you mean \"" + nearest + "\"?";
    }
    std::string all;
    for (const auto& each : known) {
        all += (all.empty() ? "" : ", ") + each;
    }
    return beginning + "there is " + all;
}

std::string unknownNumber(std::string_view what, int number, std::span<const NamedNumber> known) {
    std::vector<int> numbers;
    for (const auto& row : known) {
        numbers.push_back(row.number);
    }
    const auto* row = findNumber(known, nearestNumber(number, numbers));
    return unknownNumber(what, number, numbers) + " (" + std::string(row->name) + ")";
}

std::string unknownNumber(std::string_view what, int number, const std::vector<int>& known) {
    const std::string sentence = thereIsNo(what, std::to_string(number));
    return known.empty() ? sentence
                         : sentence + "; the nearest is " + std::to_string(nearestNumber(number, known));
}

} // namespace zm::ctl
