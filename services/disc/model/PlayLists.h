#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zm::disc::model {

/** Something that a VCD's play lists show: a film from some place on, or a segment. */
struct ListItem {
    std::string path; ///< on the disc
    int track = -1;   ///< the film's place among the disc's items; -1 for a segment
    std::chrono::milliseconds begin{0};
    bool still = false;
};

/** A play list or a menu of a VCD. Other lists are named by their places in `PlayLists::lists`. */
struct PlayList {
    enum class Kind { Items, Menu, End };
    using Target = std::optional<size_t>;

    Kind kind = Kind::End;
    std::vector<ListItem> items; ///< of a menu at most one
    Target next;
    Target previous;
    Target back;     ///< "return"
    Target standard; ///< of a menu: what plays without a number
    Target timeout;  ///< of a menu
    std::vector<Target> choices;
    int firstNumber = 1;                      ///< of the choices
    int plays = 1;                            ///< of a menu's film; 0 for ever
    std::optional<std::chrono::seconds> wait; ///< behind each item, or of the menu; nothing: for ever
    std::chrono::milliseconds length{0};      ///< after which a play list is over; 0: when its items are
};

/** What a VCD's own playback control plays; it begins with the first list. */
struct PlayLists {
    std::vector<PlayList> lists;

    bool hasMenu() const {
        for (const auto& each : lists) {
            if (each.kind == PlayList::Kind::Menu) {
                return true;
            }
        }
        return false;
    }
};

} // namespace zm::disc::model
