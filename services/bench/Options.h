#pragma once

#include "base/Result.h"
#include "services/bench/unit/HeadUnitOptions.h"

#include <optional>
#include <string>
#include <vector>

namespace zm::bench {

/** The command line of zmbench. */
struct Options {
    unit::HeadUnitOptions unit;
    std::optional<int> port; ///< 0: any free one; none: the usual one, any other one if that is taken
    bool web = true;
    bool commands = true;    ///< zmctl and tests may drive it
    bool open = false;       ///< shows the page in the user's browser
    bool display = false;    ///< shows the screen in a window of this machine
    bool fullScreen = false; ///< and that as large as the monitor
    bool mpris = false;      ///< the desktop's media keys and applets reach the player
};

/** Reads the arguments behind the program's name; paths become absolute. An error says what is wrong. */
Result<Options> parseOptions(const std::vector<std::string>& arguments);

/** How a bench is started that behaves as one with these options, without what only its user needs. */
std::string startLine(const Options& options);

extern const char* const Usage;

} // namespace zm::bench
